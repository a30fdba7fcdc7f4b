// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Why a block is active or not, as a sentence. Pure: a plain record in, a text out, with numbers
// between asterisks (they are set bold).
//
// The record of a block:
//   outcome       number of outcomes.js
//   d             [this frame's distance, the one before, the one before that]
//   before, after repeat counter before and after the frame
//   act, later, high  active among the nine as the decision saw them, those not yet decided in this
//                 frame (right, below, itself), highly active among the nine
//   up, left, upLeft, upRight  distances of this frame, 0 outside the grid
//   lumaDiff      change of mean luma, or null when unknown
//   luma          luma threshold in force
//   t             thresholds (thresholds.js)
//   s             settings by key

import { kOutcomes } from "./outcomes.js";
import { framesNeeded, ratioText } from "./thresholds.js";

const n = (value) => `*${value}*`;
const frames = (count) => (count === 1 ? `${n(1)} frame` : `${n(count)} frames`);

function threshold(r) {
    const raised = r.t.th > r.t.set ? ` (raised from ${n(r.t.set)}: the light changed)` : "";
    return `threshold ${n(r.t.th)}${raised}`;
}

// The threshold that applied: a block without active neighbours has one of its own.
function applied(r) {
    return r.act > 0
        ? threshold(r)
        : `threshold ${n(r.t.alone)} of a block without active neighbours`;
}

export function around(count) {
    if (count === 0) return "no active block among the nine";
    return count === 1
        ? `${n(1)} active block among the nine`
        : `${n(count)} active blocks among the nine`;
}

function lumaSame(r) {
    const by = r.lumaDiff === null ? "too little" : `by ${n(r.lumaDiff)}`;
    return `Not active: its mean luma changed ${by}, and up to ${n(r.luma)} does not count here.`;
}

function noChange(r) {
    const falls =
        r.before > r.after ? ` The repeat counter falls from ${n(r.before)} to ${n(r.after)}.` : "";
    return `Not active: distance ${n(0)}, no change.${falls}`;
}

function belowAlone(r) {
    const d = n(r.d[0]);
    if (r.d[0] > r.t.th) {
        return (
            `Not active: distance ${d} is over the ${threshold(r)}, but no block around is ` +
            `active, and alone it has to be over ${n(r.t.alone)}.`
        );
    }
    return (
        `Not active: distance ${d} is not over the threshold ${n(r.t.alone)} of a block without ` +
        `active neighbours (${n(r.t.th)} with).`
    );
}

function carried(r) {
    const blocks =
        r.high === 1
            ? `${n(1)} block of the nine is highly active`
            : `${n(r.high)} blocks of the nine are highly active`;
    return (
        `Active: carried along. ${blocks}, and then a distance over ${n(r.t.carried)} is enough; ` +
        `it has ${n(r.d[0])}.`
    );
}

function aroundReason(r, second) {
    const s = r.s;
    const need = s.MD_HogDist_Th_LowDelay_nn_count;
    const needLater = s.MD_HogDist_Th_LowDelay_prev_nn_count;
    if (r.act >= need || (second && r.later >= needLater)) return null;
    const blocks = r.act === 0 ? "no active block" : `only ${n(r.act)} active`;
    const tail = r.act > 1 ? " blocks around" : r.act === 1 ? " block around" : " around";
    const or =
        second && needLater < need ? `, or ${n(needLater)} of those right of it and below` : "";
    return `${blocks}${tail} (${n(need)} needed${or})`;
}

function quietReason(r, second) {
    const [, one, two] = r.d;
    const loudOne = !second && one >= r.t.th;
    const loudTwo = two >= r.t.th;
    if (loudOne && loudTwo) return `not quiet in the two frames before (${n(two)}, ${n(one)})`;
    if (loudOne) return `not quiet in the frame before (${n(one)})`;
    return loudTwo ? `not quiet two frames before (${n(two)})` : null;
}

// Why the low-delay rule refused: all conditions that do not hold, in a fixed order.
export function lowDelayReasons(r, second) {
    const reasons = [];
    if (r.d[0] <= r.t.low) reasons.push(`it is not over ${n(r.t.low)}`);
    if (second && r.d[1] <= r.t.low) {
        reasons.push(`the frame before (${n(r.d[1])}) is not over ${n(r.t.low)}`);
    }
    reasons.push(aroundReason(r, second), quietReason(r, second));
    return reasons.filter((reason) => reason !== null);
}

function lowDelayTaken(r, second) {
    const [now, one, two] = r.d;
    const low = n(r.t.low);
    if (second) {
        return (
            `Active in its second frame (low delay): distances ${n(one)} and ${n(now)} are over ` +
            `${low}, it was quiet before (${n(two)}), ${around(r.act)}.`
        );
    }
    return (
        `Active in its first frame (low delay): distance ${n(now)} is over ${low}, it was quiet ` +
        `in the two frames before (${n(two)}, ${n(one)}), ${around(r.act)}.`
    );
}

function tooNew(r, second) {
    const need = framesNeeded(r.s);
    const fallen = r.d[1] >= r.t.th && !second;
    const seen = fallen
        ? `but its repeat counter has fallen back to ${n(r.after)} of ${n(need)}`
        : `but seen for ${frames(r.after)} of ${n(need)}`;
    return (
        `Not active: distance ${n(r.d[0])} is over the ${applied(r)}, ${seen}. ` +
        `Low delay does not take it: ${lowDelayReasons(r, second).join("; ")}.`
    );
}

const lastThree = (r) => `${n(r.d[2])}, ${n(r.d[1])}, ${n(r.d[0])}`;
const jumps = (r) => `jump by more than ${n(ratioText(r.s))} to 1`;
const fallsBack = (r) => `Its counter falls back to ${n(r.after)}.`;
const keepsFlag = "Its flag stays and counts for its neighbours.";

function steady(r) {
    const need = framesNeeded(r.s);
    return (
        `Active: over the ${applied(r)} for ${frames(r.after)} (${n(need)} needed) and steady: ` +
        `${lastThree(r)} are within ${n(ratioText(r.s))} to 1.`
    );
}

function jumpsAway(r) {
    const blocks =
        r.act === 1
            ? `${n(1)} of ${n(4)} active blocks is`
            : `${n(r.act)} of ${n(4)} active blocks are`;
    return (
        `Not active: seen long enough, but its last distances ${lastThree(r)} ${jumps(r)}, and ` +
        `${blocks} there to hold it. ${fallsBack(r)}`
    );
}

const isolatedNeeded = (r) => n(r.s.MD_ActNeighborBlkCntTh);

const kSentences = [
    () => "Not active: the first frame has nothing to be compared with.",
    lumaSame,
    (r) =>
        "Active: neighbours and past are switched off, so every block counts, this one with " +
        `distance ${n(r.d[0])}.`,
    noChange,
    (r) => `Not active: distance ${n(r.d[0])} is not over the ${threshold(r)}.`,
    belowAlone,
    (r) =>
        `Active: distance ${n(r.d[0])} here, above, above left and left: a patch that has ` +
        "changed as a whole.",
    (r) =>
        `Active: distance ${n(r.d[0])}, nothing in the three blocks above, ${n(r.left)} at the ` +
        `left (${n(180)} needed): the upper edge of a change.`,
    (r) =>
        `Active: distance ${n(r.d[0])} (${n(170)} needed), at most ${n(2)} in the three blocks ` +
        `above, ${n(r.left)} at the left (${n(200)} needed): the upper edge of a change.`,
    carried,
    (r) => lowDelayTaken(r, false),
    (r) => tooNew(r, false),
    (r) => lowDelayTaken(r, true),
    (r) => tooNew(r, true),
    (r) =>
        `Not active: distance ${n(r.d[0])} is over the ${applied(r)}, but seen for ` +
        `${frames(r.after)} of ${n(framesNeeded(r.s))}.`,
    steady,
    (r) =>
        `Not active: seen long enough and steady, but isolated: ${around(r.act)}, ` +
        `${isolatedNeeded(r)} needed. ${keepsFlag}`,
    (r) =>
        `Active: its last distances ${lastThree(r)} ${jumps(r)}, but ${around(r.act)} hold it ` +
        `(${n(4)} needed). ${fallsBack(r)}`,
    (r) =>
        `Not active: it jumps, ${around(r.act)} hold it, but ${isolatedNeeded(r)} are needed to ` +
        `stay. ${keepsFlag}`,
    jumpsAway,
];

export const blockSentence = (r) => kSentences[r.outcome](r);

export const plain = (text) => text.replaceAll("*", "");

// The two lines beside the pointer on the stage.
export function hoverLines(x, y, r) {
    const was = `${n(r.d[2])}, ${n(r.d[1])}`;
    const name = kOutcomes[r.outcome].name;
    const active = kOutcomes[r.outcome].group === 0;
    const first = `${x}, ${y}  distance ${n(r.d[0])} was ${was}`;
    return [first, `${active ? "Active" : "Not active"}: ${name[0].toLowerCase()}${name.slice(1)}`];
}
