// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The tests of a decision in their order, up to the one that decided. Pure; the record is that of
// words.js, with `border` (the block is on the grid's border), `frame` and `reference` (numbers of
// the frame shown and of its reference) beside it.

import * as o from "./outcomes.js";
import { framesNeeded, steadyLimit } from "./thresholds.js";

const kDecides = new Map([
    [o.kNone, "reference"],
    [o.kLumaSame, "luma"],
    [o.kAllCount, "all"],
    [o.kNoChange, "over"],
    [o.kBelow, "over"],
    [o.kBelowAlone, "over"],
    [o.kPatch, "saturated"],
    [o.kEdge, "saturated"],
    [o.kStrongEdge, "saturated"],
    [o.kCarried, "carried"],
    [o.kLow1, "young"],
    [o.kTooNew1, "young"],
    [o.kLow2, "young"],
    [o.kTooNew2, "young"],
    [o.kTooNew, "seen"],
    [o.kSteady, "isolated"],
    [o.kSteadyIsolated, "isolated"],
    [o.kHeld, "isolated"],
    [o.kHeldIsolated, "isolated"],
    [o.kJumps, "steady"],
]);

function saturatedText(r, decides) {
    if (decides) return o.kOutcomes[r.outcome].name.toLowerCase();
    if (r.border) return "never at the border";
    return r.d[0] < 170 ? `${r.d[0]} < 170` : "surroundings do not fit";
}

function carriedText(r, decides) {
    if (r.high === 0) return "0 of 9 high";
    return `${r.high} of 9 high, ${r.d[0]} ${decides ? ">" : "≤"} ${r.t.carried}`;
}

function overText(r, decides) {
    const th = r.act > 0 ? r.t.th : r.t.alone;
    return `${r.d[0]} ${decides ? "≤" : ">"} ${th}`;
}

function youngText(r, decides) {
    if (!decides) return `counter ${r.before} → ${Math.min(r.before + 1, 15)}`;
    const taken = o.isActive(r.outcome) ? "yes" : "no";
    return `frame ${r.after} of 2, low delay: ${taken}`;
}

// The counter that the tests saw: one more than before. A jump pulls it back afterwards.
const seenCount = (r) => Math.min(r.before + 1, 15);

function seenText(r, decides) {
    const need = framesNeeded(r.s);
    return decides ? `${seenCount(r)} of ${need}` : `${seenCount(r)} ≥ ${need}`;
}

function steadyText(r) {
    const largest = Math.max(...r.d);
    const limit = steadyLimit(r.s, Math.min(...r.d));
    if (largest <= limit) return `${largest} ≤ ${limit}`;
    return `${largest} > ${limit}, ${r.act} active, 4 hold it`;
}

function isolatedText(r) {
    if (r.high > 0) return `${r.high} of 9 high`;
    return `${r.act} active, ${r.s.MD_ActNeighborBlkCntTh} needed`;
}

const kRows = [
    {
        id: "reference",
        name: () => "Has a reference",
        key: "MD_RefFrmIdx",
        text: (r, decides) => (decides ? "first frame" : `frame ${r.reference}`),
    },
    {
        id: "luma",
        name: () => "Mean luma changed",
        key: "MD_HogDistAvailCheck",
        shown: (s) => s.MD_HogDistAvailCheck === 1,
        text: (r, decides) =>
            decides
                ? r.lumaDiff === null
                    ? `not over ${r.luma}`
                    : `${r.lumaDiff} ≤ ${r.luma}`
                : `by more than ${r.luma}`,
    },
    {
        id: "all",
        name: () => "Neighbours and past count",
        key: "MD_NeighborCorrelation",
        shown: (s) => s.MD_NeighborCorrelation === 0,
        text: () => "switched off",
    },
    { id: "saturated", name: () => "Saturated", key: null, text: saturatedText },
    {
        id: "carried",
        name: () => "Carried along",
        key: "MD_HogDist_Th_highActiveAdj_scale",
        text: carriedText,
    },
    {
        id: "over",
        name: (r) => (r.act > 0 ? "Over the threshold" : "Over the threshold, alone"),
        key: (r) => (r.act > 0 ? "MD_HogDist_Th" : "MD_HogDist_Th_nnAdj_Scale"),
        text: overText,
    },
    {
        id: "young",
        name: () => "Older than two frames",
        key: (r, decides) => (decides ? lowDelayKey(r) : "MD_LowDelayEn"),
        shown: (s) => s.MD_LowDelayEn !== 0,
        text: youngText,
    },
    {
        id: "seen",
        name: () => "Seen often enough",
        key: "MD_ActBlkRepeatFrmCntTh",
        text: seenText,
    },
    {
        id: "steady",
        name: () => "Steady",
        key: "MD_ActBlk_MinMaxRatio_Scale",
        text: steadyText,
    },
    {
        id: "isolated",
        name: () => "Not isolated",
        key: "MD_ActNeighborBlkCntTh",
        text: isolatedText,
    },
];

// The setting to turn where low delay refused: the first condition that does not hold.
function lowDelayKey(r) {
    const second = r.outcome === o.kTooNew2 || r.outcome === o.kLow2;
    if (r.d[0] <= r.t.low || (second && r.d[1] <= r.t.low)) return "MD_HogDist_Th_LowDelay_shift";
    if (r.act < r.s.MD_HogDist_Th_LowDelay_nn_count) return "MD_HogDist_Th_LowDelay_nn_count";
    return "MD_LowDelayEn";
}

// Rows of { id, name, key, text, state }, with state "passed", "yes" or "no" (the deciding row) or
// "later" (not reached; no text). Exactly one row decides.
export function ladder(r) {
    const deciding = kDecides.get(r.outcome);
    let reached = true;
    return kRows
        .filter((row) => row.shown === undefined || row.shown(r.s))
        .filter((row) => !(row.id === "all" && r.outcome < o.kAllCount))
        .map((row) => {
            const decides = row.id === deciding;
            const state = decides
                ? o.isActive(r.outcome)
                    ? "yes"
                    : "no"
                : reached
                  ? "passed"
                  : "later";
            if (decides) reached = false;
            return {
                id: row.id,
                name: row.name(r),
                key: typeof row.key === "function" ? row.key(r, decides) : row.key,
                text: state === "later" ? "" : row.text(r, decides),
                state,
            };
        });
}
