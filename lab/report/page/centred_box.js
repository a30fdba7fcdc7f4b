// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Box method 0: where its box comes from, and why an active block can be outside of it. Pure.

import { isActive } from "./outcomes.js";

const kMethod = 0;
const n = (value) => `*${value}*`;
const counts = (run, now, i) =>
    isActive(now.outcome[i]) && now.distance[i] > run.settings.MD_HogDist_Th;

// What method 0 makes of frame f, in working pixels, each [across, down]: the weighted centre, how
// far the box reaches from it to both sides, and whether that is more than to the nearer edge of
// the moving area, as it is where that edge is less than a block away. Null without a box, without
// block values, or where the chip's 32-bit sums overflow, which puts the centre anywhere.
export function centredBox(run, f) {
    const now = run.blocks(f);
    if (run.method !== kMethod || run.boxBefore(f) === null || now === null) return null;
    const { w, stride } = run.grid;
    const least = [Infinity, Infinity];
    const most = [0, 0];
    const moment = [0, 0];
    let weight = 0;
    for (let i = 0; i < now.distance.length; ++i) {
        if (!counts(run, now, i)) continue;
        weight += now.distance[i];
        [(i % w) * stride, Math.floor(i / w) * stride].forEach((at, axis) => {
            least[axis] = Math.min(least[axis], at);
            most[axis] = Math.max(most[axis], at);
            moment[axis] += at * now.distance[i];
        });
    }
    if (weight === 0 || Math.max(...moment) >= 2 ** 32) return null;
    const half = stride >> 1;
    const corner = moment.map((sum) => Math.floor(sum / weight));
    const nearer = corner.map((at, axis) => Math.min(most[axis] - at, at - least[axis]));
    return {
        centre: corner.map((at) => at + half),
        reach: nearer.map((to) => Math.max(to, half) + half),
        stretched: nearer.some((to) => to < half),
    };
}

// The block's own square of the grid and the box have no pixel in common.
function isOutside(run, index, [left, top, right, bottom]) {
    const { w, stride } = run.grid;
    const x = (index % w) * stride;
    const y = Math.floor(index / w) * stride;
    return x > right || x + stride <= left || y > bottom || y + stride <= top;
}

// Why the active block is outside the box of frame f: { text, key of the setting to turn }. Null
// where nothing needs to be said.
export function outsideReason(run, f, index) {
    const now = run.blocks(f);
    const box = centredBox(run, f);
    if (box === null || !isActive(now.outcome[index])) return null;
    const boxes = [run.boxBefore(f), run.boxAfter(f)].filter((b) => b !== null);
    if (!boxes.every((b) => isOutside(run, index, b))) return null;
    if (!counts(run, now, index)) {
        return {
            text:
                "Outside the box, and not counted for it: method 0 takes active blocks over " +
                `${n(run.settings.MD_HogDist_Th)}.`,
            key: "MD_HogDist_Th",
        };
    }
    const [across, down] = box.reach;
    return {
        text:
            `Outside the box: from the weighted centre ${n(box.centre.join(", "))}, method 0 ` +
            "reaches only as far as the nearer edge of the moving area on each axis" +
            `${box.stretched ? ", and a block at least" : ""}: ${n(across)} pixels across, ` +
            `${n(down)} down.`,
        key: "MD_PostProcMethod",
    };
}
