// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The sweep page: its pure parts, and the page itself in a browser.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { readAddress, writeAddress } from "../../../lab/sweep/page/address.js";
import {
    compareScores,
    firstChoice,
    fiveNumbers,
    front,
    keyEffect,
    pilesOf,
    prepare,
    scoreOf,
} from "../../../lab/sweep/page/data.js";
import { parseFilter } from "../../../lab/sweep/page/filter.js";
import { pixelsOf, stripSummary } from "../../../lab/sweep/page/strip_pixels.js";
import { pointSentence, reportCommand } from "../../../lab/sweep/page/words.js";
import { canBrowse, openPage, startBrowser } from "./support/browser.js";
import { makeResults, writeSweepPage } from "./support/sweep_results.js";

const sweep = prepare(makeResults());
const byName = (id) => sweep.points.find((p) => p.id === id);

test("no point of the front is beaten in both scores, and every other one is", () => {
    const [x, y] = ["false_per_1000", "missed_per_1000"];
    const best = front(sweep, -1, x, y);
    const place = (p) => [scoreOf(sweep, p, -1, x), scoreOf(sweep, p, -1, y)];
    const done = sweep.points.filter((p) => p.status === "done");
    for (const p of done) {
        const beaten = done.some((q) => {
            const [[a, b], [c, d]] = [place(p), place(q)];
            return c <= a && d <= b && (c < a || d < b);
        });
        assert.equal(best.has(p.index), !beaten, p.id);
    }
    assert.ok(best.size > 1 && best.size < done.length);
    assert.ok(!best.has(byName("refused").index));
});

test("a refused point has no score, and undefined scores come last either way", () => {
    assert.equal(scoreOf(sweep, byName("refused"), -1, "recall"), null);
    assert.equal(scoreOf(sweep, byName("refused"), 0, "recall"), 0.86);
    for (const better of ["higher", "lower"]) {
        assert.deepEqual([null, 2, 1].sort((a, b) => compareScores(a, b, better)).at(-1), null);
    }
    assert.equal(sweep.points[firstChoice(sweep)].missed.length, 0);
});

test("the effect of a key is quartiles over the points with that value", () => {
    assert.deepEqual(fiveNumbers([1, 2, 3, 4, 9]), { low: 1, q1: 2, median: 3, q3: 4, high: 9 });
    assert.deepEqual(fiveNumbers([1, 2]), { low: 1, q1: 1.25, median: 1.5, q3: 1.75, high: 2 });
    assert.equal(fiveNumbers([]).median, null);
    const effect = keyEffect(sweep, 0, -1, "recall");
    assert.deepEqual(
        effect.map((e) => [e.value, e.n, e.low, e.high]),
        [
            [4, 3, 0.78, 0.86],
            [8, 3, 0.66, 0.74],
            [12, 3, 0.54, 0.62],
            [16, 3, 0.42, 0.5],
        ],
    );
});

test("points with both scores the same are one pile, and others are not", () => {
    const places = [
        { index: 0, x: 1, y: 2 },
        { index: 1, x: 1, y: 23 },
        { index: 2, x: 12, y: 3 },
        { index: 3, x: 1, y: 2 },
    ];
    assert.deepEqual(
        pilesOf(places).map(({ x, y, members }) => [x, y, members.map((m) => m.index)]),
        [
            [1, 2, [0, 3]],
            [1, 23, [1]],
            [12, 3, [2]],
        ],
    );
});

test("the filter reads keys, scores and plain words, and says what it cannot read", () => {
    const ids = (text) => {
        const { accepts, fault } = parseFilter(sweep, -1, text);
        return [
            sweep.points
                .filter(accepts)
                .map((p) => p.id)
                .join(" "),
            fault,
        ];
    };
    assert.deepEqual(ids("MD_HogDist_Th<=4 recall>0.8"), ["4x2 4x6", null]);
    assert.equal(ids("MD_HogDist_Th!=4 BlkCnt_Th=10")[1], 'no key or score "BlkCnt_Th"');
    assert.deepEqual(ids("refused"), ["refused", null]);
    assert.deepEqual(ids("  "), [sweep.points.map((p) => p.id).join(" "), null]);
});

test("a strip never loses a single frame", () => {
    const pixels = pixelsOf("500.1m499.3f1000h", 100);
    assert.equal(pixels.length, 100);
    assert.ok(pixels.includes("m") && pixels.includes("f"));
    assert.deepEqual(pixelsOf("1h1m", 4), ["h", "h", "m", "m"]);
    assert.equal(stripSummary("2h3m1h"), "3 hit, 3 miss");
});

test("every point has its sentence and the line to copy", () => {
    assert.equal(pointSentence(sweep, byName("4x2")), "Meets all that the plan expects.");
    assert.equal(pointSentence(sweep, byName("16x2")), "Misses: recall at least 0.8.");
    assert.match(
        pointSentence(sweep, byName("refused")),
        /^MD refuses these settings on night: ERROR/,
    );
    assert.equal(
        reportCommand(sweep, byName("4x2"), 1),
        "mdlab report --out night.html -- -d '/data/my settings/base.cfg' " +
            "-p InputFilePath=/data/night.mp4 -p MD_HogDist_Th=4 -p MD_BlkCnt_Th=2",
    );
    const raw = { name: "yard/1", file: "/data/1.yuv", options: "-p InputFileType=0" };
    assert.equal(
        reportCommand({ ...sweep, clips: [raw] }, byName("4x2"), 0),
        "mdlab report --out yard-1.html -- -d '/data/my settings/base.cfg' " +
            "-p InputFilePath=/data/1.yuv -p InputFileType=0 -p MD_HogDist_Th=4 -p MD_BlkCnt_Th=2",
    );
});

test("the address names the point and comes back", () => {
    const state = { point: 3, clip: 1, x: "f1", y: "recall", score: "hits", filter: "a>1 b" };
    assert.deepEqual(readAddress(sweep, writeAddress(sweep, state)), state);
    assert.deepEqual(readAddress(sweep, "#p=none&clip=none&x=none"), {});
});

const skip = canBrowse ? false : "needs Debian's chromium and the page's packages";
let browser = null;
let folder = null;
before(async () => {
    folder = mkdtempSync(join(tmpdir(), "sweep-page-"));
    if (canBrowse) browser = await startBrowser();
});
after(async () => {
    await browser?.close();
    rmSync(folder, { recursive: true, force: true });
});

const open = async (results, options = {}) => {
    const path = writeSweepPage(folder, results);
    const opened = await openPage(browser, path, { ready: false, ...options });
    await opened.page.waitForFunction(() => performance.getEntriesByName("sweep-ready").length > 0);
    return opened;
};

test(
    "a click on a row or a dot chooses the point; nothing is asked for or logged",
    { skip },
    async () => {
        const { page, faults } = await open(makeResults());
        await page.click('tr[data-point="7"]');
        assert.match(await page.textContent(".detail h2"), /12x6/);
        const spot = await page.evaluate(() => {
            window.scrollTo(0, 0);
            const u = document.querySelector(".plane .u-over").getBoundingClientRect();
            return { left: u.left, top: u.top, width: u.width, height: u.height };
        });
        await page.mouse.click(spot.left + spot.width * 0.055, spot.top + spot.height * 0.055);
        const chosen = await page.textContent(".detail h2 .mono");
        assert.equal(chosen, "16x10", "least false, most missed: the upper left end");
        assert.deepEqual(faults, []);
        await page.close();
    },
);

test("a dot of several points lists them all, and each can be chosen", { skip }, async () => {
    const results = makeResults({ thresholds: [4, 40, 44], counts: [2, 6] });
    const { page, faults } = await open(results, { hash: "#p=4x2&filter=MD_HogDist_Th%3D44" });
    const chosen = () => page.textContent(".detail h2 .mono");
    const clickDot = async () => {
        await page.evaluate(() => window.scrollTo(0, 0));
        const u = await page.locator(".plane .u-over").boundingBox();
        await page.mouse.click(u.x + u.width * 0.055, u.y + u.height * 0.055);
    };
    assert.ok(await page.isHidden(".pile"), "one point needs no list");
    await clickDot();
    assert.equal(await chosen(), "44x2", "the first that the filter keeps");
    const list = () => page.$$eval(".pile button", (b) => b.map((n) => n.textContent));
    const line = (th, n) => `MD_HogDist_Th=${th} MD_BlkCnt_Th=${n}`;
    assert.deepEqual(await list(), [line(40, 2), line(40, 6), line(44, 2), line(44, 6)]);
    assert.equal(await page.locator(".pile .left-out").count(), 2);
    await page.locator(".pile button").first().click();
    assert.equal(await chosen(), "40x2");
    await clickDot();
    assert.equal(await chosen(), "40x2", "a click on its dot keeps the choice");
    await page.click('tr[data-point="5"]');
    assert.equal(await page.textContent('.pile [aria-pressed="true"]'), line(44, 6));
    assert.deepEqual(faults, []);
    await page.close();
});

test("filter, sort, arrow keys and address work together", { skip }, async () => {
    const { page, faults } = await open(makeResults(), { hash: "#p=8x6&filter=MD_HogDist_Th%3D8" });
    const rows = () =>
        page.$$eval(".points tbody tr", (list) => list.map((tr) => tr.dataset.point));
    assert.deepEqual((await rows()).length, 3);
    assert.match(await page.textContent(".detail h2"), /8x6/);
    await page.fill(".filter", "nonsense>3");
    assert.equal(await page.textContent(".fault"), 'no key or score "nonsense"');
    await page.fill(".filter", "");
    await page.click('th button:has-text("Recall")');
    const first = (await rows())[0];
    await page.click('th button:has-text("Recall")');
    assert.notEqual((await rows())[0], first);
    await page.focus(`tr[data-point="${first}"]`);
    await page.click(`tr[data-point="${first}"]`);
    await page.keyboard.press("ArrowUp");
    assert.match(page.url(), /#p=/);
    assert.deepEqual(faults, []);
    await page.close();
});

test("without labels the page says so and still compares what there is", { skip }, async () => {
    const { page, faults } = await open(makeResults({ labels: false }), {
        width: 420,
        height: 900,
    });
    assert.equal(await page.inputValue(".plane select"), "motion_frames");
    const wide = await page.evaluate(() => document.documentElement.scrollWidth);
    assert.ok(wide <= 420, `the page is ${wide} wide on a screen of 420`);
    assert.deepEqual(faults, []);
    await page.close();
});

test("broken data is said in words", { skip }, async () => {
    const path = writeSweepPage(folder, makeResults());
    writeFileSync(
        path,
        readFileSync(path, "utf8").replace('id="md-results">', 'id="md-results">AAAA'),
    );
    const { page } = await openPage(browser, path, { ready: false });
    await page.waitForSelector(".error");
    assert.match(await page.textContent(".error"), /data cannot be read/);
    await page.close();
});

const bin = process.env.MD_BIN ?? "build/release/bin";
const cannotSweep = skip || !existsSync("/usr/bin/snakemake") || !existsSync(`${bin}/mdlab`);

test(
    "the page of a real sweep shows the scores of results.csv",
    { skip: cannotSweep },
    async () => {
        const size = ["320", "180", "60"];
        const clips = ["walker", "nothing"].map((scene) => {
            const file = `${scene}_320x180_P420.yuv`;
            const paths = [file, `${scene}.csv`].map((name) => join(folder, name));
            execFileSync(`${bin}/make_clip`, ["--scene", scene, ...size, ...paths]);
            return `  - {file: ${file}, labels: ${scene}.csv, name: ${scene}, type: 0, width: 320, height: 180}`;
        });
        const cfg = new URL("../../../cfg/default.cfg", import.meta.url).pathname;
        writeFileSync(
            join(folder, "a <plan>.yaml"),
            `settings: ${cfg}\nclips:\n${clips.join("\n")}\nkeys:\n  MD_BlkCnt_Th: [4, 60]\n`,
        );
        const into = join(folder, "swept");
        execFileSync(`${bin}/mdlab`, [
            "sweep",
            join(folder, "a <plan>.yaml"),
            "--into",
            into,
            "--quiet",
        ]);

        const [head, ...rows] = readFileSync(join(into, "results.csv"), "utf8").trim().split("\n");
        const at = (name) => head.split(",").indexOf(name);
        const { page, faults } = await openPage(browser, join(into, "sweep.html"), {
            ready: false,
        });
        await page.waitForFunction(() => performance.getEntriesByName("sweep-ready").length > 0);
        assert.equal(await page.textContent("h1"), "a <plan>.yaml");
        for (const cells of rows.map((r) => r.split(","))) {
            const shown = await page.evaluate(
                ([id, clip]) => {
                    const { sweep: s } = window.mdSweep;
                    const c = s.clips.findIndex((x) => x.name === clip);
                    const { scores, strip } = s.points.find((p) => p.id === id).runs[c];
                    return { hits: scores[s.scores.findIndex((x) => x.name === "hits")], strip };
                },
                [cells[at("point")], cells[at("clip")]],
            );
            assert.equal(String(shown.hits), cells[at("hits")]);
            const inStrip = [...shown.strip.matchAll(/(\d+)h/g)].reduce(
                (n, m) => n + Number(m[1]),
                0,
            );
            assert.equal(inStrip, shown.hits);
        }
        assert.equal(rows.length, 4);
        assert.deepEqual(faults, []);
        await page.close();
    },
);
