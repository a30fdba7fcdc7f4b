// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The outcomes of a block's decision, by the number that the recorder gave: name, group and how the
// stage draws them.

export const kActive = 0;
export const kOver = 1; // over its threshold, but not active
export const kUnder = 2;

export const kGroupNames = ["Active", "Over the threshold, not active", "Under the threshold"];

// Kinds of the stage's legend: colour on the picture and the form of the mark.
export const kKinds = {
    all: { name: "All count", color: "#f5a300", mark: "fill" },
    carried: { name: "Carried", color: "#f5a300", mark: "fill" },
    steady: { name: "Steady", color: "#ff6a13", mark: "fill" },
    low: { name: "Low delay", color: "#ffe14d", mark: "fill" },
    saturated: { name: "Saturated", color: "#e887c3", mark: "fill" },
    young: { name: "Too new", color: "#5cc8ff", mark: "hollow" },
    jumps: { name: "Jumps", color: "#2fd3a6", mark: "slash" },
    isolated: { name: "Isolated", color: "#7aa2ff", mark: "inner" },
    below: { name: "Below", color: "#d5dbe3", mark: "dot" },
};

export const kNone = 0;
export const kLumaSame = 1;
export const kAllCount = 2;
export const kNoChange = 3;
export const kBelow = 4;
export const kBelowAlone = 5;
export const kPatch = 6;
export const kEdge = 7;
export const kStrongEdge = 8;
export const kCarried = 9;
export const kLow1 = 10;
export const kTooNew1 = 11;
export const kLow2 = 12;
export const kTooNew2 = 13;
export const kTooNew = 14;
export const kSteady = 15;
export const kSteadyIsolated = 16;
export const kHeld = 17;
export const kHeldIsolated = 18;
export const kJumps = 19;

export const kOutcomes = [
    { name: "First frame", group: kUnder, kind: null },
    { name: "Luma unchanged", group: kUnder, kind: "below" },
    { name: "All count", group: kActive, kind: "all" },
    { name: "No change", group: kUnder, kind: null },
    { name: "Below threshold", group: kUnder, kind: "below" },
    { name: "Below, alone", group: kUnder, kind: "below" },
    { name: "Saturated patch", group: kActive, kind: "saturated" },
    { name: "Saturated edge", group: kActive, kind: "saturated" },
    { name: "Strong edge", group: kActive, kind: "saturated" },
    { name: "Carried along", group: kActive, kind: "carried" },
    { name: "Low delay, 1st frame", group: kActive, kind: "low" },
    { name: "Too new, 1st frame", group: kOver, kind: "young" },
    { name: "Low delay, 2nd frame", group: kActive, kind: "low" },
    { name: "Too new, 2nd frame", group: kOver, kind: "young" },
    { name: "Too new", group: kOver, kind: "young" },
    { name: "Steady", group: kActive, kind: "steady" },
    { name: "Steady but isolated", group: kOver, kind: "isolated" },
    { name: "Jumps, held", group: kActive, kind: "steady" },
    { name: "Jumps, held, isolated", group: kOver, kind: "isolated" },
    { name: "Jumps", group: kOver, kind: "jumps" },
];

export const isActive = (outcome) => kOutcomes[outcome].group === kActive;

// The outcomes of one kind of the legend.
export const outcomesOf = (kind) =>
    kOutcomes.map((o, i) => (o.kind === kind ? i : -1)).filter((i) => i >= 0);
