// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Histograms of the distances in this frame and in the clip, and what decided.

import { canvasContext, fill, h } from "../../page/dom.js";
import { axisNumber, count, percent } from "../../page/format.js";
import { color } from "../../page/theme.js";
import { mark } from "./legend.js";
import { kGroupNames, kKinds, kOutcomes } from "./outcomes.js";
import { blockThresholds } from "./thresholds.js";

const kHeight = 116;

export function createDistancesPanel(app) {
    const node = h("div.panel.distances");
    const frameTitle = h("h3");
    const frameCanvas = h("canvas.histogram", { role: "img" });
    const clipTitle = h("h3");
    const clipCanvas = h("canvas.histogram", { role: "img" });
    const table = h("table.outcomes");
    const key = h(
        "p.small.key",
        null,
        h("span.area.all"),
        "all blocks ",
        h("span.area.counted"),
        "active ",
        h("span.bar.threshold"),
        "thresholds: carried, threshold, alone, high",
    );
    node.append(
        frameTitle,
        frameCanvas,
        clipTitle,
        clipCanvas,
        key,
        h("h3", null, "What decided"),
        table,
    );
    const update = () => {
        if (node.hidden || node.clientWidth < 60) return;
        show(app, { frameTitle, frameCanvas, clipTitle, clipCanvas, table });
    };
    app.store.on(["frame", "blocksReady", "filter", "view", "tab", "theme", "layout"], update);
    new ResizeObserver(update).observe(node);
    return node;
}

function show(app, parts) {
    const run = app.shownRun();
    const { frame } = app.store.state;
    const values = run.blocks(frame);
    const blocks = run.grid.blocks;
    if (values === null) {
        fill(
            parts.frameTitle,
            "Distances in this frame ",
            h("span.quiet", null, "no block values"),
        );
        canvasContext(parts.frameCanvas, 1, 1);
    } else {
        const { all, active } = frameHistogram(values);
        fill(
            parts.frameTitle,
            "Distances in this frame ",
            h("span.quiet", null, `${count(blocks)} blocks, ${count(blocks - all[0])} changed`),
        );
        const t = blockThresholds(run.settings, run.columns.luma[frame]);
        histogram(parts.frameCanvas, all, active, t);
        parts.frameCanvas.setAttribute("aria-label", `Distances in this frame, threshold ${t.th}`);
    }
    const whole = blocks * run.frames;
    const { all, active } = run.distances;
    fill(
        parts.clipTitle,
        "In the whole clip ",
        h("span.quiet", null, `${count(whole)} blocks, ${percent(whole - all[0], whole)} changed`),
    );
    const t = blockThresholds(run.settings, 0);
    histogram(parts.clipCanvas, all, active, t);
    parts.clipCanvas.setAttribute("aria-label", `Distances in the clip, threshold ${t.th}`);
    fill(parts.table, outcomeRows(app, run, frame));
}

function frameHistogram(values) {
    const all = new Uint32Array(256);
    const active = new Uint32Array(256);
    for (let i = 0; i < values.distance.length; ++i) {
        const outcome = values.outcome[i];
        const d = outcome <= 1 ? 0 : values.distance[i];
        ++all[d];
        if (kOutcomes[outcome].group === 0) ++active[d];
    }
    return { all, active };
}

// x log2(1 + d), one bar a distance; y log. A line is drawn at the right of its value: bars to the right of it
// are over it.
function histogram(canvas, all, active, t) {
    const width = canvas.parentElement.clientWidth - 28;
    const ctx = canvasContext(canvas, width, kHeight);
    const plot = { x: 34, y: 16, w: width - 40, h: kHeight - 34 };
    const most = all.reduce((m, v) => Math.max(m, v), 1);
    const top = Math.ceil(Math.log10(most + 1));
    const yOf = (n) =>
        plot.y + plot.h * (1 - (n > 0 ? 0.06 + 0.94 * (Math.log10(n + 0.15) / top) : 0));
    const xOf = (d) => plot.x + (plot.w * Math.log2(1 + d)) / 8;
    ctx.font = "10px system-ui, sans-serif";
    ctx.textBaseline = "middle";
    ctx.textAlign = "right";
    for (let e = 0; e <= top; e += top > 4 ? 2 : 1) {
        const y = Math.round(yOf(10 ** e)) + 0.5;
        ctx.strokeStyle = color("grid");
        ctx.beginPath();
        ctx.moveTo(plot.x, y);
        ctx.lineTo(plot.x + plot.w, y);
        ctx.stroke();
        ctx.fillStyle = color("ink2");
        ctx.fillText(axisNumber(10 ** e), plot.x - 4, y);
    }
    bars(ctx, plot, all, xOf, yOf, color("all"));
    bars(ctx, plot, active, xOf, yOf, color("counted"));
    ctx.textBaseline = "top";
    ctx.textAlign = "center";
    ctx.fillStyle = color("ink2");
    for (const d of [0, 1, 3, 7, 15, 31, 63, 127, 255]) {
        ctx.fillText(
            String(d),
            Math.min((xOf(d) + xOf(d + 1)) / 2, plot.x + plot.w - 8),
            plot.y + plot.h + 4,
        );
    }
    lines(ctx, plot, t, xOf);
}

function bars(ctx, plot, values, xOf, yOf, ink) {
    ctx.fillStyle = ink;
    const bottom = plot.y + plot.h;
    for (let d = 0; d < 256; ++d) {
        if (values[d] === 0) continue;
        const x = xOf(d);
        const y = yOf(values[d]);
        const w = Math.max(0.7, xOf(d + 1) - x - (xOf(d + 1) - x > 4 ? 1 : 0));
        ctx.fillRect(x, y, Math.min(w, plot.x + plot.w - x), bottom - y);
    }
}

function lines(ctx, plot, t, xOf) {
    const list = [
        ["carried", t.carried, [1.5, 2.5]],
        ["threshold", t.th, []],
        ["alone", t.alone, [4, 2]],
        ["high", t.high - 1, [1.5, 2.5]],
    ];
    ctx.strokeStyle = color("threshold");
    ctx.fillStyle = color("threshold");
    ctx.lineWidth = 1.2;
    ctx.textAlign = "left";
    ctx.textBaseline = "alphabetic";
    // Labels from left to right, each moved on to where the one before ends.
    const texts = list.map(([name, d]) => `${name} ${name === "high" ? d + 1 : d}`);
    const widths = texts.map((text) => ctx.measureText(text).width);
    const rest = widths.map((_, i) => widths.slice(i).reduce((sum, w) => sum + w + 6, 0));
    let free = plot.x;
    list.forEach(([, d, dash], i) => {
        const x = Math.round(xOf(Math.min(d + 1, 255))) + 0.5;
        ctx.setLineDash(dash);
        ctx.beginPath();
        ctx.moveTo(x, plot.y);
        ctx.lineTo(x, plot.y + plot.h);
        ctx.stroke();
        const wanted = Math.max(free, x - widths[i] / 2);
        const at = Math.min(wanted, plot.x + plot.w + 6 - rest[i]);
        ctx.fillText(texts[i], at, plot.y - 4);
        free = at + widths[i] + 6;
    });
    ctx.setLineDash([]);
}

function outcomeRows(app, run, frame) {
    const inFrame = kOutcomes.map((_, o) => run.columns[`o${o}`][frame]);
    const inClip = run.outcomes;
    const largest = Math.max(1, ...kOutcomes.map((o, i) => (o.group === 2 ? 0 : inClip[i])));
    const head = h(
        "tr",
        null,
        h("th"),
        h("th", null, "Outcome"),
        h("th.n", null, "frame"),
        h("th.n", null, "clip"),
        h("th"),
    );
    const groups = kGroupNames.map((name, g) => {
        const outcomes = kOutcomes.map((_, i) => i).filter((i) => kOutcomes[i].group === g);
        const sum = (list) => outcomes.reduce((s, o) => s + list[o], 0);
        const rows = outcomes
            .filter((o) => inClip[o] > 0)
            .sort((a, b) => inClip[b] - inClip[a])
            .map((o) => outcomeRow(app, o, inFrame[o], inClip[o], largest));
        return [
            h(
                "tr.group",
                null,
                h("td", { colspan: 2 }, name),
                h("td.n", null, count(sum(inFrame))),
                h("td.n", null, count(sum(inClip))),
                h("td"),
            ),
            rows,
        ];
    });
    return [h("thead", null, head), h("tbody", null, groups)];
}

function outcomeRow(app, o, inFrame, inClip, largest) {
    const { kind, name, group } = kOutcomes[o];
    const chosen = app.store.state.filter?.has(o) ?? false;
    const bar = h("span.share");
    bar.style.width = `${group === 2 ? 0 : Math.max(1, Math.round((48 * inClip) / largest))}px`;
    const swatch =
        kind === null
            ? mark("nothing", "transparent")
            : mark(kKinds[kind].mark, kKinds[kind].color);
    return h(
        `tr.outcome${chosen ? ".chosen" : ""}`,
        {
            data: { outcome: o },
            title: "Click: show only these on the stage. Double click: next frame that has one.",
            onclick: () => app.filterOutcome(o),
            ondblclick: () => app.nextOutcome(o),
        },
        h("td", null, swatch),
        h("td", null, h("button.plain", { type: "button" }, name)),
        h("td.n", null, count(inFrame)),
        h("td.n", null, count(inClip)),
        h("td", null, bar),
    );
}
