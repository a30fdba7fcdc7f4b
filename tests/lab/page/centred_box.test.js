// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Why a block is outside the box of method 0: every case for which the panel has words.

import assert from "node:assert/strict";
import { test } from "node:test";
import { centredBox, outsideReason } from "../../../lab/report/page/centred_box.js";
import { kBelow, kSteady } from "../../../lab/report/page/outcomes.js";
import { plain } from "../../../lab/report/page/words.js";

const [kW, kH, kStride] = [40, 20, 16];
const at = (x, y) => y * kW + x;

// A run of one frame whose blocks are { index: distance }, active unless among `idle`.
function made(distances, { idle = [], before = kBox, after = null, method = 0 } = {}) {
    const now = { distance: new Array(kW * kH).fill(0), outcome: new Array(kW * kH).fill(kBelow) };
    for (const [index, distance] of Object.entries(distances)) {
        now.distance[index] = distance;
        if (!idle.includes(Number(index))) now.outcome[index] = kSteady;
    }
    return {
        method,
        settings: { MD_HogDist_Th: 16, MD_PostProcMethod: method },
        grid: { w: kW, h: kH, stride: kStride },
        blocks: () => now,
        boxBefore: () => before,
        boxAfter: () => after,
    };
}

// Heavy blocks at the left, light ones far to the right: the centre leans to the left.
const kLeaning = {
    [at(2, 2)]: 200,
    [at(2, 6)]: 200,
    [at(4, 4)]: 200,
    [at(30, 4)]: 20,
};
const kBox = [32, 32, 96, 112];

test("a block beyond the nearer edge's mirror is explained with the frame's numbers", () => {
    const run = made(kLeaning);
    // Across: (2 * 200 + 2 * 200 + 4 * 200 + 30 * 20) / 620 blocks of 16 pixels is 56.77, so 56.
    assert.deepEqual(centredBox(run, 0), { centre: [64, 72], reach: [32, 40], stretched: false });
    const { text, key } = outsideReason(run, 0, at(30, 4));
    assert.equal(
        plain(text),
        "Outside the box: from the weighted centre 64, 72, method 0 reaches only as far as the " +
            "nearer edge of the moving area on each axis: 32 pixels across, 40 down.",
    );
    assert.equal(key, "MD_PostProcMethod");
    for (const inside of [at(2, 2), at(4, 4)])
        assert.equal(outsideReason(run, 0, inside), null, "a block in the box needs no word");
});

test("the reach is never less than a block, and the sentence says so", () => {
    // The centre is in the leftmost column of the area, and in the middle row.
    const kAtTheLeft = { before: [29, 32, 61, 112] };
    const run = made({ [at(2, 2)]: 250, [at(2, 6)]: 250, [at(12, 4)]: 17 }, kAtTheLeft);
    const box = centredBox(run, 0);
    assert.deepEqual([box.reach, box.stretched], [[16, 40], true]);
    const { text } = outsideReason(run, 0, at(12, 4));
    assert.match(plain(text), /on each axis, and a block at least: 16 pixels across, 40 down\.$/);
});

test("a block that the method does not count has words of its own", () => {
    const run = made({ ...kLeaning, [at(35, 15)]: 16 });
    const { text, key } = outsideReason(run, 0, at(35, 15));
    assert.equal(
        plain(text),
        "Outside the box, and not counted for it: method 0 takes active blocks over 16.",
    );
    assert.equal(key, "MD_HogDist_Th");
    assert.deepEqual(centredBox(run, 0), centredBox(made(kLeaning), 0));
});

test("nothing is said where there is nothing to explain", () => {
    const far = at(30, 4);
    const none = (run, index = far) => assert.equal(outsideReason(run, 0, index), null);
    none(made({ ...kLeaning, [at(35, 15)]: 99 }, { idle: [at(35, 15)] }), at(35, 15));
    none(made(kLeaning, { before: null }));
    none(made(kLeaning, { method: 2 }));
    // The gate widened the box over the block.
    none(made(kLeaning, { after: [0, 0, 639, 319] }));
    assert.notEqual(outsideReason(made(kLeaning, { after: kBox }), 0, far), null);
    none({ ...made(kLeaning), blocks: () => null });
});

test("sums that overflow 32 bits are not passed off as a centre", () => {
    const run = made(kLeaning);
    const [w, h] = [480, 67];
    const every = { distance: new Array(w * h).fill(255), outcome: new Array(w * h).fill(kSteady) };
    const large = { ...run, grid: { w, h, stride: kStride }, blocks: () => every };
    assert.equal(centredBox(large, 0), null);
});
