// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Whole report files for browser tests, from made-up runs.

import { spawnSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import * as encode from "./encode.js";
import { decideAll, kDefaults, noise, walkerDistances } from "./scene.js";

const kChunk = 60;
export const kActive = [2, 6, 7, 8, 9, 10, 12, 15, 17]; // outcomes of the mask

// Ten fields of the top row of a test video say its frame number in black and white.
export const kFields = 10;

function rawFrames(w, h, frames) {
    const out = Buffer.alloc(w * h * frames);
    for (let f = 0; f < frames; ++f) {
        for (let y = 0; y < h; ++y) {
            for (let x = 0; x < w; ++x) {
                const field = Math.floor((x * kFields) / w);
                const lit = y < 16 ? (f >> field) & 1 : 0;
                const shade = 60 + ((x + y * 2 + f * 3) % 90);
                out[(f * h + y) * w + x] = y < 16 ? (lit ? 235 : 16) : shade;
            }
        }
    }
    return out;
}

// H.264 with a key frame every 25 frames, as real reports have it. `shift` plants a wrong number.
export function makeVideo(w, h, frames, shift = 0) {
    const folder = mkdtempSync(join(tmpdir(), "page-video-"));
    try {
        const file = join(folder, "v.mp4");
        const input = rawFrames(w, h, frames + shift).subarray(shift * w * h);
        const command =
            `-v error -f rawvideo -pix_fmt gray -s ${w}x${h} -r 25 -i - -c:v libx264 -crf 20 -g 25 ` +
            `-keyint_min 25 -sc_threshold 0 -bf 0 -pix_fmt yuv420p -movflags +faststart ${file}`;
        const run = spawnSync("ffmpeg", command.split(" "), { input, maxBuffer: 1e9 });
        if (run.status !== 0) throw new Error(`ffmpeg: ${run.stderr}`);
        return readFileSync(file).toString("base64");
    } finally {
        rmSync(folder, { recursive: true });
    }
}

function boxOf(frame, grid) {
    let box = null;
    frame.outcome.forEach((outcome, i) => {
        if (!kActive.includes(outcome)) return;
        const x = (i % grid.w) * grid.stride;
        const y = Math.floor(i / grid.w) * grid.stride;
        box ??= [x, x + 15, y, y + 15];
        box = [
            Math.min(box[0], x),
            Math.max(box[1], x + 15),
            Math.min(box[2], y),
            Math.max(box[3], y + 15),
        ];
    });
    return box;
}

const kSides = ["left", "right", "top", "bottom"];

// Reasons, gate and boxes of a method-0 run; the gate opens three frames after motion began.
function boxColumns(columns, frames, grid, s) {
    for (const name of ["motion", "reason", "p0", "p1", "p2", "p3", "gate", "g0", "g1"]) {
        columns[name] = new Array(frames.length).fill(0);
    }
    for (const side of kSides) {
        columns[`before_${side}`] = new Array(frames.length).fill(-1);
        columns[`after_${side}`] = new Array(frames.length).fill(-1);
    }
    let stood = 0;
    frames.forEach((frame, f) => {
        const counted = columns.counted[f];
        const motion = f > 0 && counted >= s.MD_BlkCnt_Th;
        stood = motion ? stood + 1 : 0;
        columns.motion[f] = motion ? 1 : 0;
        columns.reason[f] = f === 0 ? 1 : motion ? 10 : 11;
        columns.p0[f] = counted;
        const box = motion ? boxOf(frame, grid) : null;
        const open = s.MD_Bbox_PP_Enable === 0 || stood > 3;
        kSides.forEach((side, i) => {
            if (box !== null) columns[`before_${side}`][f] = box[i];
            if (box !== null && open) columns[`after_${side}`][f] = box[i];
        });
        if (s.MD_Bbox_PP_Enable !== 0) {
            columns.gate[f] = !motion ? 1 : !open ? 2 : stood === 4 ? 6 : 7;
            columns.g0[f] = stood;
            columns.g1[f] = s.MD_Bbox_PP_Window;
        }
    });
}

function eventsOf(columns, frames) {
    const events = [];
    let gap = null;
    let start = 0;
    for (let f = 0; f <= frames; ++f) {
        const on = f < frames && columns.after_left[f] >= 0;
        const last = events.at(-1);
        if (on && last?.[1] === f - 1) {
            last[1] = f;
            if (columns.active[f] > columns.active[last[2]]) last[2] = f;
        } else if (on) events.push([f, f, f]);
        if (on || f === frames) {
            if (f - start > 0 && (gap === null || f - start > gap[1] - gap[0] + 1))
                gap = [start, f - 1];
            start = f + 1;
        }
    }
    return { events, gap };
}

function histogram(frames) {
    const all = new Array(256).fill(0);
    const active = new Array(256).fill(0);
    for (const frame of frames) {
        frame.outcome.forEach((o, i) => {
            const d = o <= 1 ? 0 : frame.distance[i];
            ++all[d];
            if (kActive.includes(o)) ++active[d];
        });
    }
    return { all, active };
}

// One run: { record for the head, columns, frames }.
export function makeRun({ grid, s, frames, label = "", hasBlocks = "all" }) {
    const columns = encode.tallies(frames, s);
    boxColumns(columns, frames, grid, s);
    const { events, gap } = eventsOf(columns, frames.length);
    const most = columns.active.reduce((m, v, f) => (v > columns.active[m] ? f : m), 0);
    const settings = {};
    for (const [key, value] of Object.entries(s)) {
        const changed = value !== kDefaults[key];
        settings[key] = { value, source: changed ? 2 : 0, changed, idle: "" };
    }
    settings.Obj_Density1_Th = {
        value: 0.0005,
        source: 0,
        changed: false,
        idle: "it changes nothing",
    };
    const sum = (list) => list.reduce((t, v) => t + v, 0);
    const motion = sum(columns.motion);
    const reported = columns.after_left.filter((v) => v >= 0).length;
    return {
        columns,
        frames,
        record: {
            label,
            grid,
            method: s.MD_PostProcMethod,
            gate: s.MD_Bbox_PP_Enable !== 0,
            reference: s.MD_RefFrmIdx,
            correlation: s.MD_NeighborCorrelation !== 0,
            fingerprint: "0123 4567 89ab cdef",
            changed: Object.values(settings).filter((x) => x.changed).length,
            settings,
            thresholds: grid.h,
            weights: false,
            box_limits: null,
            totals: { motion, reported, held: motion - reported },
            events,
            longest_gap: gap,
            most_active: [most, columns.active[most]],
            distances: histogram(frames),
            outcomes: Array.from({ length: 20 }, (_, o) => sum(columns[`o${o}`])),
            columns: Object.keys(columns),
            has_blocks: hasBlocks,
            luma_of: null,
            vectors_of: null,
            luma_frames: null,
            vector_frames: null,
        },
    };
}

const chunksOf = (list) =>
    Array.from({ length: Math.ceil(list.length / kChunk) }, (_, k) =>
        list.slice(k * kChunk, (k + 1) * kChunk),
    );

function runBlocks(blocks, r, run, features) {
    blocks[`md-f${r}`] = encode.pack(encode.encodeColumns(run.record.columns, run.columns));
    chunksOf(run.frames).forEach((chunk, k) => {
        const out = new encode.Bytes();
        for (const [i, frame] of chunk.entries()) {
            const gone = run.record.has_blocks === "some" && (k * kChunk + i) % 10 === 9;
            encode.encodeFrame(out, gone ? null : frame);
        }
        if (run.record.has_blocks !== "none") blocks[`md-b${r}-${k}`] = encode.pack(out.bytes);
    });
    if (!features) return;
    const last = run.frames.length - 1;
    Object.assign(run.record, {
        luma_of: r,
        vectors_of: r,
        luma_frames: [0, last],
        vector_frames: [0, last],
    });
    const count = run.record.grid.w * run.record.grid.h;
    const random = noise(3);
    const base = Array.from({ length: count }, () => Math.floor(random() * 200));
    const means = run.frames.map((frame, f) => base.map((m, i) => m + ((i + f) % 7)));
    const vectors = run.frames.map(
        () => new Map(base.map((m, i) => [i, Array.from({ length: 10 }, (_, p) => (m + p) & 63)])),
    );
    chunksOf(means).forEach((c, k) => {
        blocks[`md-l${r}-${k}`] = encode.pack(encode.encodeMeans(c));
    });
    chunksOf(vectors).forEach((c, k) => {
        blocks[`md-v${r}-${k}`] = encode.pack(encode.encodeVectors(c, count, 10));
    });
}

const cell = (label, figure, note, attributes = "") =>
    `<${attributes === "" ? "div" : "button type=button"} class="cell" ${attributes}><span class="label">${label}</span>` +
    `<span class="figure">${figure}</span><span class="note">${note}</span></${attributes === "" ? "div" : "button"}>`;

function headerOf(head, run) {
    const { frames } = head.clip;
    return [
        `<div class="clip"><h1>made.avi</h1><p>${frames} frames</p></div>`,
        cell("Motion", `<b>${run.record.totals.motion}</b> of ${frames} frames`, ""),
        cell("Events", `<b>${run.record.events.length}</b>`, "", 'data-tab="events"'),
        ...(run.record.longest_gap === null
            ? []
            : [
                  cell(
                      "Longest gap",
                      "<b>gap</b> frames",
                      "",
                      `data-frame="${run.record.longest_gap[0]}"`,
                  ),
              ]),
        cell(
            "Settings",
            `${run.record.changed} changed`,
            run.record.fingerprint,
            'data-tab="settings"',
        ),
        ...(head.left_out.length > 0
            ? [cell("Shortened", "1 part", "", 'data-dialog="short"')]
            : []),
    ].join("");
}

export function headOf(runs, { grid, first = 0, fps = 10, leftOut = [], name = "made.avi" }) {
    const [run] = runs;
    const width = (grid.w - 1) * grid.stride + 16;
    const height = (grid.h - 1) * grid.stride + 16;
    const frames = run.frames.length;
    const keys = Object.keys(run.record.settings).map((key) => ({
        key,
        group: "Decision",
        text: `Meaning of ${key}.`,
        range: "0 to 255",
        default: kDefaults[key] ?? run.record.settings[key].value,
    }));
    return {
        format: 1,
        writer: "mdlab test",
        title: name,
        chunk_frames: kChunk,
        budget: 0,
        verdict: `${name}: motion in ${run.record.totals.motion} of ${frames} frames.`,
        clip: {
            name,
            frames,
            first,
            fps,
            variable_rate: false,
            width,
            height,
            input_width: width * 2,
            input_height: height * 2,
            ended_early: false,
        },
        video: null,
        keys,
        runs: runs.map((r) => r.record),
        left_out: leftOut,
        detail: null,
        comparison: comparisonOf(runs),
        opening: run.events?.[0]?.[2] ?? run.record.most_active[0],
    };
}

// The first frame in which the masks of two runs differ, as the head of a comparison has it.
function comparisonOf([a, b]) {
    if (b === undefined) return undefined;
    const mask = (frame) => frame.outcome.map((o) => (kActive.includes(o) ? 1 : 0));
    const differ = (f) => {
        const [p, q] = [mask(a.frames[f]), mask(b.frames[f])];
        return p.findIndex((v, i) => v !== q[i]);
    };
    const frames = a.frames.map((_, f) => f).filter((f) => differ(f) >= 0);
    const first =
        frames.length === 0
            ? null
            : { frame: frames[0], block: differ(frames[0]), stage: "decision" };
    return { frames: frames.length, keys: ["MD_HogDist_Th"], first };
}

// Text of a report. `runs` of makeRun; options: video (base64), features, first, fps, ...
export function makeReport(template, runs, options) {
    const head = headOf(runs, options);
    const blocks = {};
    runs.forEach((run, r) => {
        runBlocks(blocks, r, run, options.features ?? true);
    });
    if (options.video) {
        const { width, height } = head.clip;
        head.video = {
            fps: 25,
            width,
            height,
            shown_width: width,
            shown_height: height,
            codec: "avc1",
        };
        blocks["md-video"] = options.video;
    }
    options.change?.(head, blocks);
    return encode.fillTemplate(template, { head, blocks, header: headerOf(head, runs[0]) });
}

// A run of the walker over a small grid.
export function walkerRun({
    w = 19,
    h = 13,
    stride = 8,
    frames = 150,
    seed = 7,
    settings = {},
    label,
    hasBlocks,
} = {}) {
    const grid = { w, h, block: 16, stride, cell: 16 };
    const s = { ...kDefaults, MD_HogBlockStride: stride, ...settings };
    const distances = walkerDistances({ w, h, frames, seed });
    const luma = (f) => (f % 50 === 20 ? 6 : 0);
    return makeRun({ grid, s, frames: decideAll(distances, grid, s, luma), label, hasBlocks });
}
