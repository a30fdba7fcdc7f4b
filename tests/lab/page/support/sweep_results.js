// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A sweep's results as mdlab writes them, small and made up by rule, and the page around them.

import { readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { deflateRawSync } from "node:zlib";
import { kPackages } from "./browser.js";

const kScores = [
    ["recall", "higher"],
    ["f1", "higher"],
    ["false_per_1000", "lower"],
    ["motion_frames", "neither"],
    ["hits", "neither"],
    ["misses", "neither"],
].map(([name, better]) => ({ name, better, what: `what ${name} is` }));

// 100 labelled and 100 other frames. A high threshold misses more, a low one finds more that is false.
function run(threshold, count) {
    const misses = Math.min(90, threshold * 3 + count);
    const wrong = Math.max(0, 40 - threshold * 2 - count);
    const hits = 100 - misses;
    return {
        status: "done",
        scores: [
            hits / 100,
            (2 * hits) / (2 * hits + misses + wrong),
            wrong * 10,
            hits + wrong,
            hits,
            misses,
        ],
        strip: `${misses}m${hits}h${wrong}f${100 - wrong}.`,
    };
}

export function makeResults({
    thresholds = [4, 8, 12, 16],
    counts = [2, 6, 10],
    labels = true,
} = {}) {
    const points = [];
    for (const th of thresholds) {
        for (const n of counts) {
            const runs = [run(th, n), { ...run(th + 1, n) }];
            const total = labels
                ? runs[0].scores
                : runs[0].scores.map((v, i) => (i === 3 ? v : null));
            if (!labels) runs.forEach((r) => (r.scores = total));
            points.push({
                id: `${th}x${n}`,
                status: "done",
                values: [th, n, 7],
                options: `-p MD_HogDist_Th=${th} -p MD_BlkCnt_Th=${n}`,
                on_front: false,
                missed: labels && total[0] < 0.8 ? [0] : [],
                total,
                runs,
            });
        }
    }
    points.push({
        ...points[0],
        id: "refused",
        status: "refused",
        missed: [0],
        total: points[0].total.map(() => null),
        runs: [points[0].runs[0], { status: "refused", message: "ERROR: </script> too large\n" }],
    });
    return {
        format: 1,
        plan: "plan.yaml",
        settings: "/data/my settings/base.cfg",
        clips: ["street", "night"].map((name) => ({
            name,
            file: `/data/${name}.mp4`,
            labels: labels ? `/data/${name}.csv` : null,
            options: "",
            width: 640,
            height: 360,
        })),
        keys: [
            { name: "MD_HogDist_Th", values: thresholds, start: 8, range: "0 to 255" },
            { name: "MD_BlkCnt_Th", values: counts, start: 6, range: "at least 1" },
            { name: "MD_RefFrmIdx", values: [7], start: 7, range: "0 to 15" },
        ],
        scores: kScores,
        expect: [{ score: "recall", clip: null, at_least: true, value: 0.8 }],
        points,
    };
}

// Writes the page of these results and gives its path.
export function writeSweepPage(folder, results, name = "sweep.html") {
    const data = deflateRawSync(Buffer.from(JSON.stringify(results))).toString("base64");
    const marks = {
        title: "plan.yaml: 12 points",
        verdict: "12 points on 2 clips.",
        header: '<div class="clip"><h1>plan.yaml</h1><p>12 points on 2 clips</p></div>',
        data: `<script type="text/plain" id="md-results">${data}</script>`,
    };
    let html = readFileSync(join(kPackages, "sweep.html"), "utf8");
    for (const [mark, text] of Object.entries(marks))
        html = html.replace(`<!--md:${mark}-->`, () => text);
    const path = join(folder, name);
    writeFileSync(path, html);
    return path;
}
