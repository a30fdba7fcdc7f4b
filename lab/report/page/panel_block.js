// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The chosen block in the frame shown: sentence, pictures, values, history, ladder, vector.

import { fill, h, rich } from "../../page/dom.js";
import { blockText } from "./block_text.js";
import { outsideReason } from "./centred_box.js";
import { drawHistory } from "./history.js";
import { inspect } from "./inspect.js";
import { ladder } from "./ladder.js";
import { mark } from "./legend.js";
import { kKinds, kOutcomes } from "./outcomes.js";
import { patches, showPatches } from "./patches.js";
import { refinementText } from "./refinement.js";
import { vector } from "./vector_table.js";
import { blockSentence } from "./words.js";

export function createBlockPanel(app) {
    const node = h("div.panel.blockpanel");
    const update = () => show(app, node);
    app.store.on(["frame", "block", "blocksReady", "view", "theme", "paper", "drawn"], update);
    update();
    return node;
}

function show(app, node) {
    const { block, frame, playing } = app.store.state;
    if (block < 0) {
        fill(
            node,
            h("p.quiet", null, "Click on the picture to choose a block: what decided it, and why."),
        );
        return;
    }
    const views = app.runs.map((run) => ({ run, r: inspect(run, frame, block) }));
    const parts = [title(app, views[0], frame, block)];
    if (views.every((v) => v.r === null)) {
        parts.push(h("p.quiet", null, absentText(app.runs[0], frame)));
    } else if (views.length === 1) {
        parts.push(...single(app, views[0], frame, block));
    } else {
        parts.push(...compared(app, views, frame, block));
    }
    fill(node, parts);
    if (!playing) showPatches(app, node, frame, block);
}

// Why nothing can be said: the decision of a frame needs the values of the one before, too.
function absentText(run, frame) {
    const why = "left out of this file to keep it small.";
    if (!run.hasBlocks(frame)) return `No block values in this frame: they were ${why}`;
    if (frame > 0 && !run.hasBlocks(frame - 1)) {
        return `The block values of the frame before were ${why}`;
    }
    return "The values of this block are being unpacked.";
}

function title(app, { run }, frame, block) {
    const { grid } = run;
    const x = block % grid.w;
    const y = Math.floor(block / grid.w);
    const [px, py] = [x * grid.stride, y * grid.stride];
    const copy = h(
        "button.button",
        { type: "button", title: "Copy as text (C)", onclick: () => app.copyBlock() },
        "Copy",
    );
    return h(
        "div.blocktitle",
        null,
        h("h2", null, "Block ", h("b", null, `${x}, ${y}`)),
        h(
            "span.small.quiet",
            null,
            `no. ${block} · pixels ${px}–${px + 15}, ${py}–${py + 15} · frame ${run.first + frame}`,
        ),
        copy,
    );
}

// The sentence, and the setting that the deciding test reads.
export function sentenceBox(app, r, label = null) {
    const { kind } = kOutcomes[r.outcome];
    const swatch =
        kind === null
            ? mark("nothing", "transparent")
            : mark(kKinds[kind].mark, kKinds[kind].color);
    const run = label === null ? null : h(`span.run.${label.toLowerCase()}`, null, label);
    return h(
        "div.verdict",
        { data: { outcome: r.outcome } },
        run,
        swatch,
        h("div", null, h("p", null, rich(blockSentence(r))), settingLink(app, r)),
    );
}

function settingLink(app, r) {
    const { key } = ladder(r).find((row) => row.state === "yes" || row.state === "no");
    return key === null ? null : linkTo(app, key, r.s);
}

const linkTo = (app, key, settings) =>
    h(
        "button.link.mono",
        { type: "button", title: "Open in Settings", onclick: () => app.openSetting(key) },
        `${key} = ${settings[key]}`,
    );

// Why an active block is outside the box, where that needs saying.
function outside(app, run, frame, block) {
    const reason = outsideReason(run, frame, block);
    if (reason === null) return null;
    return h("p.outside", null, rich(reason.text), " ", linkTo(app, reason.key, run.settings));
}

function single(app, { run, r }, frame, block) {
    return [
        sentenceBox(app, r),
        outside(app, run, frame, block),
        h("div.facts", null, patches(app), around(r), values(run, r)),
        history(app, run, frame, block, r),
        h("h3", null, "How it was decided"),
        ladderTable(app, [r]),
        refined(run, frame, block),
        vector(run, frame, block, r),
    ];
}

function compared(app, views, frame, block) {
    const there = views.filter((v) => v.r !== null);
    return [
        ...there.flatMap(({ run, r }) => [
            sentenceBox(app, r, run.label),
            outside(app, run, frame, block),
        ]),
        h(
            "div.facts",
            null,
            patches(app),
            there.map(({ run, r }) =>
                h("div", null, around(r), h("span.small.quiet", null, `run ${run.label}`)),
            ),
        ),
        there.length === 2 ? pairedValues(there) : values(there[0].run, there[0].r),
        ...there.map(({ run, r }) => history(app, run, frame, block, r)),
        h("h3", null, "How it was decided"),
        ladderTable(
            app,
            there.map((v) => v.r),
            there.map((v) => v.run.label),
        ),
        ...there.slice(0, 1).map(({ run, r }) => vector(run, frame, block, r)),
    ];
}

function around(r) {
    const cells = r.places.map((p, i) => {
        const form = [
            "cell9",
            p.index < 0 ? "absent" : "",
            p.active ? "active" : "",
            p.high ? "high" : "",
            p.now ? "" : "last",
            i === 4 ? "self" : "",
        ];
        return h(
            `span.${form.filter((f) => f !== "").join(".")}`,
            null,
            p.index < 0 ? "" : p.distance,
        );
    });
    const label = `Around it, as the decision saw it: ${r.act} active, ${r.high} highly active of nine`;
    return h(
        "div.around",
        { role: "img", "aria-label": label },
        h("div.grid9", null, cells),
        h("span.small.quiet", null, "flags: solid this frame, dashed last"),
    );
}

function valueRows(r) {
    const mean =
        r.mean === null
            ? [r.meanKept ? "…" : "left out", ""]
            : [String(r.mean), ` was ${r.meanReference ?? "?"}`];
    return [
        [
            "Distance",
            h("b", null, r.outcome <= 1 && r.d[0] > 0 ? `${r.d[0]} (reported 0)` : r.d[0]),
        ],
        ["Repeat counter", [`${r.before} → `, h("b", null, r.after)]],
        ["Active among nine", h("b", null, r.act)],
        ["Highly active", h("b", null, r.high)],
        ["Mean luma", [h("b", null, mean[0]), h("span.quiet", null, mean[1])]],
    ];
}

function values(_run, r) {
    return h(
        "table.values",
        null,
        h(
            "tbody",
            null,
            valueRows(r).map(([name, value]) =>
                h("tr", null, h("td", null, name), h("td.n", null, value)),
            ),
        ),
    );
}

function pairedValues(views) {
    const rows = views.map((v) => valueRows(v.r));
    return h(
        "table.values",
        null,
        h(
            "thead",
            null,
            h(
                "tr",
                null,
                h("th"),
                views.map((v) => h("th.n", null, v.run.label)),
            ),
        ),
        h(
            "tbody",
            null,
            rows[0].map(([name], i) =>
                h(
                    "tr",
                    null,
                    h("td", null, name),
                    rows.map((side) => h("td.n", null, side[i][1])),
                ),
            ),
        ),
    );
}

function history(app, run, frame, block, r) {
    const canvas = h("canvas.history", {
        role: "img",
        tabindex: "-1",
        "aria-label": `Distance over frames; thresholds ${r.t.th}, ${r.t.alone} and ${r.t.high}`,
    });
    const name =
        app.runs.length > 1 ? `Distance over frames, ${run.label}` : "Distance over frames";
    queueMicrotask(() => drawHistory(app, run, canvas, frame, block));
    return [h("h3", null, name), canvas];
}

const kStateMarks = { passed: "↓", yes: "●", no: "○", later: "" };

// One column of texts a run; the rows of both runs side by side show where they differ.
function ladderTable(app, records, labels = null) {
    const ladders = records.map(ladder);
    const ids = [];
    for (const rows of ladders) for (const row of rows) if (!ids.includes(row.id)) ids.push(row.id);
    const head =
        labels === null
            ? null
            : h(
                  "thead",
                  null,
                  h(
                      "tr",
                      null,
                      h("th"),
                      h("th"),
                      labels.map((l) => h("th.n", null, l)),
                  ),
              );
    return h(
        "table.ladder",
        null,
        head,
        h(
            "tbody",
            null,
            ids.map((id) => {
                const rows = ladders.map((l) => l.find((row) => row.id === id));
                const row = rows.find((one) => one !== undefined);
                const deciding = rows.find((one) => one?.state === "yes" || one?.state === "no");
                const state =
                    deciding?.state ??
                    (rows.every((one) => one?.state === "later") ? "later" : "passed");
                return h(
                    `tr.${state}`,
                    {
                        data: { row: id, state },
                        title:
                            row.key === null
                                ? "No setting: built into the chip"
                                : `Open ${row.key}`,
                        onclick: () => row.key !== null && app.openSetting((deciding ?? row).key),
                    },
                    h("td.step", null, kStateMarks[state]),
                    h("td", null, row.name),
                    rows.map((one) =>
                        h(
                            `td.n${one?.state === "yes" || one?.state === "no" ? ".decides" : ""}`,
                            null,
                            one?.text ?? "",
                        ),
                    ),
                );
            }),
        ),
    );
}

function refined(run, frame, block) {
    if (run.method !== 2) return null;
    const value = run.refinement(frame, block);
    return value === null
        ? null
        : [h("h3", null, "In the box method"), h("p", null, rich(refinementText(value)))];
}

// Everything of the chosen block as text, for a mail or an issue.
export function copyText(app) {
    const { block, frame } = app.store.state;
    if (block < 0) return "";
    return app.runs
        .map((run) => blockText(run, inspect(run, frame, block), frame, block))
        .filter((text) => text !== "")
        .join("\n\n");
}
