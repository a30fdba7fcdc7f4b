// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The smaller pure parts: numbers, tracks, events, comparison, labels, address.

import assert from "node:assert/strict";
import { test } from "node:test";
import { axisNumber, clock, count, percent, plural } from "../../../lab/page/format.js";
import { createStore } from "../../../lab/page/store.js";
import { neighbourStart, toggled } from "../../../lab/report/page/actions.js";
import { readAddress, writeAddress } from "../../../lab/report/page/address.js";
import * as compare from "../../../lab/report/page/compare.js";
import {
    fromCsv,
    judge,
    reportedToInput,
    toCsv,
    toInputBox,
    toWorkingBox,
} from "../../../lab/report/page/label_rows.js";
import { eventRows } from "../../../lab/report/page/panel_events.js";
import { runsOf, silhouette } from "../../../lab/report/page/tracks.js";
import { walkerRun } from "./support/make.js";
import { opened } from "./support/opened.js";

test("numbers, plurals and times are written in one way", () => {
    assert.equal(count(3705495), "3\u2009705\u2009495");
    assert.equal(count(4661), "4661");
    assert.equal(plural(1, "frame"), "1 frame");
    assert.deepEqual(
        [
            [0, 9],
            [9, 9],
            [1, 100000],
            [99999, 100000],
            [62, 1000],
            [85, 100],
        ].map(([a, b]) => percent(a, b)),
        ["0 %", "100 %", "<0.1 %", ">99.9 %", "6.2 %", "85 %"],
    );
    assert.deepEqual([clock(16, 10), clock(1200, 10), clock(3, 0)], ["0:01.6", "2:00.0", null]);
    assert.deepEqual([0, 50, 1500, 10000, 1e6].map(axisNumber), ["0", "50", "1500", "10k", "1M"]);
});

test("a store tells each listener once, and only of what differs", () => {
    const store = createStore({ a: 1, b: 2, c: 3 });
    const heard = [];
    store.on(["a", "b"], (_s, changed) => heard.push([...changed].sort().join("")));
    store.set({ a: 1, c: 4 });
    store.set({ a: 2, b: 3 });
    assert.deepEqual(heard, ["ab"]);
});

test("frames of a kind join into runs, and a pixel of the overview shows the most important", () => {
    const kinds = [0, 0, 1, 1, 1, 0];
    assert.deepEqual(
        runsOf(6, (f) => kinds[f]).map((r) => [r.first, r.last, r.kind]),
        [
            [0, 1, 0],
            [2, 4, 1],
            [5, 5, 0],
        ],
    );
    const values = Array.from({ length: 1000 }, (_, f) => (f === 777 ? 9 : 1));
    const shown = silhouette(values, 0, 999, 50);
    assert.equal(Math.max(...shown), 9, "a single frame is never lost");
    assert.equal(shown.indexOf(9), Math.floor((777 * 50) / 1000));
    assert.deepEqual([...silhouette([1, 5, 2], 0, 2, 6)], [1, 1, 5, 5, 2, 2]);
});

test("the list has all events and the gaps of five frames and more between them", () => {
    const run = opened(walkerRun({ frames: 150, settings: { MD_Bbox_PP_Enable: 1 } }));
    const rows = eventRows(run);
    const events = rows.filter((r) => r.event > 0);
    assert.equal(events.length, run.events.length);
    assert.ok(events.length >= 2);
    for (const gap of rows.filter((r) => r.event === 0)) assert.ok(gap.last - gap.first >= 4);
    assert.equal(rows.filter((r) => r.longest).length, 1);
    for (let i = 1; i < rows.length; ++i) assert.ok(rows[i].first > rows[i - 1].last);
});

test("jumps go to the next start, and toggles add and remove", () => {
    assert.equal(neighbourStart([3, 10, 20], 10, true), 20);
    assert.equal(neighbourStart([3, 10, 20], 10, false), 3);
    assert.equal(neighbourStart([3], 3, true), -1);
    assert.deepEqual([...toggled(null, [1, 2])], [1, 2]);
    assert.equal(toggled(new Set([1, 2]), [2, 1]), null);
    assert.deepEqual([...toggled(new Set([1, 2]), [1])], [1]);
});

test("a difference counts blocks, overlap of boxes and frames far apart", () => {
    const d = compare.frameDifference(
        { outcome: [9, 9, 3, 11, 15] },
        { outcome: [9, 11, 9, 11, 19] },
    );
    assert.deepEqual([d.both, d.onlyA, d.onlyB], [1, 2, 1]);
    assert.equal(compare.overlap([0, 0, 9, 9], [0, 0, 9, 9]), 1);
    assert.equal(compare.overlap([0, 0, 9, 9], [5, 0, 14, 9]), 50 / 150);
    assert.equal(compare.overlap([0, 0, 9, 9], [10, 0, 14, 9]), 0);
    const frames = Array.from({ length: 60 }, (_, f) => ({
        onlyA: f === 0 ? 0 : f,
        onlyB: 0,
        both: 0,
    }));
    assert.deepEqual(
        compare.mostDiffering(frames).map((e) => e.f),
        [59, 44, 29, 14],
    );
});

const kClip = {
    first: 10,
    frames: 100,
    width: 320,
    height: 240,
    input_width: 768,
    input_height: 576,
};

test("labels survive csv and back, in frames of the clip and pixels of the input", () => {
    const rows = [
        { first: 2, last: 70, box: [300, 120, 410, 396], what: "motion" },
        { first: 71, last: 80, box: null, what: "ignore" },
    ];
    const text = toCsv(rows, kClip.first);
    assert.equal(
        text,
        "first,last,left,top,right,bottom,what\n12,80,300,120,410,396,motion\n81,90,,,,,ignore\n",
    );
    assert.deepEqual(fromCsv(`# by hand\r\n${text}\n`, kClip), { rows, error: null });
    for (const [line, error] of [
        ["1,2", /7 fields/],
        ["9,12,,,,,motion", /10 to 109/],
        ["20,19,,,,,motion", /no range/],
        ["20,21,1,,3,4,motion", /box/],
        ["20,21,9,1,3,4,motion", /box/],
        ["20,21,,,,,person", /person/],
    ]) {
        assert.match(
            fromCsv(`${text}${line}\n`, kClip).error,
            new RegExp(`line 4: .*${error.source}`),
        );
    }
});

test("labels are judged as the scores define it", () => {
    const rows = [
        { first: 2, last: 5, box: null, what: "motion" },
        { first: 5, last: 7, box: null, what: "motion" },
        // Its left edge is the right edge of what is reported; one pixel on, nothing is shared.
        { first: 3, last: 5, box: [40, 20, 60, 40], what: "motion" },
        { first: 5, last: 6, box: [41, 20, 60, 40], what: "motion" },
    ];
    const verdict = judge(rows, 12, (f) =>
        [2, 3, 5, 6, 7, 9, 11].includes(f) ? [10, 10, 40, 30] : null,
    );
    assert.deepEqual(verdict.each, [
        { frames: 4, found: 3, missed: 4 },
        { frames: 3, found: 3, missed: -1 },
        { frames: 3, found: 2, missed: 4 },
        { frames: 2, found: 0, missed: 5 },
    ]);
    assert.deepEqual([verdict.outside, verdict.firstOutside], [2, 9]);
});

test("a box dragged over all of the picture is the whole input, whichever corner came first", () => {
    assert.deepEqual(toInputBox([320, 240, 0, 0], kClip), [0, 0, 767, 575]);
    assert.deepEqual(reportedToInput([0, 0, 319, 239], kClip), [0, 0, 767, 575]);
    assert.deepEqual(toWorkingBox([0, 0, 767, 575], kClip), [0, 0, 320, 240]);
    assert.deepEqual(toInputBox([-5, -5, 900, 900], kClip), [0, 0, 767, 575]);
    const box = toInputBox([10.2, 20.7, 31.9, 44.1], kClip);
    assert.deepEqual(toInputBox(toWorkingBox(box, kClip), kClip), box);
});

test("the address names frame, block, layer and tab; nonsense in it is dropped", () => {
    const run = { first: 100, frames: 50, grid: { w: 20, h: 10 } };
    const layers = ["decision", "distance"];
    const state = { frame: 7, block: 45, layer: "distance", tab: "distances" };
    const hash = writeAddress(state, run);
    assert.equal(hash, "#f=107&b=5,2&l=distance&t=hist");
    assert.deepEqual(readAddress(hash, run, layers), state);
    for (const bad of ["#f=99&b=20,2&l=x&t=y", "#f=150", "#b=1", "#t=toString", ""]) {
        assert.deepEqual(readAddress(bad, run, layers), {}, bad);
    }
});
