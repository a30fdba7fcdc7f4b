// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Two runs: the first difference, frames reported in one only, boxes that differ, where most blocks
// differ.

import { fill, h } from "../../page/dom.js";
import { count, percent, plural, range } from "../../page/format.js";
import { mostDiffering } from "./compare.js";
import { inspect } from "./inspect.js";
import { kOutcomes } from "./outcomes.js";
import { sentenceBox } from "./panel_block.js";

export function createDifferencePanel(app) {
    const node = h("div.panel.difference");
    const update = () => show(app, node);
    app.store.on(["differenceReady"], update);
    app.store.on(["frame"], () => markCurrent(app, node));
    update();
    return node;
}

function show(app, node) {
    const d = app.difference;
    if (!d.done) {
        fill(node, h("p.quiet", null, "The two runs are being compared."));
        return;
    }
    const { first } = app.head.comparison;
    if (first === null) {
        fill(
            node,
            h(
                "p",
                null,
                app.runs.every((run) => run.has_blocks === "all")
                    ? "A and B agree in every block of every frame, and in every box."
                    : "A and B agree in every box, and in all block values that this file holds.",
            ),
        );
        return;
    }
    fill(
        node,
        firstSection(app, first),
        reported(app, "a", d.boxes.onlyA),
        reported(app, "b", d.boxes.onlyB),
        boxes(d.boxes),
        most(app, d),
    );
    markCurrent(app, node);
}

const kStages = {
    luma: "in the luma",
    vectors: "in the vectors",
    distances: "in the distances",
    decision: "in the decision",
    box: "in the box",
    gate: "behind the gate",
};

function firstSection(app, { frame: f, block, stage }) {
    const a = app.runs[0];
    const place = block < 0 ? "" : `, block ${block % a.grid.w}, ${Math.floor(block / a.grid.w)}`;
    const go = () => {
        app.go(f);
        if (block >= 0) app.store.set({ block });
    };
    const sentences =
        block < 0
            ? []
            : app.runs.map((run) => {
                  const r = inspect(run, f, block);
                  return r === null ? null : sentenceBox(app, r, run.label);
              });
    return h(
        "section",
        null,
        h("h3", null, "First difference"),
        h(
            "p",
            null,
            h("button.link", { type: "button", onclick: go }, `Frame ${a.first + f}`),
            `${place}: ${kStages[stage]}.`,
        ),
        sentences,
        stage === "decision"
            ? h(
                  "p.quiet",
                  null,
                  "All distances of that frame are equal. Later differences may follow from it: a block remembers its past.",
              )
            : null,
    );
}

function reported(app, which, runs) {
    const label = which.toUpperCase();
    const frames = runs.reduce((sum, r) => sum + r.last - r.first + 1, 0);
    const first = app.runs[0].first;
    return h(
        "section",
        null,
        h(
            "h3",
            null,
            h(`span.run.${which}`, null, label),
            `Reported only in ${label} `,
            h("b", null, plural(frames, "frame")),
        ),
        frames === 0
            ? h("p.quiet", null, "none")
            : h(
                  "div.chips",
                  null,
                  runs.map((r) =>
                      h(
                          "button.button",
                          {
                              type: "button",
                              onclick: () => app.go(r.first),
                              data: { first: r.first, last: r.last },
                          },
                          range(first + r.first, first + r.last),
                      ),
                  ),
              ),
    );
}

function boxes({ differ, median, least }) {
    return h(
        "section",
        null,
        h("h3", null, "Reported in both, boxes differ ", h("b", null, plural(differ, "frame"))),
        differ === 0
            ? null
            : h(
                  "p.quiet",
                  null,
                  `Overlap: median ${percent(median, 1)}, smallest ${percent(least, 1)} (shared area over joint area).`,
              ),
    );
}

function most(app, d) {
    const rows = mostDiffering(d.known());
    const first = app.runs[0].first;
    if (rows.length === 0) return null;
    return h(
        "section",
        null,
        h("h3", null, "Most blocks differ"),
        h(
            "table",
            null,
            h(
                "thead",
                null,
                h(
                    "tr",
                    null,
                    h("th", null, "Frame"),
                    h("th.n", null, "only A"),
                    h("th.n", null, "only B"),
                    h("th", null, "Why, in B"),
                ),
            ),
            h(
                "tbody",
                null,
                rows.map((r) =>
                    h(
                        "tr.event",
                        { onclick: () => app.go(r.f), data: { first: r.f, last: r.f } },
                        h("td", null, h("button.link", { type: "button" }, first + r.f)),
                        h("td.n", null, count(r.onlyA)),
                        h("td.n", null, count(r.onlyB)),
                        h(
                            "td",
                            null,
                            `${kOutcomes[r.mainB].name.toLowerCase()} ${count(r.mainCount)}`,
                        ),
                    ),
                ),
            ),
        ),
    );
}

function markCurrent(app, node) {
    const { frame } = app.store.state;
    for (const part of node.querySelectorAll("[data-first]")) {
        const inside = frame >= Number(part.dataset.first) && frame <= Number(part.dataset.last);
        part.classList.toggle("current", inside);
    }
}
