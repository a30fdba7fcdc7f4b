// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Light and dark. Follows the system until the reader chooses; the choice is not stored.

const kDark = window.matchMedia("(prefers-color-scheme: dark)");
const listeners = [];

function apply(name) {
    if (document.documentElement.dataset.theme === name) return;
    document.documentElement.dataset.theme = name;
    palette = null;
    for (const f of listeners) f(name);
}

let palette = null;
let chosen = false;

export function startTheme() {
    document.documentElement.dataset.theme = kDark.matches ? "dark" : "light";
    kDark.addEventListener("change", () => {
        if (!chosen) apply(kDark.matches ? "dark" : "light");
    });
}

export const themeName = () => document.documentElement.dataset.theme;
export const onTheme = (f) => listeners.push(f);

export function setTheme(name) {
    chosen = true;
    apply(name);
}

// The value of a palette variable, for canvases: color("accent").
export function color(name) {
    palette ??= new Map();
    let value = palette.get(name);
    if (value === undefined) {
        value = getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
        palette.set(name, value);
    }
    return value;
}
