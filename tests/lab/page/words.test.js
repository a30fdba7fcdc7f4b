// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The sentences of a block: their texts, and over made-up runs that what they say is true.

import assert from "node:assert/strict";
import { test } from "node:test";
import { inspect } from "../../../lab/report/page/inspect.js";
import { ladder } from "../../../lab/report/page/ladder.js";
import { isActive, kOutcomes } from "../../../lab/report/page/outcomes.js";
import { blockThresholds } from "../../../lab/report/page/thresholds.js";
import {
    blockSentence,
    hoverLines,
    lowDelayReasons,
    plain,
} from "../../../lab/report/page/words.js";
import { kDefaults } from "./support/scene.js";
import { walkerRun } from "./support/make.js";
import { opened } from "./support/opened.js";

// A record of words.js: threshold 16, alone 32, high 64 unless settings say otherwise.
function record(outcome, more = {}, settings = {}) {
    const s = { ...kDefaults, MD_HogDist_Th: 16, ...settings };
    const luma = more.luma ?? 0;
    return {
        outcome,
        d: [0, 0, 0],
        before: 0,
        after: 0,
        act: 0,
        later: 0,
        high: 0,
        up: 0,
        left: 0,
        upLeft: 0,
        upRight: 0,
        lumaDiff: null,
        luma,
        t: blockThresholds(s, luma),
        s,
        border: false,
        frame: 557,
        reference: 556,
        ...more,
    };
}

const kTold = [
    [0, {}, "Not active: the first frame has nothing to be compared with."],
    [
        1,
        { lumaDiff: 1, luma: 2 },
        "Not active: its mean luma changed by 1, and up to 2 does not count here.",
    ],
    [
        1,
        { luma: 2 },
        "Not active: its mean luma changed too little, and up to 2 does not count here.",
    ],
    [
        2,
        { d: [12, 0, 0] },
        "Active: neighbours and past are switched off, so every block counts, this one with distance 12.",
    ],
    [3, {}, "Not active: distance 0, no change."],
    [
        3,
        { before: 3, after: 2 },
        "Not active: distance 0, no change. The repeat counter falls from 3 to 2.",
    ],
    [4, { d: [12, 0, 0], act: 1 }, "Not active: distance 12 is not over the threshold 16."],
    [
        4,
        { d: [12, 0, 0], act: 1, luma: 4 },
        "Not active: distance 12 is not over the threshold 21 (raised from 16: the light changed).",
    ],
    [
        5,
        { d: [4, 0, 0] },
        "Not active: distance 4 is not over the threshold 32 of a block without active neighbours (16 with).",
    ],
    [
        5,
        { d: [31, 0, 0] },
        "Not active: distance 31 is over the threshold 16, but no block around is active, and alone it has to be over 32.",
    ],
    [
        6,
        { d: [255, 0, 0] },
        "Active: distance 255 here, above, above left and left: a patch that has changed as a whole.",
    ],
    [
        7,
        { d: [255, 0, 0], left: 203 },
        "Active: distance 255, nothing in the three blocks above, 203 at the left (180 needed): the upper edge of a change.",
    ],
    [
        8,
        { d: [204, 0, 0], left: 255 },
        "Active: distance 204 (170 needed), at most 2 in the three blocks above, 255 at the left (200 needed): the upper edge of a change.",
    ],
    [
        9,
        { d: [12, 0, 0], high: 2 },
        "Active: carried along. 2 blocks of the nine are highly active, and then a distance over 1 is enough; it has 12.",
    ],
    [
        9,
        { d: [12, 0, 0], high: 1 },
        "Active: carried along. 1 block of the nine is highly active, and then a distance over 1 is enough; it has 12.",
    ],
    [
        10,
        { d: [56, 9, 0], act: 2, after: 1 },
        "Active in its first frame (low delay): distance 56 is over 32, it was quiet in the two frames before (0, 9), 2 active blocks among the nine.",
    ],
    [
        11,
        { d: [18, 0, 0], act: 1, after: 1 },
        "Not active: distance 18 is over the threshold 16, but seen for 1 frame of 3. Low delay does not take it: it is not over 32.",
    ],
    [
        11,
        { d: [40, 20, 0], after: 1 },
        "Not active: distance 40 is over the threshold 32 of a block without active neighbours, but its repeat counter has fallen back to 1 of 3. Low delay does not take it: no active block around (1 needed); not quiet in the frame before (20).",
    ],
    [
        11,
        { d: [40, 42, 120], act: 1, after: 1 },
        "Not active: distance 40 is over the threshold 16, but its repeat counter has fallen back to 1 of 3. Low delay does not take it: not quiet in the two frames before (120, 42).",
    ],
    [
        12,
        { d: [72, 109, 10], act: 0, later: 1, after: 2 },
        "Active in its second frame (low delay): distances 109 and 72 are over 32, it was quiet before (10), no active block among the nine.",
    ],
    [
        13,
        { d: [30, 20, 42], act: 1, after: 2 },
        "Not active: distance 30 is over the threshold 16, but seen for 2 frames of 3. Low delay does not take it: it is not over 32; the frame before (20) is not over 32; not quiet two frames before (42).",
    ],
    [
        14,
        { d: [12, 0, 0], act: 1, after: 1 },
        "Not active: distance 12 is over the threshold 10, but seen for 1 frame of 3.",
        { MD_HogDist_Th: 10, MD_LowDelayEn: 0 },
    ],
    [
        15,
        { d: [99, 130, 75], act: 2, after: 3 },
        "Active: over the threshold 16 for 3 frames (3 needed) and steady: 75, 130, 99 are within 2 to 1.",
    ],
    [
        16,
        { d: [99, 130, 75], act: 1, after: 3 },
        "Not active: seen long enough and steady, but isolated: 1 active block among the nine, 2 needed. Its flag stays and counts for its neighbours.",
    ],
    [
        17,
        { d: [75, 246, 44], act: 5, after: 2 },
        "Active: its last distances 44, 246, 75 jump by more than 2 to 1, but 5 active blocks among the nine hold it (4 needed). Its counter falls back to 2.",
    ],
    [
        18,
        { d: [75, 246, 44], act: 4, after: 2 },
        "Not active: it jumps, 4 active blocks among the nine hold it, but 6 are needed to stay. Its flag stays and counts for its neighbours.",
        { MD_ActNeighborBlkCntTh: 6 },
    ],
    [
        19,
        { d: [30, 10, 115], act: 3, after: 2 },
        "Not active: seen long enough, but its last distances 115, 10, 30 jump by more than 2.25 to 1, and 3 of 4 active blocks are there to hold it. Its counter falls back to 2.",
        { MD_ActBlk_MinMaxRatio_Scale: 20 },
    ],
];

test("each outcome has its sentence, with singular and plural", () => {
    for (const [outcome, more, text, settings] of kTold) {
        assert.equal(
            plain(blockSentence(record(outcome, more, settings))),
            text,
            `outcome ${outcome}`,
        );
    }
    assert.equal(new Set(kTold.map(([o]) => o)).size, kOutcomes.length);
});

test("low delay names how many blocks around it wants", () => {
    const s = { MD_HogDist_Th_LowDelay_nn_count: 3, MD_HogDist_Th_LowDelay_prev_nn_count: 2 };
    const first = record(11, { d: [90, 0, 0], act: 1 }, s);
    assert.deepEqual(lowDelayReasons(first, false).map(plain), [
        "only 1 active block around (3 needed)",
    ]);
    const second = record(13, { d: [90, 90, 0], act: 2, later: 1 }, s);
    assert.deepEqual(lowDelayReasons(second, true).map(plain), [
        "only 2 active blocks around (3 needed, or 2 of those right of it and below)",
    ]);
});

test("the pointer shows distance and outcome of a block", () => {
    const lines = hoverLines(18, 37, record(11, { d: [61, 42, 120], after: 1 })).map(plain);
    assert.deepEqual(lines, ["18, 37  distance 61 was 120, 42", "Not active: too new, 1st frame"]);
});

// Runs that reach every outcome between them.
const kRuns = [
    { settings: {}, seed: 7 },
    {
        settings: { MD_LowDelayEn: 0, MD_ActBlkRepeatFrmCntTh: 2, MD_HogDist_Th_nnAdj_Scale: 3 },
        seed: 3,
    },
    {
        settings: {
            MD_ActNeighborBlkCntTh: 6,
            MD_ActBlkRepeatFrmCntTh: 5,
            MD_HogDist_Th_highActiveAdj_scale: 31,
        },
        seed: 5,
    },
    {
        settings: {
            MD_HogDist_Th: 40,
            MD_HogDist_Th_highActiveAdj_scale: 31,
            MD_ActNeighborBlkCntTh: 6,
        },
        seed: 11,
    },
    { settings: { MD_NeighborCorrelation: 0 }, seed: 2 },
];

const holds = (a, sign, b) => ({ ">": a > b, "<": a < b, "≤": a <= b, "≥": a >= b })[sign];

// What a row of the ladder says in signs must be true.
function assertTrue(text, where) {
    for (const [, a, sign, b] of text.matchAll(/(\d+) ([<>≤≥]) (\d+)/g)) {
        assert.ok(holds(Number(a), sign, Number(b)), `${where}: ${text}`);
    }
}

function checkBlock(run, f, i, reached) {
    const r = inspect(run, f, i);
    const where = `frame ${f}, block ${i}, outcome ${r.outcome}, settings ${JSON.stringify(run.settings)}`;
    const text = blockSentence(r);
    assert.doesNotMatch(text, /undefined|NaN|null/, where);
    assert.equal(text.startsWith("Active"), isActive(r.outcome), where);
    if (r.outcome === 11 || r.outcome === 13) {
        assert.ok(
            lowDelayReasons(r, r.outcome === 13).length > 0,
            `${where}: refused without a reason`,
        );
    }
    const rows = ladder(r);
    const deciding = rows.filter((row) => row.state === "yes" || row.state === "no");
    assert.equal(deciding.length, 1, where);
    assert.equal(deciding[0].state === "yes", isActive(r.outcome), where);
    for (const row of rows) {
        assertTrue(row.text, where);
        assert.doesNotMatch(row.text, /undefined|NaN/, where);
    }
    reached.add(r.outcome);
}

test("over whole runs exactly one row decides, and what the rows say is true", () => {
    const reached = new Set();
    for (const { settings, seed } of kRuns) {
        const run = opened(walkerRun({ frames: 120, seed, settings }));
        for (let f = 0; f < run.frames; ++f) {
            for (let i = 0; i < run.grid.blocks; ++i) checkBlock(run, f, i, reached);
        }
    }
    const missing = kOutcomes.map((_, o) => o).filter((o) => !reached.has(o) && o !== 1);
    assert.deepEqual(missing, [], "outcomes that no run reached");
});

test("a planted wrong outcome is caught by the ladder's own numbers", () => {
    const made = walkerRun({ frames: 40 });
    const f = made.frames.findIndex((frame) => frame.outcome.includes(9));
    const i = made.frames[f].outcome.indexOf(9);
    made.frames[f].outcome[i] = 4;
    const run = opened(made);
    assert.throws(() => checkBlock(run, f, i, new Set()), /≤/);
});
