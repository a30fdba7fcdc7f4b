// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The chosen point: what it is, its scores on each clip, strips of hits and misses, and the lines to
// copy that run it again.

import { fill, h } from "../../page/dom.js";
import { onTheme } from "../../page/theme.js";
import { hasScore } from "./data.js";
import { stripSummary } from "./strip_pixels.js";
import { drawStrip } from "./strips.js";
import { kStrip, pointSentence, reportCommand, scoreText, scoreTitle } from "./words.js";

const kScores = ["recall", "false_per_1000", "iou", "motion_frames"];

export function createDetail(app) {
    const { sweep, store } = app;
    const node = h("section.detail", { "aria-label": "The chosen point", "aria-live": "polite" });
    const draw = () => {
        const point = sweep.points[store.state.point];
        const scores = kScores.filter((name) => hasScore(sweep, -1, name));
        fill(
            node,
            h("h2", null, "Point ", h("span.mono", null, point.id)),
            h("p.sentence", null, pointSentence(sweep, point)),
            copyLine("Settings", point.options || "the settings as they are", point.options),
            values(sweep, point),
            h("h3", null, "Clips"),
            legend(sweep),
            sweep.clips.map((_, c) => clipBlock(app, point, c, scores)),
        );
        for (const canvas of node.querySelectorAll("canvas.strip")) {
            drawStrip(canvas, point.runs[Number(canvas.dataset.clip)].strip);
        }
    };
    store.on(["point", "clip", "width"], draw);
    onTheme(draw);
    return { node, draw };
}

function values(sweep, point) {
    const changed = sweep.keys.map((key, k) => [key, point.values[k]]);
    return h(
        "table.values",
        null,
        h("tr", null, h("th", null, "Key"), h("th.n", null, "Here"), h("th.n", null, "Start")),
        changed.map(([key, value]) =>
            h(
                value === null || value === key.start ? "tr.quiet" : "tr",
                null,
                h("td.mono", { title: key.range }, key.name),
                h("td.n", null, value === null ? "not read" : value),
                h("td.n", null, key.start),
            ),
        ),
    );
}

function legend(sweep) {
    const letters = sweep.clips.some((c) => c.labels !== null) ? "hmf.i" : "r-";
    return h(
        "p.legend.small",
        null,
        [...letters].map((letter) =>
            h(
                "span",
                { title: kStrip[letter][1] },
                h(`i.swatch.${swatch(letter)}`),
                ` ${kStrip[letter][0]} `,
            ),
        ),
    );
}

const swatch = (letter) => `strip-${kStrip[letter][0]}`;

function clipBlock(app, point, c, scores) {
    const { sweep, store } = app;
    const run = point.runs[c];
    const title = h(
        "button.link",
        { type: "button", onclick: () => store.set({ clip: store.state.clip === c ? -1 : c }) },
        sweep.clips[c].name,
    );
    if (run.status !== "done") {
        return h("div.clip-run", null, title, h("p.small", null, `${run.status}: ${run.message}`));
    }
    const texts = scores.map((name) => {
        const i = sweep.scores.findIndex((s) => s.name === name);
        return run.scores[i] === null || run.scores[i] === undefined
            ? null
            : h("span", null, `${scoreTitle(name)} `, h("b", null, scoreText(run.scores[i])));
    });
    return h(
        store.state.clip === c ? "div.clip-run.chosen" : "div.clip-run",
        null,
        h("div.line", null, title, h("span.numbers.small", null, texts)),
        h("canvas.strip", {
            role: "img",
            "aria-label": stripSummary(run.strip),
            title: stripSummary(run.strip),
            data: { clip: c },
        }),
        copyLine("Why?", reportCommand(sweep, point, c)),
    );
}

// A line in fixed type with a button that copies it; `text` is what is copied, if that differs.
function copyLine(label, shown, text = shown) {
    const button = h("button.button", { type: "button" }, "Copy");
    button.addEventListener("click", async () => {
        try {
            await navigator.clipboard.writeText(text);
            button.textContent = "Copied";
        } catch {
            button.textContent = "Not allowed";
        }
        setTimeout(() => (button.textContent = "Copy"), 1200);
    });
    return h(
        "div.copy",
        null,
        h("span.small.quiet", null, label),
        h("code.mono", null, shown),
        button,
    );
}
