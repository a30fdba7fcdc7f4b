// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What the reader can do, whatever key, button or link asks for it.

export const kSpeeds = [0.1, 0.25, 0.5, 1, 2, 4, 8];

// Adds the actions to `app` (store, runs, video or null, stills, picture).
export function addActions(app) {
    const { store } = app;
    const last = () => app.frames - 1;
    const clamp = (f) => Math.min(last(), Math.max(0, Math.round(f)));

    app.go = (f) => {
        const target = clamp(f);
        if (store.state.playing) app.play(false);
        app.stills?.rest();
        store.set({ target, held: false });
        app.keepInRange(target);
        app.show(target);
    };
    app.step = (by) => app.go(store.state.target + by);
    app.choose = (block) => store.set({ block, tab: app.wide() ? store.state.tab : "block" });
    app.setLayer = (layer) => store.set({ layer });
    app.keepInRange = (f) => {
        const { from, to } = store.state;
        if (f >= from && f <= to) return;
        const size = to - from;
        const start = Math.min(Math.max(0, f - Math.round(size / 2)), app.frames - 1 - size);
        store.set({ from: start, to: start + size });
    };
    app.setRange = (from, to) => {
        const a = clamp(Math.min(from, to));
        const b = clamp(Math.max(from, to));
        const least = Math.min(last(), 7);
        const grow = Math.max(0, least - (b - a));
        const start = Math.max(0, Math.min(a - Math.floor(grow / 2), last() - least));
        store.set({ from: start, to: Math.min(last(), Math.max(b, start + least)) });
    };
    app.wholeClip = () => store.set({ from: 0, to: last() });
    app.moveBlock = (dx, dy) => {
        const { w, h } = app.runs[0].grid;
        const index = Math.max(0, store.state.block);
        const x = Math.min(w - 1, Math.max(0, (index % w) + dx));
        const y = Math.min(h - 1, Math.max(0, Math.floor(index / w) + dy));
        app.choose(y * w + x);
    };
    app.toggleFilter = (outcomes) => store.set({ filter: toggled(store.state.filter, outcomes) });
    app.letGo = () => {
        const s = store.state;
        if (s.filter !== null) store.set({ filter: null });
        else if (s.block >= 0) store.set({ block: -1 });
        else app.wholeClip();
    };
    app.speed = (by) => {
        const i = kSpeeds.indexOf(store.state.speed) + by;
        if (i >= 0 && i < kSpeeds.length) store.set({ speed: kSpeeds[i] });
    };
    addJumps(app);
}

// The filter with these outcomes chosen; the same ones again let it go.
export function toggled(filter, outcomes) {
    const same =
        filter !== null && filter.size === outcomes.length && outcomes.every((o) => filter.has(o));
    return same ? null : new Set(outcomes);
}

// The next start of an item of `starts` (ascending) after or before `f`, or -1.
export function neighbourStart(starts, f, forward) {
    if (forward) return starts.find((s) => s > f) ?? -1;
    return starts.findLast((s) => s < f) ?? -1;
}

function addJumps(app) {
    const { store } = app;
    app.nextEvent = (forward) => {
        const f = neighbourStart(app.jumpStarts(), store.state.target, forward);
        if (f >= 0) app.go(f);
    };
    app.zoomToEvent = () => {
        const run = app.shownRun();
        const f = store.state.target;
        const event = run.events.find(([a, b]) => f >= a && f <= b);
        if (event !== undefined) app.setRange(event[0] - 5, event[1] + 5);
    };
    // The next frame, after the one shown and then from the start, that has a block of this outcome.
    app.nextOutcome = (outcome) => {
        const column = app.shownRun().columns[`o${outcome}`];
        for (let i = 1; i <= app.frames; ++i) {
            const f = (store.state.target + i) % app.frames;
            if (column[f] > 0) {
                app.go(f);
                return;
            }
        }
    };
}
