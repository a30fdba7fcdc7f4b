// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Reports of real runs, read back in the browser and held against what MD itself left: its dumps and the
// detail lines of its log. Only the blocks' own story is compared, so any setting may be turned.

import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { existsSync, mkdirSync, mkdtempSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { after, before, test } from "node:test";
import { centredBox } from "../../../lab/report/page/centred_box.js";
import { canBrowse, openPage, shown, startBrowser } from "./support/browser.js";

const bin = resolve(process.env.MD_BIN ?? "build/release/bin");
const skip = canBrowse && existsSync(join(bin, "mdlab")) ? false : "chromium or mdlab is missing";
const settingsFile = fileURLToPath(new URL("../../../cfg/default.cfg", import.meta.url));
const kWidth = 160;
const kHeight = 96;
const kFrames = 20;

const kRuns = [
    { MD_PostProcMethod: 0, MD_RefFrmIdx: 3, MD_BlkCnt_Th: 2 },
    {
        MD_PostProcMethod: 0,
        MD_Bbox_PP_Enable: 1,
        MD_Bbox_PP_Window: 3,
        MD_Padding_Method: 0,
        MD_BlkCnt_Th: 2,
    },
    { MD_PostProcMethod: 1, MD_HogDist_AvgYDiffCalc_Method: 1, MD_HogCellSize: 8 },
    {
        MD_PostProcMethod: 2,
        MD_HogDist_AvgYDiffCalc_Method: 2,
        MD_Padding_Method: 1,
        MD_Bbox_PP_Enable: 1,
    },
    { MD_PostProcMethod: 3, MD_HogNormalizeMode: 1, MD_HogDist_WeightMethod: 1 },
    { MD_PostProcMethod: 0, MD_HogDistAvailCheck: 1, MD_ActNeighborBlkCntTh: 6, StartFrameIdx: 4 },
    {
        MD_PostProcMethod: 3,
        MD_NeighborCorrelation: 0,
        MD_HogBlockStride: 16,
        MD_HogDist_Scale2: 40,
    },
];

let folder;
let browser;

before(async () => {
    if (skip) return;
    folder = mkdtempSync(join(tmpdir(), "page-real-"));
    browser = await startBrowser();
    run("make_clip", [kWidth, kHeight, kFrames + 4, join(folder, "clip.yuv")]);
});

after(async () => {
    await browser?.close();
    if (folder) rmSync(folder, { recursive: true, force: true });
});

function run(program, args) {
    const done = spawnSync(join(bin, program), args.map(String), {
        encoding: "utf8",
        maxBuffer: 1e9,
    });
    assert.equal(done.status, 0, `${program}: ${done.stderr}${done.stdout.slice(-500)}`);
    return done.stdout;
}

// MD's own run with all dumps, and the report of the same settings.
function makeRun(settings, name) {
    const out = join(folder, name);
    mkdirSync(out);
    const given = {
        InputFileType: 0,
        InputFilePath: join(folder, "clip.yuv"),
        InputWidth: kWidth,
        InputHeight: kHeight,
        MD_ScaledW: kWidth,
        MD_ScaledH: kHeight,
        MD_Scale_KeepAspectRatio: 0,
        EnableBatch: 1,
        FramesToBeProcessed: kFrames,
        ...settings,
    };
    const options = (more) => [
        "-d",
        settingsFile,
        ...Object.entries({ ...given, ...more }).flatMap(([k, v]) => ["-p", `${k}=${v}`]),
    ];
    const log = run("MD", options({ OutputFilePath: out, MD_DbgEn: 0x261 }));
    const file = join(folder, `${name}.html`);
    run("mdlab", ["report", "--quiet", "--out", file, "--", ...options({})]);
    return { out: join(out, "HOG_feature"), log, file, first: settings.StartFrameIdx ?? 0 };
}

const number = (first, f) => String(first + f + 1).padStart(4, "0");

// Vectors and mean luma of all blocks, from the text dump of a frame or of its reference.
function readFeatures(path) {
    const text = readFileSync(path, "utf8");
    return [
        ...text.matchAll(/blk\[\s*\d+,\s*\d+\]:, ([\d ]+) ,[^\n]*\nhistNorm:(\d+)\s*\nAvgY:(\d+)/g),
    ].map((m) => ({
        v: m[1].trim().split(" ").map(Number),
        length: Number(m[2]),
        mean: Number(m[3]),
    }));
}

// The detail lines of the log, block by block, frame after frame: luma threshold, sum, distance.
function readDetail(log) {
    const blocks = [];
    for (const line of log.split("\n")) {
        const head = /iCurBlkY=(\d+), iRefBlkY=(\d+), nYDiffThre=(\d+)/.exec(line);
        if (head !== null)
            blocks.push({ mean: +head[1], reference: +head[2], luma: +head[3], sum: null });
        const tail = /iAccuDist=(-?\d+), DistWeight2=(\d+), iHOGDist=(\d+)/.exec(line);
        if (tail !== null) Object.assign(blocks.at(-1), { sum: +tail[1], distance: +tail[3] });
    }
    return blocks;
}

// What the page shows of a block, as text.
const readPanel = (page) =>
    page.evaluate(async () => {
        const rows = [...document.querySelectorAll(".values tr")].map(
            (r) => r.lastChild.textContent,
        );
        const vector = [...document.querySelectorAll(".vector tbody tr")]
            .slice(0, 2)
            .map((r) => [...r.querySelectorAll("td")].map((c) => Number(c.textContent)));
        await window.mdReport.copyBlock();
        return {
            sentence: document.querySelector(".verdict p").textContent,
            rows,
            vector,
            text: window.mdReport.copied,
            steps: document.querySelector(".panel p.small")?.textContent ?? "",
        };
    });

const maps = (made, f) => {
    const full = readFileSync(join(made.out, `${number(made.first, f)}_Full.json`), "utf8");
    const part = (name) =>
        JSON.parse(new RegExp(`"${name}": (\\[[^"{]*\\n \\])`).exec(full)[1]).flat();
    return { distance: part("Dist"), avail: part("Avail") };
};

async function checkFrame(page, made, f, detail) {
    await page.evaluate((n) => window.mdReport.go(n), f);
    await shown(page);
    const { distance, avail } = maps(made, f);
    const now = readFeatures(join(made.out, `${number(made.first, f)}_HOGCur.txt`));
    const reference = readFeatures(join(made.out, `${number(made.first, f)}_HOGRef.txt`));
    assert.equal(now.length, distance.length);
    // Some with motion, some without.
    const moving = distance
        .map((d, i) => [d, i])
        .filter(([d]) => d > 0)
        .map(([, i]) => i);
    const step = Math.max(1, Math.floor(moving.length / 8));
    const blocks = [0, distance.length - 1, ...moving.filter((_, k) => k % step === 0)];
    for (const i of blocks) {
        await page.evaluate((b) => window.mdReport.store.set({ block: b, tab: "block" }), i);
        const panel = await readPanel(page);
        const where = `frame ${f}, block ${i}: ${panel.sentence}`;
        assert.equal(panel.sentence.startsWith("Active"), avail[i] === 1, where);
        assert.match(
            panel.rows[0],
            new RegExp(`^${distance[i]}$|reported ${distance[i]}\\)$`),
            where,
        );
        assert.equal(panel.rows[4], `${now[i].mean} was ${reference[i].mean}`, where);
        const line = detail[f * distance.length + i];
        assert.match(panel.text, new RegExp(`luma ${line.luma}\\b`), where);
        if (panel.vector.length === 2) {
            assert.deepEqual(panel.vector, [now[i].v, reference[i].v], where);
            if (line.sum !== null) assert.match(panel.steps, new RegExp(`: ${line.sum}\\b`), where);
        } else assert.equal(distance[i], 0, `${where}: no vector`);
    }
    return blocks.length;
}

// The frame's own verdict and boxes, from the log's two lines a frame and the object report.
async function checkBoxes(page, made, settings) {
    const motion = [
        ...made.log.matchAll(
            /^MotionDetected=(\d), objNum=\d, \(\d, (\d+), (\d+), (\d+), (\d+)\)/gm,
        ),
    ];
    const boxes = [...made.log.matchAll(/^PP_V2: l,r,t,b = (\d+),(\d+),(\d+),(\d+)/gm)].map((m) =>
        m.slice(1).map(Number),
    );
    assert.equal(motion.length, kFrames);
    for (let f = 0; f < kFrames; ++f) {
        await page.evaluate((n) => window.mdReport.go(n), f);
        await shown(page);
        const [sentence, after0] = await page.evaluate(() => {
            const app = window.mdReport;
            return [
                document.querySelector(".sentence").textContent,
                app.runs[0].boxAfter(app.store.state.frame),
            ];
        });
        if (f > 0)
            assert.equal(
                sentence.startsWith("Motion:"),
                motion[f][1] === "1",
                `frame ${f}: ${sentence}`,
            );
        assert.equal(sentence.includes("Gate"), settings.MD_Bbox_PP_Enable === 1, sentence);
        const [l, r, t, b] = boxes[f];
        const none = l === 0 && r === 0 && t === 0 && b === 0;
        assert.deepEqual(after0, none ? null : [l, t, r, b], `frame ${f}`);
    }
}

// Method 0: the centre and the reach that the page works out are those of the recorded box. Gives
// the number of boxes.
async function checkCentres(page) {
    const frames = await page.evaluate(() => {
        const [only] = window.mdReport.runs;
        return Array.from({ length: only.frames }, (_, f) => ({
            distance: [...only.blocks(f).distance],
            outcome: [...only.blocks(f).outcome],
            box: only.boxBefore(f),
        }));
    });
    const facts = await page.evaluate(() => {
        const { method, settings, grid } = window.mdReport.runs[0];
        return { method, settings, grid };
    });
    const shownRun = { ...facts, blocks: (f) => frames[f], boxBefore: (f) => frames[f].box };
    const { width, height } = facts.grid;
    for (const [f, { box }] of frames.entries()) {
        if (box === null) continue;
        const { centre, reach } = centredBox(shownRun, f);
        const [left, top] = centre.map((c, axis) => Math.max(0, c - reach[axis]));
        const [right, bottom] = centre.map((c, axis) => c + reach[axis]);
        const want = [left, top, Math.min(width - 1, right), Math.min(height - 1, bottom)];
        assert.deepEqual(want, box, `frame ${f}`);
    }
    return frames.filter((frame) => frame.box !== null).length;
}

for (const [k, settings] of kRuns.entries()) {
    test(
        `the page tells of a run what MD itself left: ${JSON.stringify(settings)}`,
        { skip },
        async () => {
            const made = makeRun(settings, `run${k}`);
            const detail = readDetail(made.log);
            const { page, faults } = await openPage(browser, made.file);
            assert.equal(detail.length % kFrames, 0);
            let blocks = 0;
            for (const f of [0, 1, 2, 5, 9, 12, 19])
                blocks += await checkFrame(page, made, f, detail);
            assert.ok(blocks > 30, `${blocks} blocks`);
            await checkBoxes(page, made, settings);
            if (settings.MD_PostProcMethod === 0) assert.ok((await checkCentres(page)) > 3);
            assert.deepEqual(faults, []);
            await page.close();
        },
    );
}

test("the page of one run does not pass for another", { skip }, async () => {
    const made = makeRun({ MD_BlkCnt_Th: 2 }, "this");
    const other = makeRun({ MD_BlkCnt_Th: 2, MD_Padding_Method: 1 }, "other");
    const { page } = await openPage(browser, made.file);
    await checkFrame(page, made, 9, readDetail(made.log));
    await assert.rejects(checkFrame(page, other, 9, readDetail(other.log)), assert.AssertionError);
    await page.close();
});
