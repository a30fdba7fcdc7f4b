// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What differs between two runs. Counts of a frame are pure; the record of the whole clip fills as
// frames are unpacked.

import { isReported } from "./frame_words.js";
import { kOutcomes } from "./outcomes.js";
import { runsOf } from "./tracks.js";

const active = (outcome) => kOutcomes[outcome].group === 0;

// Counts of one frame of both runs: { onlyA, onlyB, both, mainB (outcome), mainCount }.
export function frameDifference(a, b) {
    const out = { onlyA: 0, onlyB: 0, both: 0, mainB: -1, mainCount: 0 };
    const why = new Uint32Array(kOutcomes.length);
    for (let i = 0; i < a.outcome.length; ++i) {
        const inA = active(a.outcome[i]);
        const inB = active(b.outcome[i]);
        if (inA && inB) ++out.both;
        else if (inA || inB) {
            ++out[inA ? "onlyA" : "onlyB"];
            ++why[b.outcome[i]];
        }
    }
    why.forEach((n, o) => {
        if (n > out.mainCount) Object.assign(out, { mainB: o, mainCount: n });
    });
    return out;
}

// Overlap of two boxes: shared area over joint area, 0 to 1. Edges are inclusive.
export function overlap(p, q) {
    const size = (from, to) => Math.max(0, to - from + 1);
    const area = (b) => size(b[0], b[2]) * size(b[1], b[3]);
    const shared =
        size(Math.max(p[0], q[0]), Math.min(p[2], q[2])) *
        size(Math.max(p[1], q[1]), Math.min(p[3], q[3]));
    const joint = area(p) + area(q) - shared;
    return joint > 0 ? shared / joint : 0;
}

const sameBox = (p, q) =>
    (p === null) === (q === null) && (p === null || p.every((v, i) => v === q[i]));

// Differences of boxes and reports, from the frame tables only.
export function boxDifferences([a, b]) {
    const only = (one, other) =>
        runsOf(one.frames, (f) => (isReported(one, f) && !isReported(other, f) ? 1 : 0)).filter(
            (r) => r.kind === 1,
        );
    const overlaps = [];
    for (let f = 0; f < a.frames; ++f) {
        const [p, q] = [a.boxAfter(f), b.boxAfter(f)];
        if (p !== null && q !== null && !sameBox(p, q)) overlaps.push(overlap(p, q));
    }
    overlaps.sort((x, y) => x - y);
    const middle = overlaps.length >> 1;
    const median =
        overlaps.length % 2 === 1
            ? overlaps[middle]
            : (overlaps[middle - 1] + overlaps[middle]) / 2;
    return {
        onlyA: only(a, b),
        onlyB: only(b, a),
        differ: overlaps.length,
        median: overlaps.length > 0 ? median : 1,
        least: overlaps.length > 0 ? overlaps[0] : 1,
    };
}

const kApart = 15; // frames between two entries of the list
const kEntries = 8;

// Frames where most blocks differ, apart from one another: [{ f, onlyA, onlyB, mainB, mainCount }].
export function mostDiffering(frames) {
    const order = frames
        .map((d, f) => ({ f, ...d }))
        .filter((d) => d.onlyA + d.onlyB > 0)
        .sort((x, y) => y.onlyA + y.onlyB - (x.onlyA + x.onlyB) || x.f - y.f);
    const out = [];
    for (const d of order) {
        if (out.every((e) => Math.abs(e.f - d.f) >= kApart)) out.push(d);
        if (out.length === kEntries) break;
    }
    return out;
}

// The record of the whole clip: at(f), series(), and `done` once all was looked at.
export function createDifference(runs) {
    const n = runs[0].frames;
    const frames = new Array(n).fill(null);
    const zero = { onlyA: 0, onlyB: 0, both: 0, mainB: -1, mainCount: 0 };
    const record = {
        frames,
        done: false,
        at(f) {
            if (frames[f] !== null) return frames[f];
            const [p, q] = runs.map((run) => run.blocks(f));
            if (p === null || q === null) return null;
            frames[f] = frameDifference(p, q);
            return frames[f];
        },
        series: () => ({
            onlyA: Float64Array.from(frames, (d) => d?.onlyA ?? 0),
            onlyB: Float64Array.from(frames, (d) => d?.onlyB ?? 0),
        }),
        known: () => frames.map((d) => d ?? zero),
        boxes: boxDifferences(runs),
    };
    return record;
}
