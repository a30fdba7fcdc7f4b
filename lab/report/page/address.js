// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The address follows what is shown, so that a mail can point at a block:
// #f=558&b=18,38&l=distance&t=hist, with the frame's number of the log. Parsing is pure.

const kTabs = {
    block: "block",
    hist: "distances",
    events: "events",
    settings: "settings",
    diff: "difference",
    labels: "labels",
};
const kShortTabs = Object.fromEntries(Object.entries(kTabs).map(([short, tab]) => [tab, short]));
const kWait = 300; // ms; browsers refuse too many changes of the address

export function writeAddress({ frame, block, layer, tab }, run) {
    const parts = [`f=${run.first + frame}`];
    if (block >= 0) parts.push(`b=${block % run.grid.w},${Math.floor(block / run.grid.w)}`);
    parts.push(`l=${layer}`, `t=${kShortTabs[tab]}`);
    return `#${parts.join("&")}`;
}

// What of an address makes sense: a patch of the state; unknown or impossible parts are dropped.
export function readAddress(hash, run, layers) {
    const fields = new URLSearchParams(hash.replace(/^#/, ""));
    const patch = {};
    const f = Number.parseInt(fields.get("f") ?? "", 10) - run.first;
    if (f >= 0 && f < run.frames) patch.frame = f;
    const place = /^(\d+),(\d+)$/.exec(fields.get("b") ?? "");
    if (place !== null) {
        const [x, y] = [Number(place[1]), Number(place[2])];
        if (x < run.grid.w && y < run.grid.h) patch.block = y * run.grid.w + x;
    }
    if (layers.includes(fields.get("l"))) patch.layer = fields.get("l");
    if (Object.hasOwn(kTabs, fields.get("t") ?? "")) patch.tab = kTabs[fields.get("t")];
    return patch;
}

export function followAddress(app, layers) {
    let timer;
    app.store.on(["frame", "block", "layer", "tab"], (s) => {
        clearTimeout(timer);
        if (s.playing) return;
        timer = setTimeout(() => {
            const hash = writeAddress(app.store.state, app.runs[0]);
            if (hash !== location.hash) history.replaceState(null, "", hash);
        }, kWait);
    });
    window.addEventListener("hashchange", () => {
        const { frame, ...rest } = readAddress(location.hash, app.runs[0], layers);
        app.store.set(rest);
        if (frame !== undefined) app.go(frame);
    });
}
