// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Gathers what the sentences and the ladder need of one block of one frame. No decision is made
// here: the outcome comes from the recording, the rest says what the rule saw.

import { kNone } from "./outcomes.js";
import { blockThresholds } from "./thresholds.js";

export const kFlagActive = 16;
export const kFlagHigh = 32;
const kCounter = 15;

// The frame that frame `f` of the run is compared with.
export const referenceOf = (run, f) => Math.max(0, f - run.settings.MD_RefFrmIdx);

// The nine places around block (x, y) as the decision saw them: above and left of this frame, the
// block itself and those after it of the last. { index or -1, distance (of this frame, null where
// the frame has no block values), active, high, now }, in raster order.
function neighbourhood(run, now, last, x, y) {
    const places = [];
    for (let dy = -1; dy <= 1; ++dy) {
        for (let dx = -1; dx <= 1; ++dx) {
            const inside = x + dx >= 0 && x + dx < run.grid.w && y + dy >= 0 && y + dy < run.grid.h;
            if (!inside) {
                places.push({ index: -1, distance: 0, active: false, high: false, now: false });
                continue;
            }
            const index = (y + dy) * run.grid.w + x + dx;
            const decided = dy < 0 || (dy === 0 && dx < 0);
            const state = decided ? now.state[index] : last === null ? 0 : last.state[index];
            places.push({
                index,
                distance: now.distance[index],
                active: (state & kFlagActive) !== 0,
                high: (state & kFlagHigh) !== 0,
                now: decided,
            });
        }
    }
    return places;
}

const distanceAt = (frame, i) => (frame === null ? 0 : frame.distance[i]);

// The record of words.js and ladder.js, or null where the frame's block values are not in the file.
// Frames before the first of the run count as distance 0 and state 0, as the chip starts with.
export function inspect(run, f, index) {
    const now = run.blocks(f);
    const last = f > 0 ? run.blocks(f - 1) : null;
    const older = f > 1 ? run.blocks(f - 2) : null;
    if (now === null || (f > 0 && last === null)) return null;
    const x = index % run.grid.w;
    const y = (index - x) / run.grid.w;
    const places = neighbourhood(run, now, last, x, y);
    const luma = run.lumaThreshold(f, index);
    const reference = referenceOf(run, f);
    const means = run.means(f);
    const referenceMeans = run.means(reference);
    return {
        x,
        y,
        index,
        frame: run.first + f,
        reference: run.first + reference,
        border: x === 0 || y === 0 || x === run.grid.w - 1 || y === run.grid.h - 1,
        outcome: now.outcome[index],
        d: [now.distance[index], distanceAt(last, index), distanceAt(older, index)],
        before: last === null ? 0 : last.state[index] & kCounter,
        after: now.state[index] & kCounter,
        state: now.state[index],
        places,
        act: places.filter((p) => p.active).length,
        later: places.filter((p, i) => i >= 4 && p.active).length,
        high: places.filter((p) => p.high).length,
        upLeft: places[0].distance,
        up: places[1].distance,
        upRight: places[2].distance,
        left: places[3].distance,
        meanKept: run.hasMeans(f),
        mean: means === null ? null : means[index],
        meanReference: referenceMeans === null ? null : referenceMeans[index],
        lumaDiff:
            means === null || referenceMeans === null || now.outcome[index] === kNone
                ? null
                : Math.abs(means[index] - referenceMeans[index]),
        luma,
        t: blockThresholds(run.settings, luma),
        s: run.settings,
    };
}

// How the distance came about, from the two vectors: the sentence under the table, or null when the
// vectors are not in the file. `vector` and `reference` are { v: ten values, length: class or null }.
export function distanceSteps(s, vector, reference) {
    if (vector === null || reference === null) return null;
    let sum = 0;
    for (let i = 0; i < 10; ++i) sum += (vector.v[i] - reference.v[i]) ** 2;
    const shift = s.MD_HogBlockSize === s.MD_HogCellSize ? 4 : 6;
    const moved = sum >> shift;
    const change = vector.length - reference.length;
    const weight =
        vector.length + (s.MD_HogDist_WeightMethod === 0 ? Math.abs(change) : Math.max(change, 0));
    const last = s.MD_HogNormalizeMode === 0 ? 4 : 12;
    const product = Math.imul(Math.imul(moved, weight), s.MD_HogDist_Scale2) >> last;
    return {
        sum,
        divisor: 2 ** shift,
        moved,
        weight,
        scale: s.MD_HogDist_Scale2,
        plain: last === 4 && weight * s.MD_HogDist_Scale2 === 16,
        lastDivisor: 2 ** last,
        product,
        distance: Math.min(product, 255) & 255,
    };
}

export function distanceStepsText(steps) {
    const parts = [`Squares sum to *${steps.sum}*; divided by ${steps.divisor}: *${steps.moved}*`];
    if (!steps.plain) {
        parts.push(
            `times ${steps.weight} (weight) times ${steps.scale} (scale), divided by ` +
                `${steps.lastDivisor}: *${steps.product}*`,
        );
    }
    if (steps.product > 255) parts.push("cut to *255*");
    return parts.join("; ");
}
