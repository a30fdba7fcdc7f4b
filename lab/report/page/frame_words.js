// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Why a frame has a box or none, and what the gate did with it, as sentences. Pure; the record is
// { reason, p: [4 numbers], gate, g: [2 numbers], active, s: settings by key }. Numbers are between
// asterisks. Codes in ../FORMAT.md.

import { short } from "../../page/format.js";

const n = (value) => `*${value}*`;
const blocks = (count, kind = "active block") =>
    count === 1 ? `${n(1)} ${kind}` : `${n(count)} ${kind}s`;
const axis = (which) => (which === 1 ? "across" : "down");
const times = (now, before) => n(before > 0 ? short(now / before) : "many");

const over = (r) => `${blocks(r.p[0])} over ${n(r.s.MD_HogDist_Th)}`;

const kReasons = {
    1: () => "First frame: nothing to be compared with.",
    10: (r) => `Motion: ${over(r)}, ${n(r.s.MD_BlkCnt_Th)} needed.`,
    11: (r) => `No motion: ${over(r)}, ${n(r.s.MD_BlkCnt_Th)} needed.`,
    12: (r) => `No motion: ${over(r)}, but all in one row or column.`,
    20: (r) =>
        `Motion: best group with mean distance ${n(r.p[0])}; smoothed score ${n(r.p[1])} is ` +
        `over ${n(r.p[2])}.`,
    21: (r) =>
        `No motion: smoothed score ${n(r.p[1])} is not over ${n(r.p[2])} (best group: mean ` +
        `distance ${n(r.p[0])}).`,
    22: (r) => `No motion: no group of more than ${n(r.p[3])} blocks; score falls to ${n(r.p[1])}.`,
    23: () => "No motion: the best group is one row or column.",
    30: (r) => `Motion: a box has lasted ${n(r.p[0])} frames (${n(r.p[1])} needed).`,
    31: () => "No motion: no block was confirmed.",
    32: (r) =>
        `No motion: ${blocks(r.p[0], "block")} confirmed, but none where the fullest column and ` +
        "row meet.",
    33: (r) => `No motion yet: the box has lasted ${n(r.p[0])} of ${n(r.p[1])} frames.`,
    34: (r) => `No motion: the box grew ${times(r.p[2], r.p[3])} times, ${n(1.3)} allowed.`,
    35: (r) => `No motion: the box is too small (area ${n(r.p[2])}, ${n(r.p[3])} needed).`,
    40: (r) => `Motion: ${blocks(r.active)}.`,
    41: (r) =>
        `No motion: too thin ${axis(r.p[0])} (${r.p[1] === 1 ? `${n(1)} pixel` : `${n(r.p[1])} pixels`}, ` +
        `${n(r.p[2])} needed).`,
    42: (r) =>
        `No motion: too light ${axis(r.p[0])} for its size (sum of distances ${n(r.p[1])}, ` +
        `${n(r.p[3])} needed for ${n(r.p[2])} pixels).`,
};

const kGate = {
    0: () => "",
    1: () => "Gate closed.",
    2: (r) => `Gate holds the box: seen for ${n(r.g[0])} of ${n(r.g[1])} frames.`,
    3: () => "Gate holds the box: too small.",
    4: (r) =>
        `Gate holds the box: its summed area grew ${times(r.g[1], r.g[0])} times, ` +
        `${n(r.s.MD_PP_Area_Converge_Thresh)} allowed.`,
    5: (r) =>
        `Gate holds the box: its summed aspect grew ${times(r.g[1], r.g[0])} times, ` +
        `${n(r.s.MD_PP_Aspect_Converge_Thresh)} allowed.`,
    6: () => "Gate opens and widens the box.",
    7: () => "Gate open.",
    8: () => "Gate closes.",
};

export function frameSentence(r) {
    const reason = kReasons[r.reason]?.(r) ?? `Reason ${r.reason}.`;
    const gate = kGate[r.gate]?.(r) ?? "";
    return gate === "" ? reason : `${reason} ${gate}`;
}

// The setting to turn where a frame has no box, or null: the one that the sentence speaks of.
export function frameKey(r) {
    const gate = {
        2: "MD_Bbox_PP_Window",
        4: "MD_PP_Area_Converge_Thresh",
        5: "MD_PP_Aspect_Converge_Thresh",
    };
    const reason = { 10: "MD_BlkCnt_Th", 11: "MD_BlkCnt_Th", 1: "MD_RefFrmIdx" };
    return gate[r.gate] ?? reason[r.reason] ?? null;
}

// The record of frame f from a run's frame table.
export function frameRecord(run, f) {
    const c = run.columns;
    return {
        reason: c.reason[f],
        p: [c.p0[f], c.p1[f], c.p2[f], c.p3[f]],
        gate: c.gate[f],
        g: [c.g0[f], c.g1[f]],
        active: c.active[f],
        s: run.settings,
    };
}

// True where the method found a box that the gate held back.
export const isHeld = (run, f) => run.columns.motion[f] === 1 && run.columns.after_left[f] < 0;
export const isReported = (run, f) => run.columns.after_left[f] >= 0;
