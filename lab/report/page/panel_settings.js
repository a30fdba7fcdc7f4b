// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The settings of the run: what was changed, what they mean, and which of them did nothing.

import { fill, h } from "../../page/dom.js";

const kSources = ["default", "settings file", "command line"];
const kNothing = "it changes nothing";

export function createSettingsPanel(app) {
    const state = { all: false, text: "", open: null };
    const node = h("div.panel.settings");
    const list = h("div");
    const search = h("input.field", {
        type: "search",
        placeholder: "Filter",
        "aria-label": "Filter settings",
        oninput: () => {
            state.text = search.value.trim().toLowerCase();
            if (state.text !== "") state.all = true;
            update();
        },
    });
    const tabs = h("div.segments", { role: "radiogroup", "aria-label": "Settings shown" });
    const pick = (all) => {
        state.all = all;
        update();
    };
    const buttons = [false, true].map((all) =>
        h("button", { type: "button", role: "radio", onclick: () => pick(all) }),
    );
    tabs.append(...buttons);
    node.append(h("div.settingshead", null, tabs, search), list);

    function update() {
        buttons[0].textContent =
            app.runs.length > 1
                ? `Differ (${differing(app).length})`
                : `Changed (${app.runs[0].changed})`;
        buttons[1].textContent = `All ${app.head.keys.length}`;
        buttons.forEach((b, i) => b.setAttribute("aria-checked", String(state.all === (i === 1))));
        fill(
            list,
            rows(app, state, (key) => {
                state.open = state.open === key ? null : key;
                update();
            }),
        );
    }
    app.openSetting = (key) => {
        Object.assign(state, { all: true, text: "", open: key });
        search.value = "";
        update();
        app.store.set({ tab: "settings" });
        list.querySelector(`[data-key="${key}"]`)?.scrollIntoView({ block: "center" });
    };
    app.store.on(["view"], update);
    update();
    return node;
}

const differing = (app) =>
    app.head.keys.filter(({ key }) => {
        const [a, b] = app.runs.map((run) => run.info[key]);
        return a.value !== b.value && (a.idle === "" || b.idle === "");
    });

function shown(app, { all, text }) {
    const changed =
        app.runs.length > 1
            ? new Set(differing(app).map((k) => k.key))
            : new Set(
                  app.head.keys.filter((k) => app.runs[0].info[k.key].changed).map((k) => k.key),
              );
    return app.head.keys.filter(({ key, text: meaning }) => {
        if (!all && !changed.has(key)) return false;
        return text === "" || `${key} ${meaning}`.toLowerCase().includes(text);
    });
}

function rows(app, state, toggle) {
    const keys = shown(app, state);
    if (keys.length === 0)
        return h(
            "p.quiet",
            null,
            state.text === "" ? "All settings have their defaults." : "No setting matches.",
        );
    const groups = new Map();
    for (const key of keys) {
        const idle = app.runs.every((run) => run.info[key.key].idle === kNothing);
        const name = idle ? "Read by nothing" : key.group;
        if (!groups.has(name)) groups.set(name, []);
        groups.get(name).push(key);
    }
    return [...groups].map(([name, list]) => [
        h("h3", null, name),
        name === "Read by nothing"
            ? h("p.small.quiet", null, "Parsed, held to their ranges; they change nothing.")
            : null,
        h(
            "table.keys",
            null,
            h(
                "tbody",
                null,
                list.map((key) => keyRows(app, key, state, toggle)),
            ),
        ),
    ]);
}

const valueText = (value) => (value === "" ? "(empty)" : String(value));

function keyRows(app, key, state, toggle) {
    const infos = app.runs.map((run) => run.info[key.key]);
    const idle = infos.every((info) => info.idle !== "");
    const changed = infos.some((info) => info.changed);
    const form = [idle ? "idle" : "", changed ? "changed" : ""].filter((c) => c !== "");
    const two = infos.length > 1 && infos[0].value !== infos[1].value;
    const row = h(
        ["tr", ...form].join("."),
        {
            data: { key: key.key },
            onclick: () => toggle(key.key),
        },
        h(
            "td",
            null,
            h(
                "button.plain.mono",
                { type: "button", "aria-expanded": String(state.open === key.key) },
                key.key,
            ),
        ),
        h(
            "td.n",
            null,
            two
                ? [
                      h("b.a", null, valueText(infos[0].value)),
                      " → ",
                      h("b.b", null, valueText(infos[1].value)),
                  ]
                : h("b", null, valueText(infos[0].value)),
        ),
        h(
            "td.n.quiet.small",
            null,
            idle && infos[0].idle !== kNothing
                ? infos[0].idle
                : changed
                  ? `default ${valueText(key.default)}`
                  : "default",
        ),
    );
    if (state.open !== key.key) return row;
    const source = infos.map(
        (info, i) => `${infos.length > 1 ? `${app.runs[i].label}: ` : ""}${kSources[info.source]}`,
    );
    return [
        row,
        h(
            "tr.more",
            null,
            h(
                "td",
                { colspan: 3 },
                h("p", null, key.text),
                h(
                    "p.small.quiet",
                    null,
                    `${key.range}; default ${valueText(key.default)}. Set by: ${source.join(", ")}.`,
                ),
                idle ? h("p.small", null, `Without effect in this run: ${infos[0].idle}.`) : null,
            ),
        ),
    ];
}
