// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The table of all points: sorted by any column, narrowed by a filter. A click chooses a point.

import { append, fill, h } from "../../page/dom.js";
import { count } from "../../page/format.js";
import { compareScores, hasScore, scoreOf } from "./data.js";
import { parseFilter } from "./filter.js";
import { scoreText, scoreTitle } from "./words.js";

const kRows = 200; // shown at first, and added by the button
const kScores = [
    "f1",
    "recall",
    "precision",
    "false_per_1000",
    "ranges_found",
    "delay_median",
    "iou",
    "iou_all",
    "jumps_per_100",
    "motion_frames",
    "longest_gap",
];

export function createTable(app) {
    const { sweep, store } = app;
    const columns = columnsOf(sweep);
    const head = h("tr");
    const body = h("tbody");
    const foot = h("p.foot");
    const fault = h("span.fault.small", { role: "status" });
    const input = h("input.field.filter", {
        type: "search",
        placeholder: "filter: recall>0.8 MD_HogDist_Th<=12",
        "aria-label": "Filter of the table",
        value: store.state.filter,
        oninput: (e) => store.set({ filter: e.target.value, shown: kRows }),
    });
    const node = h(
        "section.points",
        { "aria-label": "All points" },
        h("div.bar", null, h("h2", null, "Points"), input, switches(app), fault),
        h("div.scroll", null, h("table", null, h("thead", null, head), body)),
        foot,
    );
    const narrow = () => {
        const { accepts, fault: word } = parseFilter(sweep, store.state.clip, store.state.filter);
        fault.textContent = word ?? "";
        const { onlyBest, onlyMet } = store.state;
        const kept = sweep.points.filter(
            (p) => accepts(p) && (!onlyBest || p.on_front) && (!onlyMet || meets(p)),
        );
        store.set({ accepted: new Set(kept.map((p) => p.index)) });
    };
    const draw = () => {
        const rows = sorted(app, columns);
        fill(head, ...columns.map((c) => heading(app, c)));
        fill(body, ...rows.slice(0, store.state.shown).map((p) => row(app, columns, p)));
        fill(foot, ...footWords(app, rows));
    };
    store.on(["filter", "onlyBest", "onlyMet", "clip"], narrow);
    store.on(["accepted", "sort", "down", "clip", "shown"], draw);
    store.on(["point"], () => mark(body, store.state.point));
    body.addEventListener("keydown", (e) => walk(app, columns, body, e));
    narrow();
    return { node, draw };
}

const meets = (point) => point.status === "done" && point.missed.length === 0;

function columnsOf(sweep) {
    const keys = sweep.varied.map((k) => ({
        name: sweep.keys[k].name,
        title: sweep.keys[k].name.replace(/^MD_/, ""),
        numeric: sweep.keys[k].values.every((v) => typeof v === "number"),
        of: (p) => p.values[k],
        text: (v) => (v === null ? "–" : String(v)),
        better: "lower",
    }));
    const scores = kScores
        .filter((name) => hasScore(sweep, -1, name))
        .map((name) => ({
            name,
            title: scoreTitle(name),
            numeric: true,
            of: (p, clip) => scoreOf(sweep, p, clip, name),
            text: scoreText,
            better: sweep.scores.find((s) => s.name === name).better,
            what: sweep.scores.find((s) => s.name === name).what,
        }));
    const status = {
        name: "status",
        title: "",
        of: (p) => p.status,
        text: (v) => (v === "done" ? "" : v),
        better: "lower",
    };
    return [...scores.slice(0, 1), ...keys, ...scores.slice(1), status];
}

function sorted(app, columns) {
    const { sweep, store } = app;
    const { sort, down, clip, accepted } = store.state;
    const column = columns.find((c) => c.name === sort) ?? columns[0];
    const compare = (a, b) => {
        const [u, v] = [column.of(a, clip), column.of(b, clip)];
        if (typeof u === "string" || typeof v === "string")
            return String(u).localeCompare(String(v));
        const order = compareScores(u, v, column.better);
        return down && u !== null && v !== null ? -order : order;
    };
    return sweep.points
        .filter((p) => accepted.has(p.index))
        .sort((a, b) => compare(a, b) || a.index - b.index);
}

function heading(app, column) {
    const { sort, down } = app.store.state;
    const here = sort === column.name;
    const order = here ? (down ? "descending" : "ascending") : "none";
    return h(
        column.numeric ? "th.n" : "th",
        { scope: "col", "aria-sort": order, title: column.what },
        h(
            "button.link",
            {
                type: "button",
                onclick: () => app.store.set({ sort: column.name, down: here && !down }),
            },
            column.title,
            here ? (down ? " ▴" : " ▾") : "",
        ),
    );
}

function row(app, columns, point) {
    const { store } = app;
    const { clip, point: chosen } = store.state;
    const node = h("tr", {
        tabindex: point.index === chosen ? 0 : -1,
        "aria-selected": point.index === chosen,
        data: { point: point.index },
        onclick: () => store.set({ point: point.index }),
    });
    if (point.on_front) node.classList.add("best");
    if (point.status !== "done") node.classList.add("not-done");
    const cells = columns.map((c) => h(c.numeric ? "td.n" : "td", null, c.text(c.of(point, clip))));
    return append(node, cells);
}

function mark(body, chosen) {
    for (const tr of body.children) {
        const here = Number(tr.dataset.point) === chosen;
        tr.setAttribute("aria-selected", String(here));
        tr.tabIndex = here ? 0 : -1;
    }
}

// Arrow keys move the choice from row to row.
function walk(app, columns, body, event) {
    const by = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (by === undefined) return;
    event.preventDefault();
    const list = [...body.children];
    const here = list.findIndex((tr) => Number(tr.dataset.point) === app.store.state.point);
    const next = list[Math.min(list.length - 1, Math.max(0, here + by))];
    app.store.set({ point: Number(next.dataset.point) });
    next.focus();
}

function switches(app) {
    const { sweep, store } = app;
    const box = (name, text) =>
        h(
            "label.small",
            null,
            h("input", {
                type: "checkbox",
                checked: store.state[name],
                onchange: (e) => store.set({ [name]: e.target.checked }),
            }),
            ` ${text}`,
        );
    return [
        sweep.points.some((p) => p.on_front) && box("onlyBest", "best front only"),
        sweep.expect.length > 0 && box("onlyMet", "only what meets the plan"),
    ];
}

function footWords(app, rows) {
    const { sweep, store } = app;
    const shown = Math.min(rows.length, store.state.shown);
    if (rows.length === 0) return ["No point passes the filter."];
    const words = [`${count(shown)} of ${count(sweep.points.length)} points `];
    if (shown < rows.length) {
        const more = () => store.set({ shown: store.state.shown + kRows });
        words.push(h("button.button", { type: "button", onclick: more }, `${kRows} more`));
    }
    return words;
}

export { kRows };
