// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The tracks over the frames: one range, one cursor, one playhead. Each track has its name, its marks
// and the values under the cursor (else at the playhead) in the gutter.

import "uplot/dist/uPlot.min.css";
import { canvasContext, fill, h } from "../../page/dom.js";
import { count, short } from "../../page/format.js";
import { color, onTheme } from "../../page/theme.js";
import { kAxis, makeChart } from "./charts.js";
import { isHeld, isReported } from "./frame_words.js";
import { boxShare, runsOf, silhouette } from "./tracks.js";

const kOverview = 26;
const kBand = 18;

export function createTimeline(app) {
    if (app.frames === 1) return oneFrame();
    const over = h(
        "div.over",
        null,
        h("div.selection", { hidden: true }),
        h("div.cursorline", { hidden: true }),
        h("div.playhead"),
    );
    const node = h("div.timeline", { role: "group", "aria-label": "Timeline" });
    const flag = h("div.flag");
    const timeline = { app, node, over, flag, charts: [], tracks: [], hover: -1, plotWidth: 0 };
    timeline.tracks = trackList(app);
    node.append(...timeline.tracks.map((t) => trackNode(timeline, t)), over, flag);
    new ResizeObserver(() => build(timeline)).observe(node);
    onTheme(() => build(timeline));
    app.store.on(["from", "to"], () => rescale(timeline));
    app.store.on(["blocksReady", "differenceReady"], () => later(timeline));
    app.store.on(["frame", "target", "from", "to"], () => {
        placeHead(timeline);
        showValues(timeline);
    });
    app.store.on(["labelRows"], () => drawBands(timeline));
    timeline.showHover = (f) => {
        timeline.hover = f;
        showValues(timeline);
    };
    timeline.rebuild = () => build(timeline);
    return timeline;
}

function oneFrame() {
    const text = "One frame, so there is no timeline; it has nothing to be compared with.";
    return { node: h("div.timeline.single", null, h("p", null, text)), rebuild() {} };
}

// Values that arrive while chunks are unpacked are drawn together, once things are quiet.
function later(timeline) {
    clearTimeout(timeline.timer);
    timeline.timer = setTimeout(() => {
        if (timeline.app.runs.length > 1) build(timeline);
        else for (const c of timeline.charts) c.redraw(false, true);
    }, 200);
}

// { id, kind: "overview" | "band" | "chart", name, rows(f): [[mark, text, value]] }
function trackList(app) {
    const tracks = [{ id: "overview", kind: "overview", name: "Whole clip", rows: () => [] }];
    for (const run of app.runs) {
        tracks.push({
            id: `band${run.number}`,
            kind: "band",
            run,
            name: app.runs.length > 1 ? `Reported, ${run.label}` : "Reported",
            rows: (f) => [["", "", bandWord(run, f)]],
        });
    }
    if (app.runs.length > 1) tracks.push(...compareCharts(app));
    else tracks.push(...chartTracks(app));
    return tracks;
}

const bandWord = (run, f) => (isReported(run, f) ? "box" : isHeld(run, f) ? "held" : "none");

function chartTracks(app) {
    const run = app.runs[0];
    const before = boxShare(run, "before");
    const after = boxShare(run, "after");
    const c = run.columns;
    return [
        {
            id: "active",
            kind: "chart",
            name: "Active blocks",
            rows: (f) => [
                [run.method === 0 ? "line all" : "area counted", "active", count(c.active[f])],
                ...(run.method === 0
                    ? [
                          ["area counted", "counted", count(c.counted[f])],
                          ["dash threshold", "needed", count(run.settings.MD_BlkCnt_Th)],
                      ]
                    : []),
            ],
        },
        {
            id: "distances",
            kind: "chart",
            name: "Distances",
            rows: (f) => [["line ink", "largest", String(c.largest[f])]],
        },
        {
            id: "area",
            kind: "chart",
            name: "Box area",
            rows: (f) => [
                ...(run.gate
                    ? [["dash before", "before", areaText(c.before_left[f], before[f])]]
                    : []),
                ["area reported", run.gate ? "after" : "box", areaText(c.after_left[f], after[f])],
            ],
        },
    ];
}

const areaText = (left, share) => (left < 0 ? "none" : `${short(share, share < 10 ? 1 : 0)} %`);

function compareCharts(app) {
    const [a, b] = app.runs;
    const shares = app.runs.map((run) => boxShare(run, "after"));
    return [
        {
            id: "differ",
            kind: "chart",
            name: "Blocks that differ",
            rows: (f) => {
                const d = app.difference.at(f);
                return [
                    ["line run-a", "only A", d === null ? "…" : count(d.onlyA)],
                    ["line run-b", "only B", d === null ? "…" : count(d.onlyB)],
                ];
            },
        },
        {
            id: "active",
            kind: "chart",
            name: "Active blocks",
            rows: (f) => [
                ["line run-a", "A", count(a.columns.active[f])],
                ["line run-b", "B", count(b.columns.active[f])],
                ...(a.method === 0
                    ? [["dash threshold", "needed", count(a.settings.MD_BlkCnt_Th)]]
                    : []),
            ],
        },
        {
            id: "area",
            kind: "chart",
            name: "Box area, reported",
            rows: (f) =>
                app.runs.map((run, i) => [
                    `line run-${"ab"[i]}`,
                    run.label,
                    areaText(run.columns.after_left[f], shares[i][f]),
                ]),
        },
    ];
}

function trackNode(timeline, track) {
    track.gutter = h("div.gutter", null, h("div.name", null, track.name));
    track.plot = h("div.plot");
    if (track.kind !== "chart") {
        track.canvas = h("canvas", { role: "img", "aria-label": track.name });
        track.plot.append(track.canvas);
    } else {
        track.plot.setAttribute("role", "img");
        track.plot.setAttribute("aria-label", chartLabel(timeline.app, track));
    }
    track.values = h("div.values");
    track.gutter.append(track.values);
    return h(`div.track.${track.kind}`, { data: { track: track.id } }, track.gutter, track.plot);
}

function chartLabel(app, track) {
    const s = app.runs[0].settings;
    if (track.id === "active") return `Active blocks over the frames, ${s.MD_BlkCnt_Th} needed`;
    if (track.id === "distances") return `Distances over the frames, threshold ${s.MD_HogDist_Th}`;
    return `${track.name} over the frames`;
}

const shownRange = (app) => {
    const { from, to } = app.store.state;
    const { first } = app.runs[0];
    return [first + from, first + to + 1];
};

function build(timeline) {
    const { app, node } = timeline;
    for (const c of timeline.charts) c.destroy();
    timeline.charts = [];
    const plot = timeline.tracks[0].plot;
    const width = plot.clientWidth;
    if (width < 60) return;
    timeline.plotWidth = width - kAxis;
    const bands = timeline.tracks.filter((t) => t.kind === "band").length;
    const charts = timeline.tracks.filter((t) => t.kind === "chart");
    const rest = node.clientHeight - kOverview - bands * (kBand + 1) - 6;
    const each = Math.floor((rest - 17) / charts.length);
    charts.forEach((track, i) => {
        const xAxis = i === charts.length - 1;
        const height = each + (xAxis ? 17 : 0);
        track.plot.style.height = `${height}px`;
        timeline.charts.push(
            makeChart(app, track.id, track.plot, {
                width,
                height,
                xAxis,
                range: () => shownRange(app),
            }),
        );
    });
    const left = plot.getBoundingClientRect().left - node.getBoundingClientRect().left + kAxis;
    timeline.left = left;
    timeline.over.style.left = `${left}px`;
    timeline.over.style.width = `${timeline.plotWidth}px`;
    drawBands(timeline);
    placeHead(timeline);
    showValues(timeline);
}

function rescale(timeline) {
    const [min, max] = shownRange(timeline.app);
    for (const c of timeline.charts) c.setScale("x", { min, max });
    drawBands(timeline);
}

function drawBands(timeline) {
    if (timeline.plotWidth <= 0) return;
    for (const track of timeline.tracks) {
        if (track.kind === "overview") drawOverview(timeline, track);
        else if (track.kind === "band") drawBand(timeline, track);
    }
}

function drawOverview(timeline, track) {
    const { app } = timeline;
    const width = timeline.plotWidth;
    const ctx = canvasContext(track.canvas, width, kOverview);
    const values = app.runs.at(-1).columns.active;
    const peaks = silhouette(values, 0, app.frames - 1, Math.round(width));
    const most = peaks.reduce((m, v) => Math.max(m, v), 1);
    ctx.fillStyle = color("all");
    peaks.forEach((v, x) => {
        const hgt = v === 0 ? 0 : Math.max(1, (v / most) * (kOverview - 6));
        ctx.fillRect(x, kOverview - hgt, 1, hgt);
    });
    const { from, to } = app.store.state;
    if (from === 0 && to === app.frames - 1) return;
    const x0 = (from / app.frames) * width;
    const x1 = ((to + 1) / app.frames) * width;
    ctx.fillStyle = color("ground");
    ctx.globalAlpha = 0.7;
    ctx.fillRect(0, 0, x0, kOverview);
    ctx.fillRect(x1, 0, width - x1, kOverview);
    ctx.globalAlpha = 1;
    ctx.strokeStyle = color("accent");
    ctx.lineWidth = 1.5;
    ctx.strokeRect(x0 + 0.75, 0.75, Math.max(3, x1 - x0 - 1.5), kOverview - 1.5);
}

function drawBand(timeline, track) {
    const { app } = timeline;
    const { run } = track;
    const width = timeline.plotWidth;
    const ctx = canvasContext(track.canvas, width, kBand);
    const at = (f) => xOf(timeline, f);
    const { from, to } = app.store.state;
    ctx.fillStyle = color("empty");
    ctx.fillRect(0, 3, width, kBand - 6);
    ctx.fillStyle = color("held");
    const held = runsOf(run.frames, (f) => (isHeld(run, f) ? 1 : 0)).filter((r) => r.kind === 1);
    for (const { first, last } of held) {
        ctx.fillRect(at(first), kBand / 2 - 1.5, Math.max(1, at(last + 1) - at(first)), 3);
    }
    const ink =
        app.runs.length > 1 ? color(run.number === 0 ? "run-a" : "run-b") : color("reported");
    ctx.font = "600 10px system-ui, sans-serif";
    ctx.textBaseline = "middle";
    run.events.forEach(([first, last], i) => {
        if (last < from || first > to) return;
        const x = Math.max(0, at(first));
        const w = Math.max(1, at(last + 1) - x - 0.5);
        ctx.fillStyle = ink;
        ctx.fillRect(x, 2, w, kBand - 4);
        const name = String(i + 1);
        if (ctx.measureText(name).width + 8 > w) return;
        ctx.fillStyle = color("panel");
        ctx.fillText(name, x + 4, kBand / 2 + 0.5);
    });
    app.labels?.drawOnBand(ctx, at, kBand);
}

// Css pixel of the left edge of frame f within the plots.
export function xOf(timeline, f) {
    const { from, to } = timeline.app.store.state;
    return ((f - from) / (to - from + 1)) * timeline.plotWidth;
}

export function frameAt(timeline, x) {
    const { from, to } = timeline.app.store.state;
    const f = from + Math.floor((x / timeline.plotWidth) * (to - from + 1));
    return Math.min(to, Math.max(from, f));
}

function placeHead(timeline) {
    const { app, over, flag } = timeline;
    const { frame, target, from, to, playing } = app.store.state;
    const at = playing ? frame : target;
    const head = over.querySelector(".playhead");
    const hidden = at < from || at > to;
    head.hidden = hidden;
    head.style.transform = `translateX(${xOf(timeline, at + 0.5)}px)`;
    const whole = ((at + 0.5) / app.frames) * timeline.plotWidth;
    flag.textContent = String(app.runs[0].first + at);
    flag.style.left = `${timeline.left ?? 0}px`;
    const half = flag.offsetWidth / 2;
    const x = Math.min(timeline.plotWidth - half, Math.max(half, whole)) - half;
    flag.style.transform = `translateX(${x}px)`;
}

function showValues(timeline) {
    const { app } = timeline;
    const f = timeline.hover >= 0 ? timeline.hover : app.store.state.frame;
    for (const track of timeline.tracks) {
        fill(
            track.values,
            track
                .rows(f)
                .map(([mark, name, value]) =>
                    h(
                        "div.row",
                        null,
                        mark === "" ? null : h(`span.${mark.split(" ").join(".")}`),
                        name === "" ? null : h("span.what", null, name),
                        h("b", null, value),
                    ),
                ),
        );
    }
}
