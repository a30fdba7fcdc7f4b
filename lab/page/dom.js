// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Building and finding elements. Text always goes in as text, so nothing of a run is parsed as html.

// h("div.cell", { title: "...", onclick: f, data: { frame: 3 } }, "text", node, [more], null)
// Classes follow dots in the tag. Properties are set as attributes, except functions (listeners),
// `data` (dataset), `value`, `checked`, `disabled` and `hidden` (members). Returns the element.
export function h(tag, props, ...children) {
    const [name, ...classes] = tag.split(".");
    const node = document.createElement(name);
    if (classes.length > 0) node.className = classes.join(" ");
    for (const [key, value] of Object.entries(props ?? {})) setProperty(node, key, value);
    append(node, children);
    return node;
}

const kMembers = new Set(["value", "checked", "disabled", "hidden", "selected", "indeterminate"]);

function setProperty(node, key, value) {
    if (value === null || value === undefined || value === false) {
        if (kMembers.has(key)) node[key] = false;
    } else if (typeof value === "function") {
        node.addEventListener(key.slice(2), value);
    } else if (key === "data") {
        Object.assign(node.dataset, value);
    } else if (kMembers.has(key)) {
        node[key] = value;
    } else {
        node.setAttribute(key, value === true ? "" : String(value));
    }
}

// Appends texts, numbers, nodes and lists of them; null and false are skipped.
export function append(node, children) {
    for (const child of children.flat(Infinity)) {
        if (child === null || child === undefined || child === false) continue;
        node.append(child instanceof Node ? child : String(child));
    }
    return node;
}

// Replaces all that `node` holds.
export function fill(node, ...children) {
    node.replaceChildren();
    return append(node, children);
}

// Sentences mark their numbers with asterisks: "distance *12* is not over". As nodes they are bold.
export function rich(text) {
    return text
        .split("*")
        .map((part, i) => (i % 2 === 1 ? h("b", null, part) : part))
        .filter((part) => part !== "");
}

export function svg(tag, attributes, ...children) {
    const node = document.createElementNS("http://www.w3.org/2000/svg", tag);
    for (const [key, value] of Object.entries(attributes ?? {})) {
        if (value !== null && value !== undefined) node.setAttribute(key, String(value));
    }
    return append(node, children);
}

export const byId = (id) => document.getElementById(id);

// Sizes a canvas to `width` x `height` css pixels at the screen's density; gives its context, scaled
// so that one unit is one css pixel. The canvas comes back cleared.
export function canvasContext(canvas, width, height) {
    const density = window.devicePixelRatio || 1;
    const w = Math.max(1, Math.round(width * density));
    const hgt = Math.max(1, Math.round(height * density));
    if (canvas.width !== w || canvas.height !== hgt) {
        canvas.width = w;
        canvas.height = hgt;
        canvas.style.width = `${width}px`;
        canvas.style.height = `${height}px`;
    }
    const ctx = canvas.getContext("2d");
    ctx.setTransform(density, 0, 0, density, 0, 0);
    ctx.clearRect(0, 0, width, height);
    return ctx;
}
