// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Under the stage: what the marks of the layer mean, with this frame's counts.

import { fill, h } from "../../page/dom.js";
import { count } from "../../page/format.js";
import { kFlagActive, kFlagHigh } from "./inspect.js";
import { kHeatRamp } from "./layers.js";
import { kKinds, kLumaSame, kOutcomes, outcomesOf } from "./outcomes.js";
import { blockThresholds } from "./thresholds.js";

export function createLegend(app) {
    const node = h("div.legend", { "aria-label": "Legend" });
    const update = () => {
        const s = app.store.state;
        const entries = kLegends[s.layer]?.(app, app.shownRun(), s.frame) ?? [];
        fill(node, h("div.entries", null, entries), boxMarks(app));
    };
    app.store.on(["frame", "layer", "filter", "view", "blocksReady"], update);
    update();
    return node;
}

export function mark(kind, color) {
    const swatch = h(`span.mark.${kind}`);
    swatch.style.setProperty("--mark", color);
    return swatch;
}

const entry = (kind, color, name, value) =>
    h(
        "span.entry",
        null,
        mark(kind, color),
        name,
        value === null ? null : h("b", null, count(value)),
    );

function boxMarks(app) {
    if (app.runs.length > 1) {
        return h(
            "div.boxmarks",
            null,
            entry("box", "#5cc8ff", "box A", null),
            entry("box", "#ff8a28", "box B", null),
        );
    }
    if (!app.runs[0].gate) return h("div.boxmarks", null, entry("box", "#3fe0ff", "box", null));
    return h(
        "div.boxmarks",
        null,
        entry("boxdash", "#ffffff", "before gate", null),
        entry("box", "#3fe0ff", "after", null),
    );
}

function decisionEntries(app, run, f) {
    const { filter } = app.store.state;
    const correlation = run.correlation;
    return Object.entries(kKinds)
        .filter(([kind]) => (kind === "all") !== correlation || kind === "below")
        .map(([kind, { name, color, mark: form }]) => {
            const outcomes = outcomesOf(kind);
            const total = kindCount(run, f, outcomes);
            const chosen = filter !== null && outcomes.every((o) => filter.has(o));
            return h(
                `button.entry${total === 0 ? ".none" : ""}`,
                {
                    type: "button",
                    title: `Show only these: ${outcomes.map((o) => kOutcomes[o].name).join(", ")}`,
                    "aria-pressed": String(chosen),
                    data: { kind },
                    onclick: () => app.toggleFilter(outcomes),
                },
                mark(form, color),
                name,
                h("b", null, count(total)),
            );
        });
}

// Blocks of a kind in frame f, as the stage draws them: from the frame table. Of those with unchanged
// luma only the ones with a distance are drawn, and the table does not know them.
function kindCount(run, f, outcomes) {
    let sum = 0;
    for (const o of outcomes) {
        if (o !== kLumaSame || run.columns.o1[f] === 0) {
            sum += run.columns[`o${o}`][f];
            continue;
        }
        run.blocks(f)?.outcome.forEach((outcome, i) => {
            if (outcome === kLumaSame && run.blocks(f).distance[i] > 0) ++sum;
        });
    }
    return sum;
}

function distanceEntries(app, run, f) {
    const t = blockThresholds(run.settings, run.columns.luma[f]);
    const ramp = h("canvas.ramp", { width: 256, height: 1, role: "img", "aria-label": "0 to 255" });
    const image = new ImageData(256, 1);
    for (let x = 0; x < 256; ++x) {
        const d = Math.round(2 ** ((x / 255) * 8) - 1);
        image.data.set([...kHeatRamp[Math.min(255, d)], 255], 4 * x);
    }
    ramp.getContext("2d").putImageData(image, 0, 0);
    const at = (d) => `${(Math.log2(1 + d) / 8) * 100}%`;
    const ticks = [
        [1, ""],
        [t.th, "t"],
        [t.alone, "t"],
        [t.high, "t"],
        [255, ""],
    ].map(([d, kind]) => {
        const tick = h(`span.tick${kind === "t" ? ".threshold" : ""}`, null, String(d));
        tick.style.left = at(d);
        return tick;
    });
    return [
        "Distance",
        h("span.heat", null, ramp, ticks),
        h("span.quiet", null, "marks: threshold, alone, high"),
    ];
}

function activeEntries(_app, run, f) {
    const frame = run.blocks(f);
    let alone = 0;
    if (frame !== null) {
        for (let i = 0; i < frame.state.length; ++i) {
            if ((frame.state[i] & kFlagActive) === 0) continue;
            if (kOutcomes[frame.outcome[i]].group !== 0) ++alone;
        }
    }
    return [
        entry("fill", "#f5a300", "in the mask", run.columns.active[f]),
        entry("hollow", "#f5a300", "flag set, but isolated", alone),
    ];
}

function counterEntries(_app, run, f) {
    const frame = run.blocks(f);
    let [counting, flagged, high] = [0, 0, 0];
    for (const state of frame?.state ?? []) {
        if ((state & 15) > 0) ++counting;
        if ((state & kFlagHigh) !== 0) ++high;
        else if ((state & kFlagActive) !== 0) ++flagged;
    }
    return [
        entry("fill", "#4a82c0", "repeat counter 1 to 15", counting),
        entry("hollow", "#f5a300", "active", flagged),
        entry("hollow", "#ff6a13", "highly active", high),
    ];
}

function lumaEntries(_app, run, f) {
    if (!run.hasMeans(f)) {
        return [h("span.quiet", null, "Mean luma was left out of this file to keep it small.")];
    }
    return [
        entry("fill", "#f5a300", "brighter than the reference", null),
        entry("fill", "#4696ff", "darker", null),
    ];
}

function diffEntries(app, _run, f) {
    const d = app.difference.at(f);
    return [
        entry("hollow", "#5cc8ff", "active only in A", d?.onlyA ?? null),
        entry("fill", "#ff8a28", "only in B", d?.onlyB ?? null),
        entry("fill", "#a3adb9", "in both", d?.both ?? null),
    ];
}

const kLegends = {
    decision: decisionEntries,
    distance: distanceEntries,
    active: activeEntries,
    counter: counterEntries,
    luma: lumaEntries,
    diff: diffEntries,
};
