// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The three charts of the timeline, drawn by uPlot: stepped lines on one range. Pointer, cursor and
// playhead are the timeline's, so the charts only draw.

import uPlot from "uplot";
import { axisNumber } from "../../page/format.js";
import { color } from "../../page/theme.js";
import { boxShare, closed, densityRows, thresholdSeries } from "./tracks.js";

export const kAxis = 40; // css pixels left of the plots, for the numbers
const kXAxis = 17;
const stepped = uPlot.paths.stepped({ align: 1 });

const line = (label, stroke, more = {}) => ({
    label,
    stroke,
    width: 1.25,
    paths: stepped,
    points: { show: false },
    ...more,
});

const withAlpha = (hex, alpha) => {
    const [r, g, b] = [1, 3, 5].map((i) => Number.parseInt(hex.slice(i, i + 2), 16));
    return `rgba(${r},${g},${b},${alpha})`;
};

function options({ width, height, xAxis, range, yRange, ySplits, yValues, log, series, hooks }) {
    const text = color("ink2");
    const axis = { stroke: text, font: "10px system-ui, sans-serif", ticks: { show: false } };
    return {
        width,
        height,
        padding: [6, 0, xAxis ? 0 : 4, 0],
        pxAlign: 1,
        cursor: { show: false },
        legend: { show: false },
        select: { show: false },
        scales: {
            x: { time: false, range },
            y: log ? { distr: 3, log: 2, range: yRange } : { range: yRange },
        },
        axes: [
            {
                ...axis,
                show: xAxis,
                size: kXAxis,
                gap: 1,
                space: 70,
                grid: { stroke: color("grid"), width: 1 },
                incrs: [1, 2, 5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000],
            },
            {
                ...axis,
                size: kAxis,
                gap: 4,
                space: 22,
                grid: { stroke: color("grid"), width: 1 },
                splits: ySplits,
                filter: (_u, splits) => splits,
                values: (_u, splits) => splits.map(yValues ?? axisNumber),
            },
        ],
        series: [{}, ...series],
        hooks: hooks ?? {},
    };
}

// Two or three round numbers from 0 to a largest value.
function roundSplits(max) {
    if (!(max > 0)) return [0, 1];
    const raw = max / 2;
    const power = 10 ** Math.floor(Math.log10(raw));
    const step = [1, 2, 2.5, 5, 10].map((m) => m * power).findLast((s) => s <= raw) ?? raw;
    const splits = [];
    for (let v = 0; v <= max * 1.02; v += step) splits.push(v);
    return splits.length > 4 ? splits.filter((_, i) => i % 2 === 0) : splits;
}

const zeroTo = (max) => ({
    yRange: () => [0, Math.max(max * 1.04, 1)],
    ySplits: () => roundSplits(Math.max(max, 1)),
});

const maxOf = (...lists) => lists.reduce((m, l) => l.reduce((a, v) => Math.max(a, v), m), 0);

// A horizontal threshold line, across the whole chart.
const level = (value, n, label) => ({
    data: new Array(n).fill(value),
    series: line(label, color("threshold"), { dash: [4, 3], width: 1 }),
});

function activeChart(app, base) {
    const n = base.x.length;
    const lists = [];
    if (app.runs.length > 1) {
        app.runs.forEach((run, i) => {
            lists.push({
                data: closed(run.columns.active),
                series: line(run.label, color(i === 0 ? "run-a" : "run-b")),
            });
        });
    } else {
        const run = app.runs[0];
        const counted = run.method === 0;
        lists.push({
            data: closed(run.columns.active),
            series: counted
                ? line("active", color("all"))
                : line("active", color("counted"), { fill: withAlpha(color("counted"), 0.16) }),
        });
        if (counted) {
            lists.push({
                data: closed(run.columns.counted),
                series: line("counted", color("counted"), {
                    fill: withAlpha(color("counted"), 0.16),
                }),
            });
        }
    }
    const max = maxOf(...lists.map((l) => l.data));
    for (const run of app.runs) {
        if (
            run.method === 0 &&
            !lists.some((l) => l.data[0] === run.settings.MD_BlkCnt_Th && l.series.dash)
        ) {
            lists.push(level(run.settings.MD_BlkCnt_Th, n, "needed"));
        }
    }
    return { lists, ...zeroTo(Math.max(max, needed(app))) };
}

// The number of blocks that method 0 needs, shown only while it is not far above all there is.
const needed = (app) => {
    const run = app.runs[0];
    const most = run.most_active[1];
    const th = run.method === 0 ? run.settings.MD_BlkCnt_Th : 0;
    return th <= most * 3 + 20 ? th : 0;
};

function areaChart(app) {
    const lists = [];
    if (app.runs.length > 1) {
        app.runs.forEach((run, i) => {
            lists.push({
                data: closed(boxShare(run, "after")),
                series: line(run.label, color(i === 0 ? "run-a" : "run-b")),
            });
        });
    } else {
        const run = app.runs[0];
        if (run.gate) {
            lists.push({
                data: closed(boxShare(run, "before")),
                series: line("before gate", color("before"), { dash: [3, 3], width: 1 }),
            });
        }
        lists.push({
            data: closed(boxShare(run, "after")),
            series: line("box", color("reported"), { fill: withAlpha(color("reported"), 0.16) }),
        });
    }
    return { lists, ...zeroTo(maxOf(...lists.map((l) => l.data))) };
}

function differChart(app) {
    const d = app.difference.series();
    const lists = [
        { data: closed(d.onlyA), series: line("only A", color("run-a")) },
        { data: closed(d.onlyB), series: line("only B", color("run-b")) },
    ];
    return { lists, ...zeroTo(maxOf(d.onlyA, d.onlyB)) };
}

// The density of distances as grey cells on the log axis, behind the lines.
function drawDensity(u, run) {
    const { ctx } = u;
    const rgb = color("density");
    const rows = densityRows(run);
    const [from, to] = [u.scales.x.min, u.scales.x.max];
    const first = Math.max(0, Math.floor(from - run.first));
    const last = Math.min(run.frames - 1, Math.ceil(to - run.first) - 1);
    const left = u.bbox.left;
    const columns = Math.max(1, Math.min(u.bbox.width, last - first + 1));
    const blocks = Math.log2(1 + run.grid.blocks / 12);
    ctx.save();
    for (const { low, high, counts } of rows) {
        const top = u.valToPos(Math.min(high, 255.9), "y", true);
        const bottom = u.valToPos(low, "y", true);
        for (let x = 0; x < columns; ++x) {
            const a = first + Math.floor((x * (last - first + 1)) / columns);
            const b = Math.max(a + 1, first + Math.floor(((x + 1) * (last - first + 1)) / columns));
            let most = 0;
            for (let f = a; f < b; ++f) most = Math.max(most, counts[f]);
            if (most === 0) continue;
            const alpha = Math.min(0.85, 0.1 + (0.75 * Math.log2(1 + most)) / blocks);
            const x0 = u.valToPos(run.first + a, "x", true);
            const x1 = u.valToPos(run.first + b, "x", true);
            ctx.fillStyle = `rgba(${rgb},${alpha.toFixed(2)})`;
            ctx.fillRect(Math.max(left, x0), top, x1 - Math.max(left, x0), bottom - top);
        }
    }
    drawMissing(u, run, first, last);
    ctx.restore();
}

// Frames without block values: a hatched gap.
function drawMissing(u, run, first, last) {
    const { ctx } = u;
    ctx.strokeStyle = color("line");
    ctx.lineWidth = 2;
    ctx.beginPath();
    for (let f = first; f <= last; ++f) {
        if (run.hasBlocks(f)) continue;
        const x0 = u.valToPos(run.first + f, "x", true);
        const x1 = u.valToPos(run.first + f + 1, "x", true);
        for (let y = u.bbox.top; y < u.bbox.top + u.bbox.height; y += 8) {
            ctx.moveTo(x0, y + 6);
            ctx.lineTo(Math.max(x1, x0 + 1), y);
        }
    }
    ctx.stroke();
}

function distanceChart(app) {
    const run = app.runs[0];
    const t = thresholdSeries(run);
    const atLeast1 = (values) => closed(values.map((v) => Math.max(1, v)));
    return {
        lists: [
            {
                data: atLeast1(run.columns.largest),
                series: line("largest", color("ink"), { width: 1 }),
            },
            {
                data: atLeast1(t.high),
                series: line("highly active", color("threshold"), {
                    dash: [1.5, 2.5],
                    width: 1.25,
                }),
            },
            {
                data: atLeast1(t.th),
                series: line("threshold", color("threshold"), { width: 1.25 }),
            },
        ],
        log: true,
        yRange: () => [1, 256],
        ySplits: () => [1, 16, 255],
        hooks: { drawAxes: [(u) => drawDensity(u, run)] },
    };
}

const kCharts = {
    active: activeChart,
    distances: distanceChart,
    area: areaChart,
    differ: differChart,
};

// A chart of `id` in `parent`. `range` gives the shown range of frame numbers.
export function makeChart(app, id, parent, { width, height, xAxis, range }) {
    const { first } = app.runs[0];
    const x = Array.from({ length: app.frames + 1 }, (_, f) => first + f);
    const spec = kCharts[id](app, { x });
    const plot = new uPlot(
        options({
            width,
            height,
            xAxis,
            range,
            yRange: spec.yRange,
            ySplits: spec.ySplits,
            log: spec.log,
            series: spec.lists.map((l) => l.series),
            hooks: spec.hooks,
        }),
        [x, ...spec.lists.map((l) => l.data)],
        parent,
    );
    return plot;
}
