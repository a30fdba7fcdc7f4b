// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The plane: every point at two of its scores, the best front as a line. uPlot draws axes, dots and
// line; what is under the pointer is found here, by distance on the screen.

import uPlot from "uplot";
import { axisNumber, plural } from "../../page/format.js";
import { fill, h } from "../../page/dom.js";
import { color, onTheme } from "../../page/theme.js";
import { front, hasScore, pilesOf, scoreOf } from "./data.js";
import { drawCounts, pickOf, showPile } from "./piles.js";
import { scoreText, scoreTitle } from "./words.js";

const kReach = 14; // css pixels within which a dot answers
const kHeight = 360;

export function createPlane(app) {
    const { store } = app;
    const holder = h("div.plot");
    const note = h("p.quiet.small");
    const tip = h("div.tip", { hidden: true });
    const list = h("div.pile", { hidden: true });
    const node = h(
        "section.plane",
        { "aria-label": "All points in the plane of two scores" },
        h("div.bar", null, h("h2", null, "Plane"), picks(app)),
        holder,
        note,
        list,
        tip,
    );
    let plot = null;
    let places = [];
    let piles = [];

    const draw = () => {
        const { clip, x, y } = store.state;
        plot?.destroy();
        plot = null;
        holder.replaceChildren();
        places = placesOf(app);
        piles = pilesOf(places);
        showPile(app, list, piles);
        note.textContent = sentence(app, places);
        if (places.length === 0) return;
        const width = Math.max(280, holder.clientWidth);
        plot = new uPlot(options(app, width, places, piles), series(app, places), holder);
        listen(app, plot, () => piles, tip);
        plot.root.setAttribute("role", "img");
        plot.root.setAttribute(
            "aria-label",
            `${scoreTitle(y)} against ${scoreTitle(x)}, ${clip < 0 ? "all clips" : "one clip"}`,
        );
    };
    store.on(["clip", "x", "y", "accepted", "width"], draw);
    store.on(["point"], () => {
        plot?.setData(series(app, places), false);
        plot?.redraw();
        showPile(app, list, piles);
    });
    onTheme(draw);
    return { node, draw };
}

// The selects of the two axes.
function picks(app) {
    const { sweep, store } = app;
    return ["x", "y"].map((axis) =>
        h(
            "label.small",
            null,
            axis === "x" ? "across " : "up ",
            h(
                "select.field",
                { onchange: (e) => store.set({ [axis]: e.target.value }) },
                sweep.scores
                    .filter((s) => hasScore(sweep, -1, s.name))
                    .map((s) =>
                        h(
                            "option",
                            { value: s.name, selected: s.name === store.state[axis] },
                            scoreTitle(s.name),
                        ),
                    ),
            ),
        ),
    );
}

// The points that are drawn, ascending across.
function placesOf(app) {
    const { sweep, store } = app;
    const { clip, x, y, accepted } = store.state;
    const best = front(sweep, clip, x, y);
    return sweep.points
        .map((p) => ({
            index: p.index,
            x: scoreOf(sweep, p, clip, x),
            y: scoreOf(sweep, p, clip, y),
            best: best.has(p.index),
            kept: accepted.has(p.index),
        }))
        .filter((p) => p.x !== null && p.y !== null)
        .sort((a, b) => a.x - b.x || a.y - b.y);
}

function sentence(app, places) {
    const { sweep, store } = app;
    if (places.length === 0) {
        const labelled = sweep.clips.some((c) => c.labels !== null);
        return labelled
            ? "No point has both scores here."
            : "No clip of this plan has labels, so there are no misses and no false frames. " +
                  "Choose other scores above.";
    }
    const best = places.filter((p) => p.best).length;
    const hidden = sweep.points.length - places.length;
    const { x, y } = store.state;
    const way = (name) => sweep.scores.find((s) => s.name === name).better;
    const rest = hidden === 0 ? "" : ` Without such a score: ${plural(hidden, "point")}.`;
    if (way(x) === "neither" || way(y) === "neither") return rest.trim();
    return `Line: ${plural(best, "point")} that no other beats in both.${rest}`;
}

// x, then y of: points left out by the filter, points kept, the front, the chosen one.
function series(app, places) {
    const chosen = app.store.state.point;
    const pick = (test) => places.map((p) => (test(p) ? p.y : null));
    return [
        places.map((p) => p.x),
        pick((p) => !p.kept),
        pick((p) => p.kept),
        pick((p) => p.best),
        pick((p) => p.index === chosen),
    ];
}

const dots = (stroke, inside, size, width = 1) => ({
    stroke,
    width,
    paths: () => null,
    points: { show: true, size, fill: inside, stroke, width },
});

function options(app, width, places, piles) {
    const { x, y } = app.store.state;
    const span = (values) => {
        const [low, high] = [Math.min(...values), Math.max(...values)];
        if (low === high) return [low - 0.06 * (Math.abs(low) || 1), low + (Math.abs(low) || 1)];
        const margin = (high - low) * 0.06;
        return [low - margin, high + margin];
    };
    const [rangeX, rangeY] = [span(places.map((p) => p.x)), span(places.map((p) => p.y))];
    const axis = {
        stroke: color("ink2"),
        font: "10px system-ui, sans-serif",
        labelFont: "11px system-ui, sans-serif",
        ticks: { show: false },
        grid: { stroke: color("grid"), width: 1 },
        values: (_u, splits) => splits.map(axisNumber),
    };
    return {
        width,
        height: kHeight,
        cursor: { show: false },
        legend: { show: false },
        select: { show: false },
        hooks: { draw: [(u) => drawCounts(u, piles)] },
        scales: { x: { time: false, range: () => rangeX }, y: { range: () => rangeY } },
        axes: [
            { ...axis, label: scoreTitle(x), labelSize: 16, size: 22 },
            { ...axis, label: scoreTitle(y), labelSize: 16, size: 44 },
        ],
        series: [
            {},
            dots(color("empty"), color("panel"), 5),
            dots(color("all"), color("all"), 5),
            {
                stroke: color("accent"),
                width: 1.5,
                spanGaps: true,
                paths: uPlot.paths.linear(),
                points: { show: true, size: 7, fill: color("accent"), stroke: color("accent") },
            },
            dots(color("threshold"), "transparent", 14, 2.5),
        ],
    };
}

// The pile nearest to the pointer, or null.
function nearest(u, piles, event) {
    const box = u.over.getBoundingClientRect();
    const [left, top] = [event.clientX - box.left, event.clientY - box.top];
    let found = null;
    let least = kReach ** 2;
    for (const pile of piles) {
        const dx = u.valToPos(pile.x, "x") - left;
        const dy = u.valToPos(pile.y, "y") - top;
        const d = dx * dx + dy * dy;
        if (d < least) [found, least] = [pile, d];
    }
    return found;
}

function listen(app, u, pilesNow, tip) {
    const { sweep, store } = app;
    u.over.addEventListener("mousemove", (e) => {
        const pile = nearest(u, pilesNow(), e);
        tip.hidden = pile === null;
        u.over.style.cursor = pile === null ? "" : "pointer";
        if (pile === null) return;
        const { x, y } = store.state;
        const point = sweep.points[pickOf(pile, store.state.point)];
        const others = pile.members.length - 1;
        fill(
            tip,
            h(
                "b",
                null,
                `${scoreTitle(x)} ${scoreText(pile.x)}, ${scoreTitle(y)} ${scoreText(pile.y)}`,
            ),
            h("div.mono", null, point.options || "the settings as they are"),
            others > 0 &&
                h("div", null, `and ${plural(others, "other point")}: click for the list`),
        );
        const box = tip.parentElement.getBoundingClientRect();
        const left = Math.min(e.clientX - box.left + 14, box.width - tip.offsetWidth - 8);
        tip.style.left = `${Math.max(4, left)}px`;
        tip.style.top = `${e.clientY - box.top + 16}px`;
    });
    u.over.addEventListener("mouseleave", () => (tip.hidden = true));
    u.over.addEventListener("click", (e) => {
        const pile = nearest(u, pilesNow(), e);
        if (pile !== null) store.set({ point: pickOf(pile, store.state.point) });
    });
}
