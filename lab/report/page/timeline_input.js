// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Pointer and wheel on the timeline: go, zoom, pan, move the window of the overview, and a thumbnail
// where the pointer rests.

import { fill, h } from "../../page/dom.js";
import { clock, count } from "../../page/format.js";
import { isHeld, isReported } from "./frame_words.js";
import { frameAt, xOf } from "./timeline.js";

const kDragSlop = 4;
const kRestMs = 160;
const kThumbWidth = 184;
const kEdge = 6; // css pixels of the window's edge that resize it

export function listenTimeline(timeline) {
    const { over } = timeline;
    if (over === undefined) return;
    over.addEventListener("pointerdown", (e) => {
        if (e.button !== 0) return;
        if (inOverview(timeline, e)) dragOverview(timeline, e);
        else dragRange(timeline, e);
    });
    over.addEventListener("pointermove", (e) => hover(timeline, e));
    over.addEventListener("pointerleave", () => leave(timeline));
    over.addEventListener("dblclick", () => timeline.app.wholeClip());
    over.addEventListener("wheel", (e) => wheel(timeline, e), { passive: false });
    timeline.thumb = h("div.thumb", { hidden: true });
    document.body.append(timeline.thumb);
}

const xOfEvent = (timeline, e) => e.clientX - timeline.over.getBoundingClientRect().left;

const inOverview = (timeline, e) => {
    const box = timeline.tracks[0].plot.getBoundingClientRect();
    return e.clientY < box.bottom;
};

// Follows the pointer until it is let go; `move(x)` and `up(x, moved)` get css pixels.
function follow(timeline, e, move, up) {
    const { over } = timeline;
    const from = xOfEvent(timeline, e);
    let moved = false;
    over.setPointerCapture(e.pointerId);
    const onMove = (event) => {
        const x = xOfEvent(timeline, event);
        moved ||= Math.abs(x - from) > kDragSlop;
        if (moved) move(x);
    };
    const onUp = (event) => {
        over.removeEventListener("pointermove", onMove);
        over.removeEventListener("pointerup", onUp);
        over.removeEventListener("pointercancel", onUp);
        up(xOfEvent(timeline, event), moved);
    };
    over.addEventListener("pointermove", onMove);
    over.addEventListener("pointerup", onUp);
    over.addEventListener("pointercancel", onUp);
}

function dragRange(timeline, e) {
    const { app, over } = timeline;
    const selection = over.querySelector(".selection");
    const start = xOfEvent(timeline, e);
    const first = frameAt(timeline, start);
    // Near the playhead the drag moves it; elsewhere it chooses a range.
    const head = xOf(timeline, app.store.state.target + 0.5);
    const scrub = Math.abs(start - head) < 7;
    const clampX = (x) => Math.min(timeline.plotWidth, Math.max(0, x));
    follow(
        timeline,
        e,
        (x) => {
            if (scrub) {
                app.go(frameAt(timeline, clampX(x)));
                return;
            }
            const [a, b] = [Math.min(start, clampX(x)), Math.max(start, clampX(x))];
            selection.hidden = false;
            selection.style.left = `${a}px`;
            selection.style.width = `${b - a}px`;
        },
        (x, moved) => {
            selection.hidden = true;
            if (!moved) app.go(first);
            else if (!scrub && app.labels?.marking()) {
                app.labels.mark(first, frameAt(timeline, clampX(x)));
            } else if (!scrub) app.setRange(first, frameAt(timeline, clampX(x)));
        },
    );
}

function dragOverview(timeline, e) {
    const { app } = timeline;
    const { from, to } = app.store.state;
    const whole = from === 0 && to === app.frames - 1;
    const frameOf = (x) => (x / timeline.plotWidth) * app.frames;
    const start = xOfEvent(timeline, e);
    const [x0, x1] = [from, to + 1].map((f) => (f / app.frames) * timeline.plotWidth);
    const part =
        Math.abs(start - x0) < kEdge ? "left" : Math.abs(start - x1) < kEdge ? "right" : "body";
    const inside = start >= x0 - kEdge && start <= x1 + kEdge;
    follow(
        timeline,
        e,
        (x) => {
            const by = Math.round(frameOf(x) - frameOf(start));
            if (whole || !inside) app.go(Math.floor(frameOf(x)));
            else if (part === "left") app.setRange(from + by, to);
            else if (part === "right") app.setRange(from, to + by);
            else {
                const size = to - from;
                const a = Math.min(app.frames - 1 - size, Math.max(0, from + by));
                app.store.set({ from: a, to: a + size });
            }
        },
        (x, moved) => {
            if (!moved) app.go(Math.floor(frameOf(x)));
        },
    );
}

function hover(timeline, e) {
    const { app, over } = timeline;
    const x = xOfEvent(timeline, e);
    const inside = !inOverview(timeline, e);
    const f = inside
        ? frameAt(timeline, x)
        : Math.min(app.frames - 1, Math.max(0, Math.floor((x / timeline.plotWidth) * app.frames)));
    const line = over.querySelector(".cursorline");
    line.hidden = !inside;
    line.style.transform = `translateX(${xOf(timeline, f + 0.5)}px)`;
    timeline.showHover(f);
    clearTimeout(timeline.resting);
    timeline.thumb.hidden = true;
    if (e.buttons !== 0) return;
    timeline.resting = setTimeout(() => showThumb(timeline, f, e.clientX), kRestMs);
}

function leave(timeline) {
    clearTimeout(timeline.resting);
    timeline.thumb.hidden = true;
    timeline.over.querySelector(".cursorline").hidden = true;
    timeline.showHover(-1);
}

async function showThumb(timeline, f, clientX) {
    const { app, thumb } = timeline;
    const run = app.shownRun();
    const state = isReported(run, f)
        ? "box reported"
        : isHeld(run, f)
          ? "held by the gate"
          : "no box";
    const time = clock(f, app.fps);
    const text = [
        h("b", null, `Frame ${run.first + f}`),
        time === null ? "" : ` · ${time}`,
        h("br"),
        `${state} · ${count(run.columns.active[f])} active`,
    ];
    const put = (picture) => {
        fill(thumb, picture, h("div", null, text));
        thumb.hidden = false;
        const box = timeline.node.getBoundingClientRect();
        const left = Math.min(
            window.innerWidth - thumb.offsetWidth - 6,
            Math.max(6, clientX - kThumbWidth / 2),
        );
        thumb.style.left = `${left}px`;
        thumb.style.top = `${Math.max(4, box.top - thumb.offsetHeight - 6)}px`;
    };
    timeline.wanted = f;
    if (app.stills === null) {
        put(null);
        return;
    }
    const picture = await app.stills.get(f, kThumbWidth, { slot: "thumb" });
    const still = timeline.wanted === f && timeline.hover === f;
    if (picture !== null && still) put(picture);
}

function wheel(timeline, e) {
    const { app } = timeline;
    if (app.narrow() && !e.ctrlKey) return;
    e.preventDefault();
    const { from, to } = app.store.state;
    const size = to - from + 1;
    if (e.shiftKey) {
        const by = Math.round(((e.deltaY || e.deltaX) / 400) * size);
        const a = Math.min(app.frames - size, Math.max(0, from + by));
        app.store.set({ from: a, to: a + size - 1 });
        return;
    }
    const x = Math.min(timeline.plotWidth, Math.max(0, xOfEvent(timeline, e)));
    const share = x / timeline.plotWidth;
    const next = Math.min(app.frames, Math.max(8, Math.round(size * Math.exp(e.deltaY * 0.0015))));
    const a = Math.round(from + share * (size - next));
    const start = Math.min(app.frames - next, Math.max(0, a));
    app.store.set({ from: start, to: start + next - 1 });
}
