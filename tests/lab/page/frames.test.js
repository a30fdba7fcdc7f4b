// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The sentence of a frame: every reason of every method, every word of the gate.

import assert from "node:assert/strict";
import { test } from "node:test";
import { frameKey, frameRecord, frameSentence } from "../../../lab/report/page/frame_words.js";
import { refinementText } from "../../../lab/report/page/refinement.js";
import { plain } from "../../../lab/report/page/words.js";
import { kDefaults } from "./support/scene.js";

const s = { ...kDefaults, MD_HogDist_Th: 16, MD_BlkCnt_Th: 120 };
// One frame of a run as the page reads it from the file's columns.
const tell = (reason, p = [], gate = 0, g = []) => {
    const [p0, p1, p2, p3] = [0, 1, 2, 3].map((i) => [p[i] ?? 0]);
    const [g0, g1] = [0, 1].map((i) => [g[i] ?? 0]);
    const columns = { reason: [reason], p0, p1, p2, p3, gate: [gate], g0, g1, active: [87] };
    return plain(frameSentence(frameRecord({ columns, settings: s }, 0)));
};

test("every reason has its sentence", () => {
    const told = [
        [1, [], "First frame: nothing to be compared with."],
        [10, [245], "Motion: 245 active blocks over 16, 120 needed."],
        [11, [105], "No motion: 105 active blocks over 16, 120 needed."],
        [11, [1], "No motion: 1 active block over 16, 120 needed."],
        [12, [1], "No motion: 1 active block over 16, but all in one row or column."],
        [
            20,
            [41, 22, 10],
            "Motion: best group with mean distance 41; smoothed score 22 is over 10.",
        ],
        [
            21,
            [12, 8, 10],
            "No motion: smoothed score 8 is not over 10 (best group: mean distance 12).",
        ],
        [22, [0, 6, 10, 3], "No motion: no group of more than 3 blocks; score falls to 6."],
        [23, [12, 20, 10], "No motion: the best group is one row or column."],
        [30, [6, 4, 900, 800], "Motion: a box has lasted 6 frames (4 needed)."],
        [31, [9], "No motion: no block was confirmed."],
        [32, [3], "No motion: 3 blocks confirmed, but none where the fullest column and row meet."],
        [33, [2, 4], "No motion yet: the box has lasted 2 of 4 frames."],
        [34, [6, 4, 1800, 1000], "No motion: the box grew 1.8 times, 1.3 allowed."],
        [35, [6, 4, 4, 6], "No motion: the box is too small (area 4, 6 needed)."],
        [40, [], "Motion: 87 active blocks."],
        [41, [1, 1, 2], "No motion: too thin across (1 pixel, 2 needed)."],
        [41, [0, 0, 2], "No motion: too thin down (0 pixels, 2 needed)."],
        [
            42,
            [0, 12, 30, 60],
            "No motion: too light down for its size (sum of distances 12, 60 needed for 30 pixels).",
        ],
    ];
    for (const [reason, p, text] of told) assert.equal(tell(reason, p), text);
});

test("everything that the gate does has its sentence", () => {
    const told = [
        [1, [], "Gate closed."],
        [2, [3, 5], "Gate holds the box: seen for 3 of 5 frames."],
        [3, [4, 10], "Gate holds the box: too small."],
        [4, [1000, 1800], "Gate holds the box: its summed area grew 1.8 times, 1.3 allowed."],
        [5, [1000, 1700], "Gate holds the box: its summed aspect grew 1.7 times, 1.5 allowed."],
        [6, [], "Gate opens and widens the box."],
        [7, [], "Gate open."],
        [8, [], "Gate closes."],
    ];
    for (const [gate, g, text] of told)
        assert.equal(tell(40, [], gate, g), `Motion: 87 active blocks. ${text}`);
    assert.equal(tell(40, [], 0), "Motion: 87 active blocks.");
});

test("each frame's sentence names the setting to turn", () => {
    const key = (reason, gate) => frameKey({ reason, p: [], gate, g: [], s });
    assert.equal(key(11, 1), "MD_BlkCnt_Th");
    assert.equal(key(10, 2), "MD_Bbox_PP_Window");
    assert.equal(key(20, 5), "MD_PP_Aspect_Converge_Thresh");
    assert.equal(key(21, 0), null, "the limits of method 1 are built in");
});

test("every case of method 2's refinement has its sentence, listed or not", () => {
    const texts = Array.from({ length: 11 }, (_, c) => plain(refinementText(c)));
    assert.equal(new Set(texts).size, 11);
    for (const c of [3, 5, 7, 8]) {
        assert.match(refinementText(c), /Confirmed and listed\.$/);
        assert.match(refinementText(c | 16), /not listed: fewer than/);
    }
});
