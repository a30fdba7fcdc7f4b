// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The picture with its overlay, on one canvas in one draw, so that they cannot part.

import { canvasContext, h } from "../../page/dom.js";
import { referenceOf } from "./inspect.js";
import * as layers from "./layers.js";

const kRunColors = ["#5cc8ff", "#ff8a28"];
const kMaxZoom = 40;

export function createStage(app) {
    const canvas = h("canvas", {
        tabindex: "0",
        role: "img",
        "aria-label": "Picture with overlay",
    });
    const tip = h("div.tip", { hidden: true });
    const badge = h("div.badge", { hidden: true });
    const chooser = app.runs.length > 1 ? runChooser(app) : null;
    const node = h("div.stage", null, canvas, chooser, badge, tip);
    const stage = { app, node, canvas, tip, badge, width: 0, height: 0, drawMs: 0 };

    const resize = new ResizeObserver(() => {
        stage.width = node.clientWidth;
        stage.height = node.clientHeight;
        draw(stage);
    });
    resize.observe(node);
    app.store.on(
        [
            "frame",
            "layer",
            "strength",
            "picture",
            "boxes",
            "grid",
            "block",
            "filter",
            "zoom",
            "centerX",
            "centerY",
            "view",
            "blocksReady",
            "held",
            "drawn",
            "labelBox",
        ],
        () => draw(stage),
    );
    stage.draw = () => draw(stage);
    return stage;
}

function runChooser(app) {
    const options = [
        ["a", "A"],
        ["b", "B"],
        ["side", "Side by side"],
    ];
    const group = h("div.segments.chooser", { role: "radiogroup", "aria-label": "Run shown" });
    const buttons = options.map(([view, name]) =>
        h(
            "button",
            { type: "button", role: "radio", onclick: () => app.store.set({ view }) },
            name,
        ),
    );
    const update = () =>
        buttons.forEach((b, i) => {
            b.setAttribute("aria-checked", String(app.store.state.view === options[i][0]));
        });
    group.append(...buttons);
    app.store.on(["view"], update);
    update();
    return group;
}

// The parts of the stage, one a run shown: { run (index), x, width, g (geometry) }.
function viewports(stage) {
    const { app, width, height } = stage;
    const s = app.store.state;
    const both = app.runs.length > 1 && s.view === "side";
    const shown = both ? [0, 1] : [s.view === "b" ? 1 : 0];
    const part = width / shown.length;
    return shown.map((run, i) => {
        const { grid } = app.runs[run];
        const whole = Math.min(part / grid.width, height / grid.height);
        const scale = whole * s.zoom;
        const x = i * part + part / 2 - s.centerX * scale;
        const y = height / 2 - s.centerY * scale;
        return { run, x: i * part, width: part, g: layers.geometry(grid, scale, x, y) };
    });
}

export const viewportAt = (stage, px) =>
    viewports(stage).find((v) => px >= v.x && px < v.x + v.width) ?? viewports(stage)[0];

function draw(stage) {
    if (stage.width < 2 || stage.height < 2) return;
    const start = performance.now();
    const ctx = canvasContext(stage.canvas, stage.width, stage.height);
    const white = stage.app.store.state.paper === true;
    ctx.fillStyle = white ? "#ffffff" : "#0c0e11";
    ctx.fillRect(0, 0, stage.width, stage.height);
    for (const view of viewports(stage)) {
        ctx.save();
        ctx.beginPath();
        ctx.rect(view.x, 0, view.width, stage.height);
        ctx.clip();
        drawView(stage, ctx, view);
        ctx.restore();
    }
    drawBadge(stage);
    stage.drawMs = performance.now() - start;
}

function drawView(stage, ctx, view) {
    const { app } = stage;
    const s = app.store.state;
    const run = app.runs[view.run];
    const { g } = view;
    const image = app.picture.as(s.picture);
    if (image !== null) {
        ctx.imageSmoothingEnabled = g.scale < 4;
        const { width, height } = run.grid;
        ctx.drawImage(image, g.x, g.y, width * g.scale, height * g.scale);
    }
    // The picture says which frame this is; the values follow it, never the other way round.
    const f = s.frame;
    if (s.held) return;
    const frame = run.blocks(f);
    if (frame !== null) drawOverlay(stage, ctx, view, run, frame, f);
    if (s.boxes) drawBoxes(stage, ctx, view, f);
    if (s.block >= 0) layers.drawChosen(ctx, g, s.block);
    if (s.labelBox !== null) layers.drawBox(ctx, g, s.labelBox, "#ffe14d", true);
}

function drawOverlay(stage, ctx, view, run, frame, f) {
    const { app } = stage;
    const s = app.store.state;
    const { g } = view;
    const viewport = { width: stage.width, height: stage.height };
    const reference = referenceOf(run, f);
    const other = s.layer === "diff" ? app.runs[1].blocks(f) : null;
    const first = s.layer === "diff" ? app.runs[0].blocks(f) : frame;
    if (s.layer !== "diff" || (first !== null && other !== null)) {
        layers.drawLayer(ctx, g, s.layer, first, {
            strength: s.strength,
            filter: s.filter,
            means: run.means(f),
            referenceMeans: run.means(reference),
            other,
        });
    }
    if (s.grid) layers.drawGrid(ctx, g, viewport);
    if (g.size >= 24 && s.layer !== "off") layers.drawValues(ctx, g, frame.distance, viewport);
}

function drawBoxes(stage, ctx, view, f) {
    const { app } = stage;
    if (app.runs.length > 1) {
        const shown = app.store.state.view === "side" ? [view.run] : [0, 1];
        for (const r of shown) {
            const box = app.runs[r].boxAfter(f);
            if (box !== null) layers.drawBox(ctx, view.g, box, kRunColors[r], false);
        }
        return;
    }
    const run = app.runs[0];
    const before = run.boxBefore(f);
    const after = run.boxAfter(f);
    const same = after !== null && before !== null && before.every((v, i) => v === after[i]);
    if (before !== null && !same) layers.drawBox(ctx, view.g, before, layers.kBoxBefore, true);
    if (after !== null) layers.drawBox(ctx, view.g, after, layers.kBoxAfter, false);
}

function drawBadge(stage) {
    const { app, badge } = stage;
    const s = app.store.state;
    const run = app.runs[s.view === "b" ? 1 : 0];
    let text = "";
    if (s.held) text = `Reference: frame ${run.first + app.picture.frame}`;
    else if (run.blocks(s.frame) === null) {
        text = run.hasBlocks(s.frame)
            ? "Block values are being unpacked"
            : "No block values in this frame";
    }
    badge.textContent = text;
    badge.hidden = text === "";
}

// Zooms by `factor` with the stage point (px, py) kept in place.
export function zoomAt(stage, factor, px, py) {
    const s = stage.app.store.state;
    const view = viewportAt(stage, px);
    const zoom = Math.min(kMaxZoom, Math.max(1, s.zoom * factor));
    if (zoom === 1) {
        fit(stage);
        return;
    }
    const at = [(px - view.g.x) / view.g.scale, (py - view.g.y) / view.g.scale];
    const scale = (view.g.scale / s.zoom) * zoom;
    const middle = [view.x + view.width / 2, stage.height / 2];
    center(stage, zoom, at[0] - (px - middle[0]) / scale, at[1] - (py - middle[1]) / scale);
}

export function fit(stage) {
    const { grid } = stage.app.runs[0];
    stage.app.store.set({ zoom: 1, centerX: grid.width / 2, centerY: grid.height / 2 });
}

// Centres on a working pixel; the middle of the stage is always on the picture.
export function center(stage, zoom, x, y) {
    const { grid } = stage.app.runs[0];
    const clamp = (v, max) => Math.min(max, Math.max(0, v));
    stage.app.store.set({ zoom, centerX: clamp(x, grid.width), centerY: clamp(y, grid.height) });
}
