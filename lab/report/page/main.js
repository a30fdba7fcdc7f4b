// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Entry of the report page: opens the data, builds the views, connects them.

import "../../page/page.css";
import "./layout.css";
import "./stage.css";
import "./timeline.css";
import "./panels.css";
import "./paper.css";
import { inflate } from "../../page/bytes.js";
import { byId, h } from "../../page/dom.js";
import { onTheme, setTheme, startTheme, themeName } from "../../page/theme.js";
import { followAddress, readAddress } from "./address.js";
import { createApp } from "./app.js";
import { documentSource, openRun, readColumns, readHead } from "./data.js";
import { openHelp, openLeftOut } from "./dialogs.js";
import { listenKeys } from "./keys.js";
import { createLabels } from "./labels.js";
import { createLegend } from "./legend.js";
import * as outcomes from "./outcomes.js";
import { copyText, createBlockPanel } from "./panel_block.js";
import { createDifferencePanel } from "./panel_difference.js";
import { createDistancesPanel } from "./panel_distances.js";
import { createEventsPanel } from "./panel_events.js";
import { createSettingsPanel } from "./panel_settings.js";
import { listenPrint } from "./print.js";
import { createStage } from "./stage.js";
import { listenStage } from "./stage_input.js";
import { createTabs } from "./tabs.js";
import { createTimeline } from "./timeline.js";
import { listenTimeline } from "./timeline_input.js";
import { createToolbar, layersOf } from "./toolbar.js";
import { createTransport } from "./transport.js";

const errors = new Set();

// A red line on top with the reason; the page goes on as far as it can.
function fail(error) {
    const text = error instanceof Error ? error.message : String(error);
    if (errors.has(text)) return;
    errors.add(text);
    byId("app").before(h("div.error", { role: "alert" }, `This file is damaged: ${text}.`));
}

async function openRuns(head, source) {
    const callbacks = { ready: (k) => arrivedChunk(k), failed: fail };
    return Promise.all(
        head.runs.map(async (record, i) => {
            const bytes = await inflate(source.raw(`md-f${i}`));
            const columns = readColumns(bytes, record.columns, head.clip.frames);
            return openRun(head, i, columns, source, callbacks);
        }),
    );
}

let app = null;

// Only values near the frame shown change what is seen.
function arrivedChunk(k) {
    if (app === null) return;
    const { target, blocksReady } = app.store.state;
    const at = Math.floor(target / app.head.chunk_frames);
    if (Math.abs(k - at) <= 1) app.store.set({ blocksReady: blocksReady + 1 });
}

async function start() {
    startTheme();
    const head = readHead(document);
    const source = documentSource(document);
    const bytes = head.video === null ? null : source.raw("md-video");
    const url =
        bytes === null ? null : URL.createObjectURL(new Blob([bytes], { type: "video/mp4" }));
    const runs = await openRuns(head, source);
    app = createApp(head, runs, url);
    build(app);
    if (url === null) app.note("This file holds no video, so the means of the blocks are shown.");
    await open(app);
    performance.mark("report-ready");
    window.mdReport = app; // for tests and the console
    unpackAll(app).catch(fail);
}

function build(a) {
    document.body.classList.toggle("compare", a.runs.length > 1);
    const notes = h("div.notes");
    a.note = (text) => notes.append(h("p", null, text));
    addCommands(a);
    const stage = createStage(a);
    a.stage = stage;
    const timeline = createTimeline(a);
    a.labels = createLabels(a);
    const left = h(
        "main.left",
        null,
        createToolbar(a, stage),
        stage.node,
        createLegend(a),
        createTransport(a),
        timeline.node,
    );
    const panels = [
        ["block", "Block", createBlockPanel(a)],
        ["distances", "Distances", createDistancesPanel(a)],
        ["events", "Events", createEventsPanel(a)],
        ["settings", "Settings", createSettingsPanel(a)],
        ["labels", "Labels", a.labels.node],
    ];
    if (a.runs.length > 1) panels.unshift(["difference", "Difference", createDifferencePanel(a)]);
    byId("app").append(left, createTabs(a, panels));
    byId("app").before(notes);
    listenStage(stage);
    listenTimeline(timeline);
    listenKeys(a);
    listenHead(a);
    onTheme((theme) => a.store.set({ theme }));
    listenPrint(a, () => {
        stage.width = stage.node.clientWidth;
        stage.height = stage.node.clientHeight;
        stage.draw();
        timeline.rebuild();
    });
}

function addCommands(a) {
    const layers = layersOf(a);
    a.layerAt = (i) => layers[i] !== undefined && a.setLayer(layers[i][0]);
    a.strengthBy = (by) => {
        const strength = Math.min(1, Math.max(0.1, a.store.state.strength + by));
        a.store.set({ strength: Math.round(strength * 20) / 20 });
    };
    a.toggle = (member) => a.store.set({ [member]: !a.store.state[member] });
    a.switchTheme = () => setTheme(themeName() === "dark" ? "light" : "dark");
    a.openHelp = () => openHelp(a);
    a.openLabels = () => a.store.set({ tab: "labels" });
    a.filterOutcome = (o) => {
        a.setLayer("decision");
        a.toggleFilter([o]);
    };
    a.copyBlock = async () => {
        const text = copyText(a);
        if (text === "") return;
        await copy(text);
        a.copied = text;
    };
}

async function copy(text) {
    try {
        await navigator.clipboard.writeText(text);
    } catch {
        const area = h("textarea.offscreen", { value: text });
        document.body.append(area);
        area.select();
        document.execCommand("copy");
        area.remove();
    }
}

function listenHead(a) {
    const head = byId("head");
    head.append(
        h(
            "div.tools",
            null,
            h(
                "button.button",
                {
                    type: "button",
                    title: "Light, dark (T)",
                    "aria-label": "Light or dark",
                    onclick: () => a.switchTheme(),
                },
                "◑",
            ),
            h(
                "button.button",
                {
                    type: "button",
                    title: "Keys and reading help (?)",
                    "aria-label": "Help",
                    onclick: () => a.openHelp(),
                },
                "?",
            ),
        ),
    );
    head.addEventListener("click", (e) => {
        const cell = e.target.closest("button.cell");
        if (cell === null) return;
        const { frame, tab, dialog } = cell.dataset;
        if (frame !== undefined) a.go(Number(frame));
        if (tab !== undefined) a.store.set({ tab });
        if (dialog === "short") openLeftOut(a);
    });
}

// The opening frame, or what the address asks for; then a block worth looking at is chosen.
async function open(a) {
    const layers = layersOf(a).map(([id]) => id);
    const { frame, ...asked } = readAddress(location.hash, a.runs[0], layers);
    const f = frame ?? a.head.opening;
    const k = Math.floor(f / a.head.chunk_frames);
    await Promise.all(a.runs.map((run) => run.loadChunk(k)));
    await Promise.all(
        a.runs.map((run) => (k > 0 && f % a.head.chunk_frames < 3 ? run.loadChunk(k - 1) : null)),
    );
    const block = asked.block ?? tellingBlock(a.runs[0].blocks(f));
    const blocksReady = a.store.state.blocksReady + 1;
    a.store.set({ ...asked, block, target: f, frame: f, blocksReady });
    a.show(f);
    followAddress(a, layers);
}

const kTelling = [
    outcomes.kJumps,
    outcomes.kHeld,
    outcomes.kSteadyIsolated,
    outcomes.kTooNew,
    outcomes.kTooNew2,
    outcomes.kTooNew1,
    outcomes.kLow2,
    outcomes.kLow1,
    outcomes.kSteady,
    outcomes.kPatch,
    outcomes.kCarried,
    outcomes.kBelow,
    outcomes.kBelowAlone,
];

// The block with the largest distance among those of the most interesting outcome, or -1.
function tellingBlock(frame) {
    if (frame === null) return -1;
    for (const outcome of kTelling) {
        let best = -1;
        frame.outcome.forEach((o, i) => {
            if (o === outcome && (best < 0 || frame.distance[i] > frame.distance[best])) best = i;
        });
        if (best >= 0) return best;
    }
    return -1;
}

const idle = () =>
    new Promise((resolve) => {
        if (window.requestIdleCallback) requestIdleCallback(resolve, { timeout: 200 });
        else setTimeout(resolve, 10);
    });

// The rest of the values, in idle time; then what needs all of them.
async function unpackAll(a) {
    for (let k = 0; k < a.runs[0].chunkCount; ++k) {
        await idle();
        await Promise.all(a.runs.map((run) => run.loadChunk(k)));
        if (a.difference !== null) lookAt(a, k);
    }
    if (a.difference !== null) {
        a.difference.done = true;
        a.store.set({ differenceReady: 1 });
    }
    if (a.runs.some((run) => run.has_blocks === "some")) a.store.set({ differenceReady: 2 });
    performance.mark("report-unpacked");
}

function lookAt(a, k) {
    const per = a.head.chunk_frames;
    for (let f = k * per; f < Math.min(a.frames, (k + 1) * per); ++f) a.difference.at(f);
}

start().catch(fail);
