// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The page in a real browser, offline, from disk: what it shows is what was recorded, under the right
// frame, and it does nothing else.

import assert from "node:assert/strict";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { frameRecord, frameSentence } from "../../../lab/report/page/frame_words.js";
import { inspect } from "../../../lab/report/page/inspect.js";
import { blockSentence, plain } from "../../../lab/report/page/words.js";
import { canBrowse, kPackages, openPage, shown, startBrowser } from "./support/browser.js";
import { kActive, kFields, makeReport, makeVideo, walkerRun } from "./support/make.js";
import { opened } from "./support/opened.js";

const skip = canBrowse ? false : "chromium or the built page is missing";
const template = join(kPackages, "report.html");
const kGrid = { w: 19, h: 13 };
const kSize = [160, 112]; // working pixels of that grid at stride 8
const kFrames = 150;

let browser;
let folder;
let video;
let made; // one run, gate on
let standard; // its file

function write(name, runs, options) {
    const file = join(folder, name);
    writeFileSync(file, makeReport(template, runs, { grid: runs[0].record.grid, ...options }));
    return file;
}

before(async () => {
    if (skip) return;
    folder = mkdtempSync(join(tmpdir(), "page-test-"));
    browser = await startBrowser();
    video = makeVideo(...kSize, kFrames);
    made = walkerRun({ ...kGrid, frames: kFrames, settings: { MD_Bbox_PP_Enable: 1 } });
    standard = write("standard.html", [made], { video });
});

after(async () => {
    await browser?.close();
    if (folder) rmSync(folder, { recursive: true, force: true });
});

// Opens a file, runs `act`, and requires that the page did nothing that it must not do.
async function withPage(file, options, act) {
    const { page, faults } = await openPage(browser, file, options);
    try {
        await act(page);
        assert.deepEqual(faults, []);
    } finally {
        await page.close();
    }
}

const state = (page) =>
    page.evaluate(() => {
        const { filter, ...s } = window.mdReport.store.state;
        return { ...s, filter: filter === null ? null : [...filter] };
    });

const go = async (page, f) => {
    await page.evaluate((n) => window.mdReport.go(n), f);
    await shown(page);
};

const choose = (page, block) =>
    page.evaluate((b) => window.mdReport.store.set({ block: b }), block);
const text = async (page, selector) =>
    (await page.locator(selector).first().innerText()).replace(/\s+/g, " ").trim();

test("the policy holds, and title and verdict are there without a script", { skip }, async () => {
    const html = readFileSync(standard, "utf8");
    assert.match(
        html,
        /default-src 'none'; script-src 'sha256-[^']+'; style-src 'sha256-[^']+'; img-src data: blob:;/,
    );
    assert.doesNotMatch(html.replace(/<script[\s\S]*?<\/script>/g, ""), /style="/);
    assert.match(html, /Permission is hereby granted, free of charge/, "the licence of the charts");
    assert.match(html, /<noscript>\s*<p>made\.avi: motion in \d+ of 150 frames\./);
});

test("keys do what the help says", { skip }, () =>
    withPage(standard, {}, async (page) => {
        const press = async (key) => {
            await page.keyboard.press(key);
            await shown(page);
            return state(page);
        };
        await go(page, 50);
        assert.equal((await press("ArrowRight")).frame, 51);
        assert.equal((await press("ArrowLeft")).frame, 50);
        assert.equal((await press("Shift+ArrowRight")).frame, 60);
        assert.equal((await press("End")).frame, kFrames - 1);
        assert.equal((await press("Home")).frame, 0);
        const starts = made.record.events.map(([first]) => first);
        assert.equal((await press("n")).frame, starts[0]);
        assert.equal((await press("n")).frame, starts[1]);
        assert.equal((await press("p")).frame, starts[0]);
        for (const [i, layer] of [
            "decision",
            "distance",
            "active",
            "counter",
            "luma",
            "off",
        ].entries()) {
            assert.equal((await press(String(i + 1))).layer, layer);
        }
        await press("1");
        assert.equal((await press("]")).strength, 0.9);
        assert.equal((await press("[")).strength, 0.8);
        assert.equal((await press("b")).boxes, false);
        assert.equal((await press("g")).grid, true);
        assert.equal((await press("+")).zoom, 1.5);
        assert.equal((await press("0")).zoom, 1);
        assert.equal((await press(">")).speed, 2);
        assert.equal((await press("<")).speed, 1);
        await choose(page, 45);
        assert.equal((await press("Alt+ArrowRight")).block, 46);
        assert.equal((await press("Alt+ArrowDown")).block, 46 + kGrid.w);
        const [first, last] = made.record.events[0];
        await go(page, first);
        const zoomed = await press("z");
        assert.deepEqual([zoomed.from, zoomed.to], [Math.max(0, first - 5), last + 5]);
        assert.equal((await press("Escape")).block, -1);
        assert.equal((await press("Escape")).to, kFrames - 1);
        const dark = (await state(page)).theme;
        assert.notEqual((await press("t")).theme, dark);
        await press("?");
        assert.match(await text(page, "dialog"), /Reading this page/);
        await page.keyboard.press("Escape");
        await press("f");
        await page.keyboard.type("77");
        await page.keyboard.press("Enter");
        await shown(page);
        assert.equal((await state(page)).frame, 77);
        await page.keyboard.down("r");
        await page.waitForFunction(() => window.mdReport.store.state.held);
        assert.match(await text(page, ".badge"), /Reference: frame 76/);
        await page.keyboard.up("r");
        await page.waitForFunction(
            () => !window.mdReport.store.state.held && window.mdReport.picture.frame === 77,
        );
        await page.keyboard.press("Space");
        await page.waitForFunction(() => window.mdReport.store.state.frame > 80);
        await page.keyboard.press("Space");
        assert.equal((await state(page)).playing, false);
    }),
);

test("counts, gutter, sentences and values are those recorded", { skip }, () =>
    withPage(standard, {}, async (page) => {
        const run = opened(made);
        for (const f of [0, 1, 2, 20, 21, 59, 60, 61, 119, 120, 149]) {
            await go(page, f);
            const c = made.columns;
            const legend = await page.$$eval("button.entry", (list) =>
                list.map((e) => Number(e.querySelector("b").textContent)),
            );
            const outcomes = [[9], [15, 17], [10, 12], [6, 7, 8], [11, 13, 14], [19], [16, 18]];
            assert.deepEqual(
                legend.slice(0, 7),
                outcomes.map((list) => list.reduce((n, o) => n + c[`o${o}`][f], 0)),
                `legend of frame ${f}`,
            );
            const gutter = await page.$$eval('[data-track="active"] .row b', (list) =>
                list.map((e) => Number(e.textContent)),
            );
            assert.deepEqual(gutter, [c.active[f], c.counted[f], 8], `gutter of frame ${f}`);
            assert.equal(await text(page, ".sentence"), plain(frameSentence(frameRecord(run, f))));
            for (const block of [0, 60, 100, 128, 246]) {
                await choose(page, block);
                const r = inspect(run, f, block);
                assert.equal(
                    await text(page, ".verdict p"),
                    plain(blockSentence(r)),
                    `frame ${f}, block ${block}`,
                );
                const nine = await page.$$eval(".cell9", (list) => list.map((e) => e.textContent));
                assert.deepEqual(
                    nine,
                    r.places.map((p) => (p.index < 0 ? "" : String(p.distance))),
                );
                assert.equal(await page.locator(".ladder .yes, .ladder .no").count(), 1);
            }
        }
    }),
);

// The colour in a corner of each cell, beside its number, with the picture off and full strength: amber
// or not.
const amberCells = (page) =>
    page.evaluate(() => {
        const { stage, store, runs } = window.mdReport;
        store.set({ layer: "active", picture: "none", strength: 1, boxes: false, block: -1 });
        const ctx = stage.canvas.getContext("2d");
        const density = stage.canvas.width / stage.width;
        const { grid } = runs[0];
        const scale = Math.min(stage.width / grid.width, stage.height / grid.height);
        const [x0, y0] = [
            (stage.width - grid.width * scale) / 2,
            (stage.height - grid.height * scale) / 2,
        ];
        return Array.from({ length: grid.blocks }, (_, i) => {
            const x = x0 + ((i % grid.w) * grid.stride + 5) * scale;
            const y = y0 + (Math.floor(i / grid.w) * grid.stride + 5) * scale;
            const [r, , b] = ctx.getImageData(
                Math.round(x * density),
                Math.round(y * density),
                1,
                1,
            ).data;
            return r > 100 && b < 60;
        });
    });

test(
    "the mask on the stage is the recorded one, cell by cell; a planted error is seen",
    { skip },
    () =>
        withPage(standard, {}, async (page) => {
            for (const f of [30, 90]) {
                await go(page, f);
                const cells = await amberCells(page);
                const wrong = cells.filter(
                    (amber, i) => amber !== kActive.includes(made.frames[f].outcome[i]),
                ).length;
                assert.equal(wrong, 0);
                const i = made.frames[f].outcome.findIndex((o) => kActive.includes(o));
                await page.evaluate(
                    ([frame, at]) => {
                        window.mdReport.runs[0].blocks(frame).outcome[at] = 3;
                        window.mdReport.stage.draw();
                    },
                    [f, i],
                );
                const planted = (await amberCells(page)).filter(
                    (amber, k) => amber !== kActive.includes(made.frames[f].outcome[k]),
                );
                assert.equal(planted.length, 1);
            }
        }),
);

// Each picture that was drawn, as [its frame, the number burnt into it].
const watchNumbers = (page) =>
    page.evaluate((fields) => {
        const app = window.mdReport;
        app.seen = [];
        app.store.on(["drawn"], (s) => {
            const { raw } = app.picture;
            const ctx = raw.getContext("2d", { willReadFrequently: true });
            let n = 0;
            for (let k = 0; k < fields; ++k) {
                const x = Math.floor(((k + 0.5) * raw.width) / fields);
                if (ctx.getImageData(x, 6, 1, 1).data[0] > 128) n |= 1 << k;
            }
            app.seen.push([s.frame, n]);
        });
    }, kFields);

async function visitFrames(page) {
    await watchNumbers(page);
    let at = 7;
    for (let i = 0; i < 40; ++i) {
        at = (at * 16807) % 2147483647;
        await go(page, at % kFrames);
    }
    for (let i = 0; i < 30; ++i) await go(page, 60 + i);
    for (let i = 0; i < 30; ++i) await page.keyboard.press("ArrowRight");
    await shown(page);
    assert.equal((await state(page)).frame, 119, "the last key counts");
    // Played, stopped and started at once: a late picture must not pass for another frame.
    for (const speed of [1, 4, 8, 2]) {
        await page.evaluate(async (s) => {
            const app = window.mdReport;
            app.go(10);
            app.store.set({ speed: s });
            app.play(true);
            app.play(false);
            app.go(10);
            await new Promise((resolve) => setTimeout(resolve, 60));
            app.play(true);
        }, speed);
        await page.waitForFunction(() => window.mdReport.store.state.frame > 20);
        await page.evaluate(() => window.mdReport.play(false));
        await shown(page);
    }
    return page.evaluate(() => window.mdReport.seen);
}

test("no frame is ever shown under another frame's number", { skip }, async () => {
    await withPage(standard, {}, async (page) => {
        const seen = await visitFrames(page);
        assert.ok(seen.length > 80, `${seen.length} pictures`);
        assert.deepEqual(
            seen.filter(([f, n]) => f !== n),
            [],
        );
    });
    const shifted = write("shifted.html", [made], { video: makeVideo(...kSize, kFrames, 1) });
    await withPage(shifted, {}, async (page) => {
        const seen = await visitFrames(page);
        assert.ok(seen.length > 80);
        assert.deepEqual(
            seen.filter(([f, n]) => f === n),
            [],
            "a video that is one frame off is noticed in every picture",
        );
    });
});

test("playing loops within the zoomed range, also where a timer has to step", { skip }, () =>
    withPage(standard, {}, async (page) => {
        await watchNumbers(page);
        await page.evaluate(() => {
            const app = window.mdReport;
            app.setRange(30, 40);
            app.store.set({ speed: 8 });
            app.play(true);
        });
        const looped = () => {
            const frames = window.mdReport.seen.map(([f]) => f).filter((f) => f >= 30 && f <= 40);
            return frames.filter((f, i) => i > 0 && f < frames[i - 1]).length >= 2;
        };
        await page.waitForFunction(looped);
        await page.evaluate(() => {
            window.mdReport.seen = [];
            window.mdReport.store.set({ speed: 0.1 }); // a rate that browsers refuse
        });
        // On a busy machine the video is past the end for a moment, by some frames at this speed.
        await page.waitForFunction(() => {
            const { seen } = window.mdReport;
            return seen.length >= 2 && seen.at(-1)[0] <= 40;
        });
        await page.evaluate(() => (window.mdReport.seen = []));
        await page.waitForFunction(() => window.mdReport.seen.length >= 2);
        await page.evaluate(() => window.mdReport.play(false));
        const seen = await page.evaluate(() => window.mdReport.seen);
        assert.deepEqual(
            seen.filter(([f, n]) => f !== n || f < 30 || f > 40),
            [],
        );
    }),
);

test("the pointer chooses frames on the timeline and blocks on the stage", { skip }, () =>
    withPage(standard, {}, async (page) => {
        const over = await page.locator(".over").boundingBox();
        const x = (f) => over.x + ((f + 0.5) / kFrames) * over.width;
        const y = over.y + 120;
        await page.mouse.click(x(100), y);
        await shown(page);
        assert.equal((await state(page)).frame, 100);
        await page.mouse.move(x(30), y);
        await page.mouse.down();
        await page.mouse.move(x(60), y, { steps: 5 });
        await page.mouse.up();
        let s = await state(page);
        assert.deepEqual([s.from, s.to], [30, 60]);
        const ranges = await page.evaluate(() => [...document.querySelectorAll(".uplot")].length);
        assert.equal(ranges, 3);
        await page.mouse.wheel(0, -400);
        s = await state(page);
        assert.ok(s.to - s.from < 30 && s.from >= 30 && s.to <= 60);
        await page.mouse.dblclick(x(75), y);
        s = await state(page);
        assert.deepEqual([s.from, s.to], [0, kFrames - 1]);
        await go(page, 90);
        const stage = await page.locator(".stage canvas").boundingBox();
        await page.mouse.click(stage.x + stage.width / 2, stage.y + stage.height / 2);
        s = await state(page);
        assert.equal(s.block, Math.floor(kGrid.h / 2) * kGrid.w + Math.floor(kGrid.w / 2));
        await page.mouse.move(stage.x + stage.width / 2 + 60, stage.y + stage.height / 2 + 40);
        assert.match(
            await text(page, ".tip"),
            /^\d+, \d+ distance \d+ was \d+, \d+ (Not active|Active): /,
        );
        await page.mouse.wheel(0, -600);
        const { zoom } = await state(page);
        assert.ok(zoom > 2);
        await page.mouse.dblclick(stage.x + 300, stage.y + 100);
        assert.equal((await state(page)).zoom, 1);
    }),
);

test("panels filter, list events and settings, and make links", { skip }, () =>
    withPage(standard, { hash: "#f=58&b=3,4&l=distance&t=hist" }, async (page) => {
        let s = await state(page);
        assert.deepEqual(
            [s.frame, s.block, s.layer, s.tab],
            [58, 4 * kGrid.w + 3, "distance", "distances"],
        );
        const rows = await page.$$eval("tr.outcome", (list) =>
            list.map((r) => [
                Number(r.dataset.outcome),
                ...[...r.querySelectorAll("td.n")].map((c) =>
                    Number(c.textContent.replace(/\s/g, "")),
                ),
            ]),
        );
        for (const [o, inFrame, inClip] of rows) {
            assert.deepEqual(
                [inFrame, inClip],
                [made.columns[`o${o}`][58], made.record.outcomes[o]],
                `outcome ${o}`,
            );
        }
        assert.equal(
            rows.reduce((sum, r) => sum + r[1], 0),
            kGrid.w * kGrid.h,
            "outcomes of a frame add up to its blocks",
        );
        await page.locator('tr.outcome[data-outcome="11"]').click();
        s = await state(page);
        assert.deepEqual([s.filter, s.layer], [[11], "decision"]);
        await page.locator('[data-tab="events"][role="tab"]').click();
        await page.locator("tr.event").nth(1).click();
        await shown(page);
        assert.equal((await state(page)).frame, made.record.events[1][0]);
        await page.locator("canvas.peak").nth(0).click();
        await shown(page);
        assert.equal((await state(page)).frame, made.record.events[0][2]);
        await page.locator('[data-tab="block"]').click();
        await page.locator('.ladder [data-row="over"]').click();
        assert.equal((await state(page)).tab, "settings");
        assert.match(await text(page, ".keys .more"), /Meaning of MD_HogDist_Th/);
        await page.locator("#head .cell[data-frame]").click();
        await shown(page);
        assert.equal((await state(page)).frame, made.record.longest_gap[0]);
        await page.waitForFunction(() => location.hash.startsWith("#f=0&b=3,4"));
    }),
);

test("two runs show what differs first, and where", { skip }, async () => {
    const settings = { MD_Bbox_PP_Enable: 1 };
    const a = walkerRun({ ...kGrid, frames: kFrames, settings, label: "A" });
    const b = walkerRun({
        ...kGrid,
        frames: kFrames,
        settings: { ...settings, MD_HogDist_Th: 30 },
        label: "B",
    });
    await withPage(write("pair.html", [a, b], { video }), {}, async (page) => {
        const on = (frame) => [...frame.outcome].map((o) => kActive.includes(o));
        const f = a.frames.findIndex((frame, n) =>
            on(frame).some((v, i) => v !== on(b.frames[n])[i]),
        );
        assert.match(
            await text(page, ".difference"),
            new RegExp(`First difference Frame ${f}, block \\d+, \\d+: in the decision\\.`),
        );
        await go(page, 59);
        const counts = await page.$$eval(".legend .entries b", (list) =>
            list.map((e) => Number(e.textContent)),
        );
        const [p, q] = [on(a.frames[59]), on(b.frames[59])];
        assert.deepEqual(counts, [
            p.filter((v, i) => v && !q[i]).length,
            q.filter((v, i) => v && !p[i]).length,
            p.filter((v, i) => v && q[i]).length,
        ]);
        await page.locator('[data-tab="block"]').click();
        await choose(page, 100);
        assert.equal(await page.locator(".blockpanel .verdict").count(), 2);
        await page.locator(".chooser button").nth(2).click();
        assert.equal((await state(page)).view, "side");
    });
    const twin = walkerRun({ ...kGrid, frames: kFrames, settings, label: "B" });
    await withPage(write("equal.html", [a, twin], { video }), {}, async (page) => {
        assert.match(
            await text(page, ".difference"),
            /A and B agree in every block of every frame, and in every box\./,
        );
    });
});

test("a range can be marked, a box drawn, and the csv saved", { skip }, () =>
    withPage(standard, { hash: "#f=40&t=labels" }, async (page) => {
        const over = await page.locator(".over").boundingBox();
        const x = (f) => over.x + ((f + 0.5) / kFrames) * over.width;
        await page.mouse.move(x(50), over.y + 100);
        await page.mouse.down();
        await page.mouse.move(x(80), over.y + 100, { steps: 4 });
        await page.mouse.up();
        await go(page, 60);
        const stage = await page.locator(".stage canvas").boundingBox();
        const scale = Math.min(stage.width / kSize[0], stage.height / kSize[1]);
        const left = stage.x + (stage.width - kSize[0] * scale) / 2;
        await page.mouse.move(left + 40 * scale, stage.y + 30 * scale);
        await page.mouse.down();
        await page.mouse.move(left + 80 * scale, stage.y + 70 * scale, { steps: 4 });
        await page.mouse.up();
        const waiting = page.waitForEvent("download");
        await page.getByRole("button", { name: "Save csv" }).click();
        const download = await waiting;
        assert.equal(download.suggestedFilename(), "made.labels.csv");
        const csv = readFileSync(await download.path(), "utf8");
        assert.equal(csv, "first,last,left,top,right,bottom,what\n50,80,80,60,159,139,motion\n");
    }),
);

const kStill = { MD_HogDist_Th: 255, MD_HogDist_Th_nnAdj_Scale: 31 };

test("states at the edge each say what they are", { skip }, async () => {
    const one = walkerRun({ ...kGrid, frames: 1 });
    await withPage(
        write("one.html", [one], { video: makeVideo(...kSize, 1) }),
        {},
        async (page) => {
            assert.match(await text(page, ".timeline"), /One frame, so there is no timeline/);
            assert.equal(await page.locator(".transport button:not(:disabled)").count(), 0);
        },
    );
    const still = walkerRun({ ...kGrid, frames: 60, settings: kStill });
    await withPage(
        write("still.html", [still], { video: makeVideo(...kSize, 60) }),
        { hash: "#t=events" },
        async (page) => {
            assert.match(await text(page, ".events"), /No box was reported in any frame\./);
        },
    );
    await withPage(write("novideo.html", [made], {}), { hash: "#f=33" }, async (page) => {
        assert.match(await text(page, ".notes"), /holds no video/);
        const bright = await page.evaluate(
            () => window.mdReport.picture.raw.getContext("2d").getImageData(60, 60, 1, 1).data[3],
        );
        assert.equal(bright, 255, "block means stand in for the picture");
        await go(page, 34);
    });
    await withPage(
        write("unplayable.html", [made], { video: "AAAAGGZ0eXBpc29t" }),
        { hash: "#f=33" },
        async (page) => {
            await page.waitForFunction(() => document.querySelector(".notes").textContent !== "");
            assert.match(await text(page, ".notes"), /cannot play the video in this file/);
            await go(page, 35);
            assert.equal(
                await text(page, ".sentence"),
                plain(frameSentence(frameRecord(opened(made), 35))),
            );
        },
    );
    const wide = walkerRun({ w: 5, h: 3, frames: 80, stride: 64 });
    await withPage(
        write("stride.html", [wide], { video: makeVideo(272, 144, 80) }),
        {},
        async (page) => {
            const before64 = (await state(page)).block;
            const { x, y, width, height } = await page.locator(".stage canvas").boundingBox();
            const scale = Math.min(width / 272, height / 144);
            const left = x + (width - 272 * scale) / 2;
            const top = y + (height - 144 * scale) / 2;
            await page.mouse.click(left + 40 * scale, top + 40 * scale);
            assert.equal((await state(page)).block, before64, "between the cells there is nothing");
            await page.mouse.click(left + 72 * scale, top + 8 * scale);
            assert.equal((await state(page)).block, 1);
        },
    );
    const some = walkerRun({ ...kGrid, frames: kFrames, hasBlocks: "some" });
    const leftOut = [{ part: "Vectors", effect: "No feature vectors.", how: "--budget 40" }];
    await withPage(
        write("some.html", [some], { video, features: false, leftOut }),
        { hash: "#f=49&b=3,3" },
        async (page) => {
            assert.match(await text(page, ".badge"), /No block values in this frame/);
            await go(page, 45);
            assert.match(
                await text(page, ".blockpanel"),
                /Vectors were left out of this file to keep it small\./,
            );
            await page.locator('[data-dialog="short"]').click();
            assert.match(await text(page, "dialog"), /No feature vectors\. --budget 40/);
        },
    );
    const raw = write("raw.html", [made], { video, fps: null, first: 400 });
    await withPage(raw, { hash: "#f=458" }, async (page) => {
        assert.equal((await state(page)).frame, 58);
        assert.equal(await text(page, ".time"), "");
        assert.match(await text(page, ".blocktitle"), /frame 458/);
    });
});

test("damaged data leaves a line that says so, and the rest works", { skip }, async () => {
    const change = (_head, blocks) => {
        blocks["md-b0-1"] = "AAAA";
    };
    await withPage(write("damaged.html", [made], { video, change }), {}, async (page) => {
        assert.match(await text(page, ".error"), /This file is damaged: /);
        await go(page, 70);
        assert.match(await text(page, ".badge"), /No block values/);
        await go(page, 20);
        await choose(page, 30);
        assert.match(await text(page, ".verdict"), /ctive/);
    });
    const format = write("format.html", [made], {
        video,
        change: (head) => {
            head.format = 9;
        },
    });
    await withPage(format, { ready: false }, async (page) => {
        assert.match(await text(page, ".error"), /format 9, this page reads format 1/);
    });
});

test("a name full of markup is only text", { skip }, async () => {
    const name = `</script><script>window.stolen=1</script><img src=x onerror=alert(1)>"'&.avi`;
    await withPage(write("name.html", [made], { video, name }), {}, async (page) => {
        assert.equal(
            await page.title(),
            `${name}: motion in ${made.record.totals.motion} of 150 frames.`,
        );
        assert.equal(await page.evaluate(() => window.stolen), undefined);
        assert.equal(await page.evaluate(() => window.mdReport.head.clip.name), name);
    });
});

test("nothing is clipped at the sizes that it is made for, in both themes", { skip }, async () => {
    for (const [width, height, dark] of [
        [420, 900, false],
        [1024, 700, true],
        [1280, 720, false],
        [1280, 800, true],
        [1920, 1080, false],
    ]) {
        await withPage(standard, { width, height, dark, hash: "#f=58" }, async (page) => {
            const clipped = await page.evaluate(() =>
                [
                    ...document.querySelectorAll(
                        "#head .cell, #head .clip p, .toolbar, .gutter, .tabs, .verdict, .sentence, .ladder td, .values td, .transport",
                    ),
                ]
                    .filter(
                        (e) =>
                            e.offsetParent !== null &&
                            getComputedStyle(e).overflowX !== "auto" &&
                            e.scrollWidth > e.clientWidth + 1,
                    )
                    .map((e) => `${e.className} ${e.textContent.slice(0, 40)}`),
            );
            assert.deepEqual(clipped, [], `${width}x${height}`);
            const across = await page.evaluate(
                () => document.documentElement.scrollWidth - window.innerWidth,
            );
            assert.ok(across <= 0, `the page is ${across} wider than ${width}`);
        });
    }
});

test("on paper all is there, and the screen is as before", { skip }, () =>
    withPage(standard, { dark: true }, async (page) => {
        const pdf = await page.pdf({ format: "A4" });
        const pages = pdf.toString("latin1").match(/\/Type \/Page\b/g).length;
        assert.ok(pages >= 1 && pages <= 6, `${pages} pages`);
        const after0 = await page.evaluate(() => [
            document.documentElement.dataset.theme,
            document.body.dataset.paper ?? "",
        ]);
        assert.deepEqual(after0, ["dark", ""]);
    }),
);

test("without scripts the verdict is there as text", { skip }, async () => {
    const page = await browser.context.newPage();
    const session = await browser.context.newCDPSession(page);
    await session.send("Emulation.setScriptExecutionDisabled", { value: true });
    await page.goto(`file://${standard}`);
    const { root } = await session.send("DOM.getDocument", { depth: -1 });
    const { outerHTML } = await session.send("DOM.getOuterHTML", { nodeId: root.nodeId });
    assert.match(
        outerHTML.slice(outerHTML.indexOf("<noscript>"), outerHTML.indexOf("</noscript>")),
        /motion in \d+ of 150 frames/,
    );
    await page.close();
});
