// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Pictures of reports for people to look at: node shots.js OUT NAME=FILE... Each NAME has its own sizes and
// places; see kShots. scripts/shots.sh makes the reports.

import { mkdirSync } from "node:fs";
import { join, resolve } from "node:path";
import { openPage, startBrowser } from "./support/browser.js";

const kPause = 900; // ms for thumbnails, which come when the page rests

// name of the report: [name of the picture, options of openPage, what to do before]
const kShots = {
    main: [
        ["light", {}],
        ["dark", { dark: true, hash: "#l=distance&t=hist" }],
        ["narrow", { width: 420, height: 1500 }],
        ["wide", { width: 1920, height: 1080, dark: true, hash: "#t=events" }],
        ["settings", { hash: "#t=settings" }],
        [
            "labels",
            { hash: "#t=labels" },
            (page) => page.getByRole("button", { name: "From events" }).click(),
        ],
        ["zoom", {}, zoomIn],
        ["help", {}, (page) => page.keyboard.press("?")],
    ],
    compare: [
        ["compare", {}],
        ["compare-block", { hash: "#t=block", dark: true }],
        ["compare-side", {}, (page) => page.getByRole("radio", { name: "Side by side" }).click()],
    ],
    still: [["no-motion", { hash: "#t=events" }]],
    one: [["one-frame", {}]],
    stride: [["stride-64", {}]],
    large: [["large", { width: 1920, height: 1080 }]],
    short: [["shortened", {}, (page) => page.locator('[data-dialog="short"]').click()]],
};

async function zoomIn(page) {
    const box = await page.locator(".stage canvas").boundingBox();
    await page.mouse.move(box.x + box.width / 2, box.y + box.height / 2);
    for (let i = 0; i < 9; ++i) await page.mouse.wheel(0, -100);
}

const [out, ...given] = process.argv.slice(2);
mkdirSync(out, { recursive: true });
const browser = await startBrowser();
for (const pair of given) {
    const [name, file] = pair.split("=");
    for (const [shot, options, act] of kShots[name]) {
        const { page, faults } = await openPage(browser, resolve(file), options);
        await act?.(page);
        await page.waitForTimeout(kPause);
        await page.screenshot({ path: join(out, `${shot}.png`) });
        console.log(`${shot}.png${faults.length > 0 ? `: ${faults.join("; ")}` : ""}`);
        if (shot === "light")
            await page.pdf({ path: join(out, "paper.pdf"), format: "A4", printBackground: true });
        await page.close();
    }
}
await browser.close();
