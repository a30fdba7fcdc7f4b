// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The keyboard. One table; the help lists the same rows. Keys stay free while typing and with Ctrl or
// Meta.

// [keys shown, what they do, test of the event, action of the app]
export const kKeys = [
    ["← →", "frame back, on", (e) => arrow(e, false, false), (app, e) => app.step(sign(e))],
    ["Shift ← →", "ten frames", (e) => arrow(e, true, false), (app, e) => app.step(10 * sign(e))],
    [
        "Home End",
        "first, last frame",
        (e) => e.key === "Home" || e.key === "End",
        (app, e) => app.go(e.key === "Home" ? 0 : app.frames - 1),
    ],
    [
        "P N",
        "event (difference) before, next",
        (e) => low(e) === "p" || low(e) === "n",
        (app, e) => app.nextEvent(low(e) === "n"),
    ],
    ["Space", "play, pause", (e) => e.key === " ", (app) => app.play(!app.store.state.playing)],
    [
        "< >",
        "slower, faster",
        (e) => e.key === "<" || e.key === ">",
        (app, e) => app.speed(e.key === ">" ? 1 : -1),
    ],
    ["F", "type a frame number", (e) => low(e) === "f", (app) => app.typeFrame()],
    ["1 … 6", "layer", (e) => /^[1-7]$/.test(e.key), (app, e) => app.layerAt(Number(e.key) - 1)],
    [
        "[ ]",
        "overlay weaker, stronger",
        (e) => e.key === "[" || e.key === "]",
        (app, e) => app.strengthBy(e.key === "]" ? 0.1 : -0.1),
    ],
    ["B", "boxes", (e) => low(e) === "b", (app) => app.toggle("boxes")],
    ["G", "grid", (e) => low(e) === "g", (app) => app.toggle("grid")],
    ["R held", "reference frame", (e) => low(e) === "r", (app) => app.holdReference(true)],
    [
        "+ − 0",
        "zoom in, out, fit",
        (e) => ["+", "=", "-", "−", "0"].includes(e.key),
        (app, e) => zoom(app, e.key),
    ],
    [
        "Alt ← ↑ ↓ →",
        "neighbouring block",
        (e) => e.altKey && e.key.startsWith("Arrow"),
        (app, e) => app.moveBlock(...kArrows[e.key]),
    ],
    ["C", "copy the block as text", (e) => low(e) === "c", (app) => app.copyBlock()],
    ["Z", "zoom to this event", (e) => low(e) === "z", (app) => app.zoomToEvent()],
    ["L", "labels: mark what should be found", (e) => low(e) === "l", (app) => app.openLabels()],
    ["T", "light, dark", (e) => low(e) === "t", (app) => app.switchTheme()],
    ["Esc", "let go: filter, block, range", (e) => e.key === "Escape", (app) => app.letGo()],
    ["?", "keys and reading help", (e) => e.key === "?", (app) => app.openHelp()],
];

const kArrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
const low = (e) => (e.altKey ? "" : e.key.toLowerCase());
const sign = (e) => (e.key === "ArrowRight" ? 1 : -1);
const arrow = (e, shift, alt) =>
    (e.key === "ArrowLeft" || e.key === "ArrowRight") && e.shiftKey === shift && e.altKey === alt;

function zoom(app, key) {
    if (key === "0") app.zoomFit();
    else app.zoomBy(key === "+" || key === "=" ? 1.5 : 1 / 1.5);
}

const typing = (node) => {
    if (node instanceof HTMLInputElement)
        return !["range", "checkbox", "radio"].includes(node.type);
    return node instanceof HTMLTextAreaElement || node instanceof HTMLSelectElement;
};

export function listenKeys(app) {
    window.addEventListener("keydown", (e) => {
        if (e.ctrlKey || e.metaKey || typing(e.target) || document.querySelector("dialog[open]"))
            return;
        // A focused button keeps its own keys; a slider its arrows.
        if (e.target instanceof HTMLButtonElement && (e.key === " " || e.key === "Enter")) return;
        if (e.target instanceof HTMLInputElement && e.key.startsWith("Arrow")) return;
        const row = kKeys.find(([, , test]) => test(e));
        if (row === undefined) return;
        e.preventDefault();
        if (e.repeat && low(e) === "r") return;
        row[3](app, e);
    });
    window.addEventListener("keyup", (e) => {
        if (e.key.toLowerCase() === "r") app.holdReference(false);
    });
    window.addEventListener("blur", () => app.holdReference(false));
}
