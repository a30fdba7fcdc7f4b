// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Names, numbers and sentences of the page.

import { short } from "../../page/format.js";

const kTitles = {
    recall: "Recall",
    precision: "Precision",
    f1: "F1",
    false_per_1000: "False frames per 1000",
    missed_per_1000: "Missed frames per 1000",
    ranges: "Ranges",
    ranges_found: "Ranges found",
    delay_median: "Delay, median",
    delay_longest: "Delay, longest",
    iou: "IoU",
    iou_all: "IoU, all labels",
    on_target: "On target",
    jumps_per_100: "Jumps per 100",
    motion_frames: "Frames with motion",
    longest_gap: "Longest gap",
    frames: "Frames",
    hits: "Hits",
    misses: "Misses",
    false_frames: "False frames",
    quiet_frames: "Quiet frames",
};

export const scoreTitle = (name) => kTitles[name] ?? name;

// A score as the tables write it.
export const scoreText = (value) =>
    value === null ? "–" : short(value, Math.abs(value) < 10 ? 3 : 1);

export const clipTitle = (sweep, clip) => (clip < 0 ? "all clips" : sweep.clips[clip].name);

// "recall at least 0.9 on street".
export function limitText(sweep, limit) {
    const where = limit.clip === null ? "" : ` on ${sweep.clips[limit.clip].name}`;
    return `${limit.score} at ${limit.at_least ? "least" : "most"} ${limit.value}${where}`;
}

// What became of a point, in a sentence.
export function pointSentence(sweep, point) {
    if (point.status !== "done") {
        const c = point.runs.findIndex((r) => r.status === point.status);
        const what = point.status === "refused" ? "MD refuses these settings" : "The run failed";
        return `${what} on ${sweep.clips[c].name}: ${point.runs[c].message.trim()}`;
    }
    if (sweep.expect.length === 0) return "";
    if (point.missed.length === 0) return "Meets all that the plan expects.";
    const missed = point.missed.map((i) => limitText(sweep, sweep.expect[i]));
    return `Misses: ${missed.join("; ")}.`;
}

// A word in quotes where a shell would read more than the word.
export const shellWord = (text) =>
    /^[\w\-./:+,=@%]+$/.test(text) ? text : `'${text.replaceAll("'", "'\\''")}'`;

// The command that shows why this point did what it did on a clip.
export function reportCommand(sweep, point, clip) {
    const { name, file, options: ownOptions } = sweep.clips[clip];
    const input = shellWord(`InputFilePath=${file}`);
    const options = [ownOptions, point.options].map((o) => (o === "" ? "" : ` ${o}`)).join("");
    const page = shellWord(`${name.replaceAll("/", "-")}.html`);
    return (
        `mdlab report --out ${page} -- -d ${shellWord(sweep.settings)}` + ` -p ${input}${options}`
    );
}

export const kStrip = {
    h: ["hit", "labelled and reported"],
    m: ["miss", "labelled, not reported"],
    f: ["false", "reported, not labelled"],
    ".": ["quiet", "neither"],
    i: ["ignored", "not judged"],
    r: ["reported", "no labels"],
    "-": ["nothing", "no labels"],
};
