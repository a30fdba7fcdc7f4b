// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The parts that all views share: state, runs, decoder, picture.

import { createStore } from "../../page/store.js";
import { addActions } from "./actions.js";
import { createDifference } from "./compare.js";
import { Picture } from "./picture.js";
import { FrameVideo, StillSource } from "./video.js";

const kWide = window.matchMedia("(min-width: 1700px)");
const kNarrow = window.matchMedia("(max-width: 899px)");

export function createApp(head, runs, videoUrl) {
    const { grid } = runs[0];
    const app = {
        head,
        runs,
        frames: head.clip.frames,
        fps: head.clip.fps ?? 0,
        difference: runs.length > 1 ? createDifference(runs) : null,
        labels: null,
        wide: () => kWide.matches && app.store.state.paper !== true,
        narrow: () => kNarrow.matches,
        shownRun: () => runs[app.store.state.view === "b" ? 1 : 0],
        jumpStarts: () =>
            app.difference === null
                ? app.shownRun().events.map(([first]) => first)
                : [...app.difference.boxes.onlyA, ...app.difference.boxes.onlyB]
                      .map((r) => r.first)
                      .sort((a, b) => a - b),
    };
    app.store = createStore({
        frame: head.opening,
        target: head.opening,
        view: "a",
        layer: runs.length > 1 ? "diff" : "decision",
        strength: 0.8,
        picture: "grey",
        boxes: true,
        grid: false,
        block: -1,
        filter: null,
        tab: runs.length > 1 ? "difference" : "block",
        from: 0,
        to: head.clip.frames - 1,
        speed: 1,
        playing: false,
        zoom: 1,
        centerX: grid.width / 2,
        centerY: grid.height / 2,
        held: false,
        drawn: 0,
        blocksReady: 0,
        differenceReady: 0,
        layout: 0,
        theme: "",
        paper: false,
        labelBox: null,
        labelRows: 0,
    });
    kWide.addEventListener("change", () => app.store.set({ layout: app.store.state.layout + 1 }));
    addActions(app);
    addPicture(app, head, videoUrl);
    addPlay(app);
    addReference(app);
    return app;
}

function addPicture(app, head, videoUrl) {
    const { store, runs } = app;
    app.holding = -1;
    app.video = null;
    app.stills = null;
    if (videoUrl === null) {
        app.picture = new Picture(runs[0].grid.width, runs[0].grid.height);
        app.show = (f) => showMeans(app, f);
        store.on(["blocksReady"], () => showMeans(app, store.state.target));
        return;
    }
    const { fps, shown_width: width, shown_height: height } = head.video;
    app.picture = new Picture(width, height);
    app.video = new FrameVideo(videoUrl, fps, app.frames, (f, image) => arrived(app, f, image));
    app.stills = new StillSource(videoUrl, fps, app.frames, width, height);
    app.video.element.className = "decoder";
    document.body.append(app.video.element);
    app.show = (f) => app.video.seek(f);
    app.video.failed.then(() => app.withoutVideo());
    app.withoutVideo = () => {
        if (app.video === null) return;
        app.video.element.remove();
        app.video = null;
        app.stills = null;
        app.note(
            "This browser cannot play the video in this file, so the means of the blocks are shown.",
        );
        app.show = (f) => showMeans(app, f);
        store.on(["blocksReady"], () => showMeans(app, store.state.target));
        showMeans(app, store.state.target);
    };
}

// A picture has come: take it over and show it under its own number.
function arrived(app, f, image) {
    const { store, picture } = app;
    if (f < 0 || f >= app.frames) return;
    picture.grab(image, f);
    const drawn = store.state.drawn + 1;
    if (app.holding === f && f !== store.state.frame) {
        store.set({ held: true, drawn });
        return;
    }
    if (app.holding >= 0) return;
    store.set({ frame: f, held: false, drawn, ...(store.state.playing ? { target: f } : {}) });
}

function showMeans(app, f) {
    const run = app.runs[0];
    const means = run.means(f);
    if (means === null) app.picture.clear(f);
    else app.picture.fromMeans(means, run.grid, f);
    app.store.set({ frame: f, drawn: app.store.state.drawn + 1 });
}

function addPlay(app) {
    const { store } = app;
    const rate = () => (store.state.speed * (app.fps > 0 ? app.fps : 25)) / 25;
    let timer;
    const tick = () => {
        const { frame, from, to } = store.state;
        const next = frame + 1 > to || frame < from ? from : frame + 1;
        store.set({ target: next });
        app.show(next);
    };
    app.play = (on) => {
        if (on === store.state.playing || app.frames === 1) return;
        clearInterval(timer);
        if (app.video === null) {
            if (on) timer = setInterval(tick, 1000 / (25 * rate()));
        } else if (on) {
            const { from, to, frame } = store.state;
            app.video.loop = [from, to];
            if (frame < from || frame >= to) app.video.seek(from);
            app.video.play(rate());
        } else {
            app.video.pause();
            store.set({ target: store.state.frame });
        }
        store.set({ playing: on });
    };
    store.on(["speed", "from", "to"], () => {
        if (!store.state.playing) return;
        app.play(false);
        app.play(true);
    });
}

// While the key is held the stage shows the reference frame, without overlay and with its number.
function addReference(app) {
    const { store } = app;
    app.holdReference = (on) => {
        if (on === app.holding >= 0 || app.video === null || app.frames === 1) return;
        if (on && store.state.playing) app.play(false);
        if (!on) {
            app.holding = -1;
            app.video.seek(store.state.target);
            return;
        }
        const reference = Math.max(0, store.state.frame - app.runs[0].settings.MD_RefFrmIdx);
        if (reference === store.state.frame) return;
        app.holding = reference;
        app.video.seek(reference);
    };
}
