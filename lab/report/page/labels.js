// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Labels: which frames hold motion that should be found, and where. Ranges are marked on the timeline,
// boxes dragged on the picture, and the list is saved as a csv that sweeps and scores read.

import { append, fill, h } from "../../page/dom.js";
import { plural } from "../../page/format.js";
import { isReported } from "./frame_words.js";
import {
    fromCsv,
    judge,
    kWhats,
    reportedToInput,
    toCsv,
    toInputBox,
    toWorkingBox,
} from "./label_rows.js";

const kInk = { motion: "#ffe14d", ignore: "#c8a2ff" };

// { node (the panel), drawing(), marking(), drag(), dropped(), mark(), drawOnBand() }
export function createLabels(app) {
    const labels = { app, rows: [], chosen: -1, active: false };
    labels.node = h("div.panel.labels");
    labels.marking = () => labels.active;
    labels.drawing = () => labels.active && labels.chosen >= 0;
    labels.mark = (a, b) => addRow(labels, Math.min(a, b), Math.max(a, b));
    labels.drag = (from, to) => dragBox(labels, from, to);
    labels.dropped = () => render(labels);
    labels.drawOnBand = (ctx, at, height) => drawOnBand(labels, ctx, at, height);
    app.store.on(["tab", "layout"], (s) => {
        // The pointer marks and draws only while this tab is open.
        labels.active = s.tab === "labels";
        showBox(labels);
    });
    app.store.on(["frame"], () => showBox(labels));
    app.store.on(["view"], () => render(labels));
    render(labels);
    return labels;
}

const number = (labels, f) => labels.app.runs[0].first + f;

function addRow(labels, first, last) {
    labels.rows.push({ first, last, box: null, what: "motion" });
    labels.rows.sort((a, b) => a.first - b.first || a.last - b.last);
    labels.chosen = labels.rows.findIndex((r) => r.first === first && r.last === last);
    changed(labels);
}

function changed(labels) {
    const { store } = labels.app;
    store.set({ labelRows: store.state.labelRows + 1 });
    render(labels);
    showBox(labels);
}

// The chosen row's box is shown on the stage in the frames of its range.
function showBox(labels) {
    const { app, rows, chosen } = labels;
    const row = labels.active ? rows[chosen] : undefined;
    const { frame } = app.store.state;
    const inside = row !== undefined && frame >= row.first && frame <= row.last;
    const box = inside && row.box !== null ? toWorkingBox(row.box, app.head.clip) : null;
    app.store.set({ labelBox: box });
}

function dragBox(labels, [x0, y0], [x1, y1]) {
    const { app, rows, chosen } = labels;
    rows[chosen].box = toInputBox([x0, y0, x1, y1], app.head.clip);
    app.store.set({ labelBox: toWorkingBox(rows[chosen].box, app.head.clip) });
}

function drawOnBand(labels, ctx, at, height) {
    labels.rows.forEach((row, i) => {
        ctx.fillStyle = kInk[row.what];
        ctx.globalAlpha = i === labels.chosen ? 1 : 0.7;
        ctx.fillRect(at(row.first), height - 3, Math.max(2, at(row.last + 1) - at(row.first)), 3);
    });
    ctx.globalAlpha = 1;
}

function render(labels) {
    const { node } = labels;
    if (node.contains(document.activeElement) && document.activeElement.tagName === "INPUT") return;
    fill(
        node,
        h(
            "p.quiet",
            null,
            "Labels say what should be found. While this tab is open: drag on the timeline to mark a " +
                "range of frames, then drag on the picture to draw the box (or leave it empty: " +
                "anywhere). Save the list, and mdlab score or sweep measures runs against it.",
        ),
        commands(labels),
        labels.rows.length === 0
            ? h("p", null, "No label yet.")
            : [summary(labels), table(labels), outside(labels)],
    );
}

const verdicts = (labels) => {
    const run = labels.app.shownRun();
    const c = run.columns;
    const { clip } = labels.app.head;
    return judge(labels.rows, run.frames, (f) =>
        isReported(run, f)
            ? reportedToInput(
                  [c.after_left[f], c.after_top[f], c.after_right[f], c.after_bottom[f]],
                  clip,
              )
            : null,
    );
};

// The question first: how much of what should be found was missed.
function summary(labels) {
    const { each } = verdicts(labels);
    const wanted = each.filter((_, i) => labels.rows[i].what === "motion");
    const missed = wanted.filter((v) => v.missed >= 0);
    if (wanted.length === 0) return null;
    if (missed.length === 0) return h("p", null, "Every label is found in all its frames.");
    const never = missed.filter((v) => v.found === 0).length;
    return h(
        "p",
        null,
        `${missed.length} of ${plural(wanted.length, "label")} missed in some frame, ` +
            `${never} of them in every frame.`,
    );
}

// What was reported although no label asks for it.
function outside(labels) {
    const { outside: frames, firstOutside } = verdicts(labels);
    if (frames === 0) return h("p.quiet", null, "No frame was reported outside the labels.");
    return h(
        "p",
        null,
        `Reported outside the labels: ${plural(frames, "frame")}, from `,
        frameLink(labels, firstOutside),
        ".",
    );
}

const frameLink = (labels, f) =>
    h("button.link", { type: "button", onclick: () => labels.app.go(f) }, number(labels, f));

// In how many frames the run found a label, and a link to the first that missed it.
function found(labels, row, { frames, found: n, missed }) {
    if (row.what !== "motion") return h("div.small.quiet", null, "judged by nothing");
    return h(
        "div.small.quiet",
        null,
        `${row.box === null ? "found" : "touched by the box"} in ${n} of ${frames}`,
        missed < 0 ? null : [", missed first in ", frameLink(labels, missed)],
    );
}

function commands(labels) {
    const { app } = labels;
    const button = (name, title, f, disabled = false) =>
        h("button.button", { type: "button", title, onclick: f, disabled }, name);
    const file = h("input", {
        type: "file",
        accept: ".csv,text/csv",
        hidden: true,
        onchange: () => load(labels, file.files[0]),
    });
    return h("div.bar2", null, [
        button("Add this frame", "A label of the frame shown", () => {
            addRow(labels, app.store.state.frame, app.store.state.frame);
        }),
        button("From events", "One label for each reported event, to correct by hand", () => {
            fromEvents(labels);
        }),
        button("Open csv", "Read labels from a file", () => file.click()),
        button("Save csv", "Save the labels", () => save(labels), labels.rows.length === 0),
        file,
    ]);
}

// A start for labels by hand: what the run reported. Boxes stay empty, they are the run's own.
function fromEvents(labels) {
    for (const [first, last] of labels.app.shownRun().events) {
        labels.rows.push({ first, last, box: null, what: "motion" });
    }
    labels.rows.sort((a, b) => a.first - b.first || a.last - b.last);
    changed(labels);
}

function table(labels) {
    const { each } = verdicts(labels);
    const head = ["", "First", "Last", "Box, pixels of the input", "What", ""];
    return h(
        "table",
        null,
        h(
            "thead",
            null,
            h(
                "tr",
                null,
                head.map((name) => h("th", null, name)),
            ),
        ),
        append(
            h("tbody"),
            labels.rows.map((row, i) => rowOf(labels, row, i, each[i])),
        ),
    );
}

function rowOf(labels, row, i, verdict) {
    const { app } = labels;
    const choose = () => {
        labels.chosen = i;
        app.go(row.first);
        changed(labels);
    };
    const frameField = (member) =>
        h("input.field", {
            type: "text",
            inputmode: "numeric",
            value: String(number(labels, row[member])),
            "aria-label": `${member} frame of label ${i + 1}`,
            onchange: (e) => {
                setFrame(labels, row, member, e.target.value);
                e.target.blur();
                changed(labels);
            },
        });
    const what = h(
        "select.field",
        {
            "aria-label": `Kind of label ${i + 1}`,
            onchange: () => {
                row.what = what.value;
                changed(labels);
            },
        },
        kWhats.map((w) => h("option", { value: w, selected: w === row.what }, w)),
    );
    const box = row.box === null ? "anywhere" : row.box.join(", ");
    const icon = (name, title, f) =>
        h("button.button", { type: "button", title, "aria-label": title, onclick: f }, name);
    return h(`tr${i === labels.chosen ? ".current" : ""}`, { data: { label: i } }, [
        h("td", null, icon("▸", "Go to this label and draw its box", choose)),
        h("td", null, frameField("first")),
        h("td", null, frameField("last")),
        h("td.small", null, box, found(labels, row, verdict)),
        h("td", null, what),
        h("td", null, [
            row.box === null
                ? null
                : icon("□", "Remove the box", () => {
                      row.box = null;
                      changed(labels);
                  }),
            icon("×", "Delete this label", () => {
                labels.rows.splice(i, 1);
                labels.chosen = -1;
                changed(labels);
            }),
        ]),
    ]);
}

function setFrame(labels, row, member, text) {
    const f = Number.parseInt(text, 10) - labels.app.runs[0].first;
    if (!Number.isFinite(f) || f < 0 || f >= labels.app.frames) return;
    row[member] = f;
    if (row.last < row.first) [row.first, row.last] = [row.last, row.first];
}

function save(labels) {
    const { app } = labels;
    const url = URL.createObjectURL(
        new Blob([toCsv(labels.rows, app.head.clip.first)], { type: "text/csv" }),
    );
    const name = app.head.clip.name.replace(/\.[^.]*$/, "");
    const link = h("a", { href: url, download: `${name}.labels.csv` });
    document.body.append(link);
    link.click();
    link.remove();
    setTimeout(() => URL.revokeObjectURL(url), 1000);
}

async function load(labels, file) {
    if (file === undefined) return;
    const { rows, error } = fromCsv(await file.text(), labels.app.head.clip);
    if (error !== null) {
        labels.app.note(`${file.name}: ${error}`);
        return;
    }
    labels.rows = rows;
    labels.chosen = -1;
    changed(labels);
}
