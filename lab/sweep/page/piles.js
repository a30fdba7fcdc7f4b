// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Points at the same place of the plane: a number at their dot, and a list to choose from.

import { fill, h } from "../../page/dom.js";
import { count } from "../../page/format.js";
import { color } from "../../page/theme.js";

const kRing = 5.5; // css pixels around a dot that is several points
const kRoom = [26, 11]; // css pixels that a number takes
const kListed = 200;

// Rings and numbers on a drawn plot. Where numbers would overlap, the larger ones are written.
export function drawCounts(u, piles) {
    const { ctx } = u;
    const scale = window.devicePixelRatio;
    const written = [];
    const several = piles
        .filter((pile) => pile.members.length > 1)
        .sort((a, b) => b.members.length - a.members.length);
    ctx.save();
    ctx.strokeStyle = color("ink3");
    ctx.fillStyle = color("ink2");
    ctx.lineWidth = scale;
    ctx.font = `${10 * scale}px system-ui, sans-serif`;
    ctx.textAlign = "left";
    ctx.textBaseline = "middle";
    for (const pile of several) {
        const [x, y] = [u.valToPos(pile.x, "x", true), u.valToPos(pile.y, "y", true)];
        ctx.beginPath();
        ctx.arc(x, y, kRing * scale, 0, 2 * Math.PI);
        ctx.stroke();
        const near = ([p, q]) =>
            Math.abs(p - x) < kRoom[0] * scale && Math.abs(q - y) < kRoom[1] * scale;
        if (written.some(near)) continue;
        written.push([x, y]);
        const text = count(pile.members.length);
        const width = ctx.measureText(text).width + (kRing + 3) * scale;
        const fits = x + width < u.bbox.left + u.bbox.width;
        ctx.fillText(text, fits ? x + (kRing + 3) * scale : x - width, y);
    }
    ctx.restore();
}

// The point that a click on a pile chooses: the chosen one stays, else the first that the filter
// keeps.
export function pickOf({ members }, chosen) {
    const here = members.find((m) => m.index === chosen);
    return (here ?? members.find((m) => m.kept) ?? members[0]).index;
}

// Lists the points of the chosen point's place under the plot, if there are several.
export function showPile(app, node, piles) {
    const { sweep, store } = app;
    const { point: chosen } = store.state;
    const pile = piles.find(({ members }) => members.some((m) => m.index === chosen));
    node.hidden = pile === undefined || pile.members.length < 2;
    if (node.hidden) return;
    const focused = node.contains(document.activeElement);
    const scrolled = node.querySelector("ul")?.scrollTop ?? 0;
    const rest = pile.members.length - kListed;
    fill(
        node,
        h("p.small", null, `${count(pile.members.length)} points are at this place:`),
        h(
            "ul",
            null,
            pile.members
                .slice(0, kListed)
                .map(({ index, kept }) => h("li", null, choice(sweep.points[index], kept))),
        ),
        rest > 0 && h("p.small.quiet", null, `and ${count(rest)} more.`),
    );
    node.querySelector("ul").scrollTop = scrolled;
    if (focused) node.querySelector('[aria-pressed="true"]')?.focus({ preventScroll: true });

    function choice(point, kept) {
        return h(
            kept ? "button.link.mono" : "button.link.mono.left-out",
            {
                type: "button",
                "aria-pressed": String(point.index === chosen),
                title: kept ? null : "Left out by the filter",
                onclick: () => store.set({ point: point.index }),
            },
            settingsOf(sweep, point),
        );
    }
}

// Only what varies in the plan: the rest is the same in all lines.
function settingsOf(sweep, point) {
    const read = sweep.varied.filter((k) => point.values[k] !== null);
    const words = read.map((k) => `${sweep.keys[k].name}=${point.values[k]}`);
    return words.join(" ") || "the settings as they are";
}
