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

// Differences of boxes and reports, from the frame tables alone.
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

// The stage at which a frame differs first, in the order of the chip, or null if it does not:
// { stage, block or -1, sameDistances }. Only what the file holds can be compared.
export function stageOf([a, b], f) {
    const [p, q] = [a.blocks(f), b.blocks(f)];
    const find = (x, y) => {
        for (let i = 0; i < x.length; ++i) if (x[i] !== y[i]) return i;
        return -1;
    };
    const [la, lb] = [a.means(f), b.means(f)];
    if (la !== null && lb !== null && la !== lb) {
        const block = find(la, lb);
        if (block >= 0) return { stage: "in the luma", block, sameDistances: false };
    }
    if (p !== null && q !== null) {
        const block = find(p.distance, q.distance);
        if (block >= 0) {
            const [v, w] = [a.vector(f, block), b.vector(f, block)];
            const vectors = v !== null && w !== null && v.v.some((n, i) => n !== w.v[i]);
            return {
                stage: vectors ? "in the vectors" : "in the distances",
                block,
                sameDistances: false,
            };
        }
        // Outcomes can differ in the words alone; what counts is the state or the mask.
        for (let i = 0; i < p.outcome.length; ++i) {
            if (p.state[i] !== q.state[i] || active(p.outcome[i]) !== active(q.outcome[i])) {
                return { stage: "in the decision", block: i, sameDistances: true };
            }
        }
    }
    if (!sameBox(a.boxBefore(f), b.boxBefore(f)))
        return { stage: "in the box", block: -1, sameDistances: true };
    if (!sameBox(a.boxAfter(f), b.boxAfter(f)))
        return { stage: "behind the gate", block: -1, sameDistances: true };
    return null;
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

// The record of the whole clip: at(f), series(), and `done` and `first` once all was looked at.
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
        first: undefined,
    };
    return record;
}

// The first frame that differs: { f, stage, block, sameDistances } or null. Unpacks what it needs.
export async function firstDifference(runs, chunkFrames) {
    const ownLuma = runs[0].luma_of !== runs[1].luma_of;
    for (let f = 0; f < runs[0].frames; ++f) {
        if (f % chunkFrames === 0) {
            await Promise.all(runs.map((run) => run.loadChunk(f / chunkFrames)));
            if (ownLuma) await Promise.all(runs.map((run) => run.loadFeatures(f)));
        }
        if (stageOf(runs, f) === null) continue;
        await Promise.all(runs.map((run) => run.loadFeatures(f)));
        return { f, ...stageOf(runs, f) };
    }
    return null;
}
