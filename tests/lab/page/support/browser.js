// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Debian's chromium, driven by playwright-core, with a new empty profile. Everything that the page
// must not do is collected: console messages, errors, requests.

import { existsSync, mkdtempSync, rmSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";

export const kChromium = process.env.CHROMIUM ?? "/usr/bin/chromium";
export const kPackages = resolve(process.env.MD_PAGE_TREE ?? "build/release/page");
export const canBrowse =
    existsSync(kChromium) && existsSync(join(kPackages, "node_modules/playwright-core"));

const kArguments = [
    "--no-sandbox",
    "--disable-gpu",
    "--disable-quic",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
];

export async function startBrowser() {
    const require = createRequire(join(kPackages, "package.json"));
    const { chromium } = require("playwright-core");
    const profile = mkdtempSync(join(tmpdir(), "page-profile-"));
    const context = await chromium.launchPersistentContext(profile, {
        executablePath: kChromium,
        headless: true,
        args: kArguments,
        offline: true,
        viewport: { width: 1280, height: 800 },
    });
    return {
        context,
        async close() {
            await context.close();
            rmSync(profile, { recursive: true, force: true });
        },
    };
}

// Opens a file. `faults` collects whatever must not happen.
export async function openPage(
    browser,
    file,
    { width = 1280, height = 800, hash = "", dark = false, ready = true } = {},
) {
    const page = await browser.context.newPage();
    const faults = [];
    page.on("console", (m) => {
        // The browser's advice about the tests' own reading of pixels.
        if (!m.text().includes("willReadFrequently")) faults.push(`console: ${m.text()}`);
    });
    page.on("pageerror", (e) => faults.push(`error: ${e.message}`));
    page.on("request", (r) => {
        const own = r.url().split("#")[0] === `file://${file}` || r.url().startsWith("blob:");
        if (!own) faults.push(`request: ${r.url()}`);
    });
    await page.setViewportSize({ width, height });
    await page.emulateMedia({ colorScheme: dark ? "dark" : "light" });
    await page.goto(`file://${file}${hash}`);
    if (ready) await settled(page);
    return { page, faults };
}

// Ready, all values unpacked, and the picture on the stage is that of the frame asked for.
export async function settled(page) {
    await page.waitForFunction(() => performance.getEntriesByName("report-unpacked").length > 0);
    await shown(page);
}

export const shown = (page) =>
    page.waitForFunction(() => {
        const app = window.mdReport;
        return (
            app.store.state.frame === app.store.state.target &&
            app.picture.frame === app.store.state.frame
        );
    });
