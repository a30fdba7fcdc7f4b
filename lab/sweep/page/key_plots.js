// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// One small plot a key: what each of its values does to the score that is asked for. The line is the
// median over all points with that value, the band holds the middle half, the dots are the best.

import uPlot from "uplot";
import { axisNumber } from "../../page/format.js";
import { h } from "../../page/dom.js";
import { color, onTheme } from "../../page/theme.js";
import { hasScore, keyEffect } from "./data.js";
import { scoreText, scoreTitle } from "./words.js";

const kWidth = 210;
const kHeight = 132;

export function createKeyPlots(app) {
    const { sweep, store } = app;
    const holder = h("div.keys");
    const select = h(
        "select.field",
        { onchange: (e) => store.set({ score: e.target.value }) },
        sweep.scores
            .filter((s) => hasScore(sweep, -1, s.name))
            .map((s) =>
                h(
                    "option",
                    { value: s.name, selected: s.name === store.state.score },
                    scoreTitle(s.name),
                ),
            ),
    );
    const node = h(
        "section.effects",
        { "aria-label": "What each key does" },
        h("div.bar", null, h("h2", null, "What each key does to"), select),
        h(
            "p.quiet.small",
            null,
            "Line: median over all points with that value. Band: the middle half. Dots: the best.",
        ),
        holder,
    );
    let plots = [];
    const draw = () => {
        for (const plot of plots) plot.destroy();
        plots = [];
        holder.replaceChildren();
        if (sweep.varied.length === 0)
            holder.append(h("p", null, "No key takes more than one value."));
        for (const k of sweep.varied) plots.push(addPlot(app, k, holder));
    };
    store.on(["clip", "score"], draw);
    store.on(["point"], () => plots.forEach((p) => p.redraw(false)));
    onTheme(draw);
    return { node, draw };
}

function addPlot(app, k, holder) {
    const { sweep, store } = app;
    const { clip, score } = store.state;
    const effect = keyEffect(sweep, k, clip, score);
    const higher = sweep.scores.find((s) => s.name === score).better !== "lower";
    const best = effect.map((e) => (higher ? e.high : e.low));
    const texts = effect
        .filter((e) => e.n > 0)
        .map(
            (e) =>
                `${e.value}: median ${scoreText(e.median)}, ${scoreText(e.low)} to ${scoreText(e.high)}`,
        );
    const figure = h(
        "figure",
        { title: texts.join("\n") },
        h("figcaption.mono", null, sweep.keys[k].name),
    );
    holder.append(figure);
    const plot = new uPlot(
        options(app, k, effect),
        [
            effect.map((_, i) => i),
            effect.map((e) => e.q3),
            effect.map((e) => e.q1),
            effect.map((e) => e.median),
            best,
        ],
        figure,
    );
    plot.root.setAttribute("role", "img");
    plot.root.setAttribute("aria-label", `${sweep.keys[k].name}: ${texts.join("; ")}`);
    return plot;
}

function options(app, k, effect) {
    const { sweep, store } = app;
    const axis = {
        stroke: color("ink2"),
        font: "10px system-ui, sans-serif",
        ticks: { show: false },
        grid: { stroke: color("grid"), width: 1 },
    };
    const edge = { stroke: "transparent", width: 0, points: { show: false } };
    return {
        width: kWidth,
        height: kHeight,
        cursor: { show: false },
        legend: { show: false },
        select: { show: false },
        scales: { x: { time: false, range: () => [-0.4, effect.length - 0.6] } },
        bands: [{ series: [1, 2], fill: `rgba(${color("density")}, 0.22)` }],
        axes: [
            {
                ...axis,
                size: 18,
                gap: 2,
                splits: () => effect.map((_, i) => i),
                filter: (_u, splits) => thinned(splits, 7),
                values: (_u, splits) =>
                    splits.map((i) => (i === null ? "" : String(effect[i].value))),
            },
            { ...axis, size: 34, gap: 3, values: (_u, splits) => splits.map(axisNumber) },
        ],
        series: [
            {},
            edge,
            edge,
            {
                stroke: color("counted"),
                width: 1.5,
                points: { show: true, size: 4, fill: color("counted") },
            },
            {
                stroke: color("reported"),
                paths: () => null,
                points: { show: true, size: 5, fill: color("panel"), width: 1.5 },
            },
        ],
        hooks: { draw: [(u) => markChosen(u, sweep, store.state.point, k)] },
    };
}

// Every n-th of the splits, so that at most `most` are named.
const thinned = (splits, most) => {
    const every = Math.ceil(splits.length / most);
    return splits.map((s, i) => (i % every === 0 ? s : null));
};

// A line at the value that the chosen point has.
function markChosen(u, sweep, point, k) {
    const i = sweep.keys[k].values.indexOf(sweep.points[point]?.values[k]);
    if (i < 0) return;
    const { ctx } = u;
    const x = Math.round(u.valToPos(i, "x", true));
    ctx.save();
    ctx.strokeStyle = color("threshold");
    ctx.lineWidth = 2 * (window.devicePixelRatio || 1);
    ctx.beginPath();
    ctx.moveTo(x, u.bbox.top);
    ctx.lineTo(x, u.bbox.top + u.bbox.height);
    ctx.stroke();
    ctx.restore();
}
