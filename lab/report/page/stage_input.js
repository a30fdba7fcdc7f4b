// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Pointer and wheel on the stage: choose a block, zoom, pan, read values under the pointer, and drag
// a box while labels are made.

import { fill, rich } from "../../page/dom.js";
import { inspect } from "./inspect.js";
import { blockAt } from "./layers.js";
import { center, fit, viewportAt, zoomAt } from "./stage.js";
import { hoverLines } from "./words.js";

const kClickSlop = 4; // css pixels that a click may move

export function listenStage(stage) {
    const { canvas } = stage;
    canvas.addEventListener("pointerdown", (e) => startDrag(stage, e));
    canvas.addEventListener("pointermove", (e) => hover(stage, e));
    canvas.addEventListener("pointerleave", () => {
        stage.tip.hidden = true;
    });
    canvas.addEventListener("dblclick", (e) => toggleZoom(stage, e));
    canvas.addEventListener("wheel", (e) => wheel(stage, e), { passive: false });
}

const place = (stage, e) => {
    const box = stage.canvas.getBoundingClientRect();
    return [e.clientX - box.left, e.clientY - box.top];
};

function startDrag(stage, e) {
    if (e.button !== 0) return;
    const { canvas, app } = stage;
    const from = place(stage, e);
    const s = app.store.state;
    const view = viewportAt(stage, from[0]);
    const begin = { x: s.centerX, y: s.centerY };
    const labels = app.labels?.drawing() ?? false;
    let moved = false;
    canvas.setPointerCapture(e.pointerId);

    const toWorking = ([px, py]) => [
        (px - view.g.x) / view.g.scale,
        (py - view.g.y) / view.g.scale,
    ];
    const move = (event) => {
        const to = place(stage, event);
        const [dx, dy] = [to[0] - from[0], to[1] - from[1]];
        moved ||= Math.abs(dx) + Math.abs(dy) > kClickSlop;
        if (!moved) return;
        stage.tip.hidden = true;
        if (labels) app.labels.drag(toWorking(from), toWorking(to));
        else center(stage, s.zoom, begin.x - dx / view.g.scale, begin.y - dy / view.g.scale);
    };
    const up = () => {
        canvas.removeEventListener("pointermove", move);
        canvas.removeEventListener("pointerup", up);
        canvas.removeEventListener("pointercancel", up);
        if (!moved) {
            const index = blockAt(view.g, ...from);
            if (index >= 0) app.choose(index);
        } else if (labels) {
            app.labels.dropped();
        }
    };
    canvas.addEventListener("pointermove", move);
    canvas.addEventListener("pointerup", up);
    canvas.addEventListener("pointercancel", up);
}

function hover(stage, e) {
    const { app, tip } = stage;
    const at = place(stage, e);
    const view = viewportAt(stage, at[0]);
    const index = e.buttons === 0 ? blockAt(view.g, ...at) : -1;
    const s = app.store.state;
    const r = index < 0 || s.held ? null : inspect(app.runs[view.run], s.frame, index);
    tip.hidden = r === null;
    if (r === null) return;
    const [first, second] = hoverLines(r.x, r.y, r);
    fill(tip, rich(first), document.createElement("br"), second);
    const left =
        at[0] + tip.offsetWidth + 24 > stage.width ? at[0] - tip.offsetWidth - 12 : at[0] + 14;
    const top = Math.min(at[1] + 14, stage.height - tip.offsetHeight - 4);
    tip.style.left = `${Math.max(2, left)}px`;
    tip.style.top = `${Math.max(2, top)}px`;
}

function toggleZoom(stage, e) {
    const at = place(stage, e);
    const s = stage.app.store.state;
    if (s.zoom > 1) {
        fit(stage);
        return;
    }
    const { g } = viewportAt(stage, at[0]);
    center(stage, 5, (at[0] - g.x) / g.scale, (at[1] - g.y) / g.scale);
}

function wheel(stage, e) {
    // On narrow screens the page itself scrolls, so zooming needs the key.
    if (stage.app.narrow() && !e.ctrlKey) return;
    e.preventDefault();
    zoomAt(stage, Math.exp(-e.deltaY * 0.0015), ...place(stage, e));
}
