// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The runs of frames with a reported box, with a picture of each, and the gaps between them.

import { fill, h } from "../../page/dom.js";
import { clock, count, plural, range, seconds } from "../../page/format.js";
import { isHeld, isReported } from "./frame_words.js";

const kThumb = 72;
const kLeastGap = 5; // shorter gaps get no row

export function createEventsPanel(app) {
    const node = h("div.panel.events");
    const fillNow = () => show(app, node);
    app.store.on(["view"], fillNow);
    app.store.on(["frame"], () => markCurrent(app, node));
    app.store.on(["tab", "layout"], () => sendForPictures(app, node));
    fillNow();
    return node;
}

// Rows in the order of the clip: { first, last, event (number or 0), peak, held, longest }.
export function eventRows(run) {
    const rows = [];
    let next = 0;
    const gap = (first, last) => {
        if (last - first + 1 < kLeastGap) return;
        let held = 0;
        for (let f = first; f <= last; ++f) held += isHeld(run, f) ? 1 : 0;
        const longest = run.longest_gap !== null && run.longest_gap[0] === first;
        rows.push({ first, last, event: 0, peak: -1, held, longest });
    };
    run.events.forEach(([first, last, peak], i) => {
        gap(next, first - 1);
        rows.push({ first, last, event: i + 1, peak, held: 0, longest: false });
        next = last + 1;
    });
    gap(next, run.frames - 1);
    return rows;
}

function show(app, node) {
    const run = app.shownRun();
    const label = run.label === "" ? "" : ` of run ${run.label}`;
    if (run.events.length === 0) {
        const text =
            run.totals.motion > 0 && run.gate
                ? `Motion was found in ${plural(run.totals.motion, "frame")}, but the gate let no box through.`
                : "No box was reported in any frame.";
        fill(node, h("p", null, text));
        return;
    }
    const held = run.gate
        ? ` The gate held back ${plural(run.totals.held, "frame")} with motion.`
        : "";
    const head = h(
        "tr",
        null,
        h("th.n", null, "No."),
        h("th"),
        h("th", null, "Frames"),
        h("th.n", null, "Length"),
        h("th.n", null, "Blocks"),
    );
    fill(
        node,
        h("p.quiet", null, `An event${label} is a run of frames with a reported box.${held}`),
        h(
            "table",
            null,
            h("thead", null, head),
            h(
                "tbody",
                null,
                eventRows(run).map((row) =>
                    row.event > 0 ? eventRow(app, run, row) : gapRow(app, run, row),
                ),
            ),
        ),
    );
    markCurrent(app, node);
    sendForPictures(app, node);
}

function eventRow(app, run, { first, last, event, peak }) {
    const length = last - first + 1;
    const picture =
        app.stills === null
            ? null
            : h("canvas.peak", {
                  width: kThumb,
                  height: Math.round((kThumb * run.grid.height) / run.grid.width),
                  title: `Peak: frame ${run.first + peak}`,
                  data: { peak },
                  onclick: (e) => {
                      e.stopPropagation();
                      app.go(peak);
                  },
              });
    return h(
        "tr.event",
        {
            data: { first, last },
            onclick: () => app.go(first),
        },
        h("td.n", null, event),
        h("td", null, picture),
        h(
            "td",
            null,
            h("button.link", { type: "button" }, range(run.first + first, run.first + last)),
            h("div.small.quiet", null, clock(first, app.fps) ?? ""),
        ),
        h("td.n", null, count(length), h("div.small.quiet", null, seconds(length, app.fps) ?? "")),
        h(
            "td.n",
            null,
            count(run.columns.active[peak]),
            h("div.small.quiet", null, `in ${run.first + peak}`),
        ),
    );
}

function gapRow(app, run, { first, last, held, longest }) {
    const what = held > 0 ? `gap, ${count(held)} held` : "gap";
    return h(
        "tr.gap",
        { data: { first, last }, onclick: () => app.go(first) },
        h("td"),
        h("td"),
        h(
            "td",
            null,
            h("button.link", { type: "button" }, range(run.first + first, run.first + last)),
        ),
        h("td.n", null, count(last - first + 1)),
        h("td", null, longest ? `${what}, the longest` : what),
    );
}

function markCurrent(app, node) {
    const { frame } = app.store.state;
    for (const row of node.querySelectorAll("tbody tr")) {
        const inside = frame >= Number(row.dataset.first) && frame <= Number(row.dataset.last);
        row.classList.toggle("current", inside);
    }
}

// Pictures come from the second decoder, one after the other, and only while the tab is open.
function sendForPictures(app, node) {
    if (app.stills === null || node.hidden || node.closest("[hidden]") !== null) return;
    const run = app.shownRun();
    for (const canvas of node.querySelectorAll("canvas.peak:not([data-sent])")) {
        const peak = Number(canvas.dataset.peak);
        canvas.dataset.sent = "1";
        app.stills.get(peak, kThumb).then((still) => {
            if (still === null) return;
            const ctx = canvas.getContext("2d");
            ctx.drawImage(still, 0, 0, canvas.width, canvas.height);
            const box = isReported(run, peak) ? run.boxAfter(peak) : null;
            if (box === null) return;
            const scale = canvas.width / run.grid.width;
            ctx.strokeStyle = "#3fe0ff";
            ctx.lineWidth = 1.5;
            ctx.strokeRect(
                box[0] * scale,
                box[1] * scale,
                (box[2] - box[0]) * scale,
                (box[3] - box[1]) * scale,
            );
        });
    }
}
