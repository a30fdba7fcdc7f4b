// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Times of reports in a browser, for scripts/bench.sh: node times.js NAME=FILE... prints an object of
// NAME: { ready, unpacked, step, step95, random, random95 }, all milliseconds by the clock; an empty
// object where no browser is installed.

import { resolve } from "node:path";
import { canBrowse, openPage, startBrowser } from "./support/browser.js";

const kSteps = 60;
const kRandom = 40;

// Goes to each frame in turn; a step ends when its picture was drawn and the screen's next turn came.
async function timesOf(page, frames) {
    const times = await page.evaluate(async (list) => {
        const app = window.mdReport;
        const turn = () => new Promise((done) => requestAnimationFrame(done));
        const all = [];
        for (const frame of list) {
            const start = performance.now();
            app.go(frame);
            do await turn();
            while (app.picture.frame !== frame || app.store.state.frame !== frame);
            all.push(performance.now() - start);
        }
        return all;
    }, frames);
    times.sort((a, b) => a - b);
    return [0.5, 0.95].map((share) => times[Math.floor(share * (times.length - 1))]);
}

async function measure(browser, file) {
    const { page } = await openPage(browser, file);
    const mark = (name) =>
        page.evaluate((n) => performance.getEntriesByName(n)[0].startTime, `report-${name}`);
    const frames = await page.evaluate(() => window.mdReport.frames);
    const single = Array.from({ length: Math.min(kSteps, frames - 1) }, (_, i) => i + 1);
    let seed = 1;
    const random = Array.from({ length: kRandom }, () => {
        seed = (Math.imul(seed, 1664525) + 1013904223) >>> 0;
        return Math.floor((seed / 2 ** 32) * frames);
    });
    const [step, step95] = await timesOf(page, single);
    const [jump, jump95] = await timesOf(page, random);
    const times = {
        ready: await mark("ready"),
        unpacked: await mark("unpacked"),
        step,
        step95,
        random: jump,
        random95: jump95,
    };
    await page.close();
    return times;
}

const all = {};
if (canBrowse) {
    const browser = await startBrowser();
    for (const pair of process.argv.slice(2)) {
        const [name, file] = pair.split("=");
        all[name] = await measure(browser, resolve(file));
    }
    await browser.close();
}
console.log(JSON.stringify(all));
