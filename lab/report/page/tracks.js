// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What the tracks of the timeline hold: series over the frames, by run. Pure.

import { kDistanceEdges } from "./data.js";
import { blockThresholds } from "./thresholds.js";

// Area of the boxes as a share of the picture, 0 to 100, NaN without a box.
export function boxShare(run, which) {
    const c = run.columns;
    const whole = run.grid.width * run.grid.height;
    return Float64Array.from({ length: run.frames }, (_, f) => {
        if (c[`${which}_left`][f] < 0) return 0;
        const w = c[`${which}_right`][f] - c[`${which}_left`][f];
        const h = c[`${which}_bottom`][f] - c[`${which}_top`][f];
        return (100 * w * h) / whole;
    });
}

// The thresholds in force at the end of each frame: { th, high }.
export function thresholdSeries(run) {
    const th = new Float64Array(run.frames);
    const high = new Float64Array(run.frames);
    for (let f = 0; f < run.frames; ++f) {
        const t = blockThresholds(run.settings, run.columns.luma[f]);
        th[f] = t.th;
        high[f] = t.high;
    }
    return { th, high };
}

// Classes of distances from 1 on, for the density: [{ low, high, counts }], high excluded.
export function densityRows(run) {
    return kDistanceEdges.slice(1).map((low, i) => ({
        low,
        high: kDistanceEdges[i + 2] ?? 256,
        counts: run.columns[`d${i + 1}`],
    }));
}

// Runs of equal kind: [{ first, last, kind }], for kind(f) over all frames.
export function runsOf(frames, kind) {
    const out = [];
    for (let f = 0; f < frames; ++f) {
        const k = kind(f);
        const end = out.at(-1);
        if (end !== undefined && end.kind === k) end.last = f;
        else out.push({ first: f, last: f, kind: k });
    }
    return out;
}

// The largest value of each of `width` columns of pixels over frames from..to: what a pixel shows.
export function silhouette(values, from, to, width) {
    const out = new Float64Array(width);
    const span = to - from + 1;
    for (let x = 0; x < width; ++x) {
        const a = from + Math.floor((x * span) / width);
        const b = Math.max(a + 1, from + Math.ceil(((x + 1) * span) / width));
        for (let f = a; f < b && f <= to; ++f) out[x] = Math.max(out[x], values[f]);
    }
    return out;
}

// With the last value repeated, so that a stepped line has an end for its last frame.
export const closed = (values) => [...values, values[values.length - 1]];
