// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Above the stage: layer, strength, picture, boxes, grid, zoom.

import { h } from "../../page/dom.js";
import { fit, zoomAt } from "./stage.js";

export const kLayers = [
    ["decision", "Decision"],
    ["distance", "Distance"],
    ["active", "Active"],
    ["counter", "Counter"],
    ["luma", "Luma"],
    ["off", "Off"],
];

export const layersOf = (app) => (app.runs.length > 1 ? [["diff", "Diff"], ...kLayers] : kLayers);

const kPictures = [
    ["colour", "Colour"],
    ["grey", "Grey"],
    ["dim", "Dim"],
    ["none", "None"],
];

export function createToolbar(app, stage) {
    return h(
        "div.toolbar",
        null,
        layerChoice(app),
        strength(app),
        pictureChoice(app),
        toggle(app, "boxes", "Boxes", "Boxes (B)"),
        toggle(app, "grid", "Grid", "Grid of the blocks (G)"),
        zoomButtons(app, stage),
    );
}

function layerChoice(app) {
    const group = h("div.segments", { role: "radiogroup", "aria-label": "Layer" });
    const buttons = layersOf(app).map(([layer, name], i) =>
        h(
            "button",
            {
                type: "button",
                role: "radio",
                title: `${name} (${i + 1})`,
                onclick: () => app.setLayer(layer),
                data: { layer },
            },
            name,
        ),
    );
    const update = () => {
        for (const b of buttons) {
            b.setAttribute("aria-checked", String(b.dataset.layer === app.store.state.layer));
        }
    };
    app.store.on(["layer"], update);
    update();
    group.append(...buttons);
    return group;
}

function strength(app) {
    const input = h("input", {
        type: "range",
        min: 10,
        max: 100,
        step: 5,
        "aria-label": "Strength of the overlay",
        oninput: () => app.store.set({ strength: Number(input.value) / 100 }),
    });
    const update = () => {
        input.value = String(Math.round(app.store.state.strength * 100));
    };
    app.store.on(["strength"], update);
    update();
    return h("label.strength", null, h("span", null, "Overlay"), input);
}

function pictureChoice(app) {
    const select = h(
        "select.field",
        {
            "aria-label": "Picture",
            onchange: () => {
                app.store.set({ picture: select.value });
                select.blur();
            },
        },
        kPictures.map(([value, name]) => h("option", { value }, name)),
    );
    const update = () => {
        select.value = app.store.state.picture;
    };
    app.store.on(["picture"], update);
    update();
    return select;
}

function toggle(app, member, name, title) {
    const button = h(
        "button.button",
        {
            type: "button",
            title,
            onclick: () => app.store.set({ [member]: !app.store.state[member] }),
        },
        name,
    );
    const update = () => button.setAttribute("aria-pressed", String(app.store.state[member]));
    app.store.on([member], update);
    update();
    return button;
}

function zoomButtons(app, stage) {
    const by = (factor) => zoomAt(stage, factor, stage.width / 2, stage.height / 2);
    const value = h("span.zoomvalue", null);
    const update = () => {
        value.textContent = `${Number(app.store.state.zoom.toFixed(1))}×`;
    };
    app.store.on(["zoom"], update);
    update();
    app.zoomBy = by;
    app.zoomFit = () => fit(stage);
    const button = (name, title, f) =>
        h("button.button", { type: "button", title, onclick: f }, name);
    return h(
        "span.zoom",
        null,
        button("−", "Zoom out (−)", () => by(1 / 1.5)),
        value,
        button("+", "Zoom in (+)", () => by(1.5)),
        button("Fit", "Fit (0)", () => fit(stage)),
    );
}
