// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The sweep page: all points in a plane of two scores, what each key does, a table, and the chosen
// point with its clips. It decides nothing: scores, limits and the front come from the results.

import "uplot/dist/uPlot.min.css";
import "../../page/page.css";
import "./layout.css";
import { fromBase64, inflate } from "../../page/bytes.js";
import { byId, fill, h } from "../../page/dom.js";
import { createStore } from "../../page/store.js";
import { setTheme, startTheme, themeName } from "../../page/theme.js";
import { readAddress, writeAddress } from "./address.js";
import { firstChoice, hasScore, prepare } from "./data.js";
import { createDetail } from "./detail.js";
import { createKeyPlots } from "./key_plots.js";
import { createPlane } from "./plane.js";
import { createTable, kRows } from "./table.js";
import { clipTitle } from "./words.js";

function initialState(sweep) {
    const labelled = hasScore(sweep, -1, "f1");
    return {
        point: firstChoice(sweep),
        clip: -1,
        x: labelled ? "false_per_1000" : "motion_frames",
        y: labelled ? "missed_per_1000" : "jumps_per_100",
        score: labelled ? "f1" : "motion_frames",
        sort: labelled ? "f1" : "motion_frames",
        down: false,
        filter: "",
        onlyBest: false,
        onlyMet: false,
        accepted: new Set(sweep.points.map((p) => p.index)),
        shown: kRows,
        width: window.innerWidth,
        ...readAddress(sweep, location.hash),
    };
}

// The choice of the clip that all scores are of.
function clipPicker(app) {
    const { sweep, store } = app;
    const select = h(
        "select.field",
        { onchange: (e) => store.set({ clip: Number(e.target.value) }) },
        [-1, ...sweep.clips.keys()].map((c) =>
            h("option", { value: c, selected: c === store.state.clip }, clipTitle(sweep, c)),
        ),
    );
    store.on(["clip"], () => (select.value = String(store.state.clip)));
    return h("label.small", null, "Scores over ", select);
}

function themeButton() {
    const toggle = () => setTheme(themeName() === "dark" ? "light" : "dark");
    document.addEventListener("keydown", (e) => {
        const typing = e.target.matches("input, select, textarea");
        if (e.key.toLowerCase() === "t" && !typing && !e.ctrlKey && !e.metaKey && !e.altKey)
            toggle();
    });
    return h(
        "button.button",
        { type: "button", title: "Light or dark (T)", onclick: toggle },
        "Theme",
    );
}

function start(results) {
    startTheme();
    const sweep = prepare(results);
    const store = createStore(initialState(sweep));
    const app = { sweep, store };
    const parts = [createPlane(app), createKeyPlots(app), createTable(app), createDetail(app)];
    const [plane, keys, table, detail] = parts;
    byId("head").append(h("div.tools", null, clipPicker(app), themeButton()));
    fill(
        byId("app"),
        h("div.left", null, plane.node, keys.node, table.node),
        h("div.right", null, detail.node),
    );
    for (const part of parts) part.draw();
    store.on(["point", "clip", "x", "y", "score", "filter"], (state) =>
        history.replaceState(null, "", writeAddress(sweep, state)),
    );
    let timer = 0;
    window.addEventListener("resize", () => {
        clearTimeout(timer);
        timer = setTimeout(() => store.set({ width: window.innerWidth }), 120);
    });
    window.mdSweep = app;
    performance.mark("sweep-ready");
}

async function load() {
    const bytes = await inflate(fromBase64(byId("md-results").textContent));
    return JSON.parse(new TextDecoder().decode(bytes));
}

load()
    .then(start)
    .catch((e) => {
        byId("app").append(h("p.error", null, `This page's data cannot be read: ${e.message}`));
    });
