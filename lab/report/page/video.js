// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// One decoder with exact frame numbers. The event "seeked" may come before the picture, and the
// callback for a frame may run when the element already holds the next one. So the number is read
// from the very picture that is drawn.

const kGuardMs = 700; // a seek whose picture never came is asked for again after this long
const kSlowestRate = 1 / 16; // slower playing is refused by browsers, so it steps by a timer; so it does
// where a playing video does not say which frame is drawn

// The picture that a video element holds now, with its own time in seconds: { image, time, close() }.
// Without VideoFrame the time is that of the callback, which is exact while the video is paused.
function capture(element, callbackTime) {
    if (typeof VideoFrame !== "function") {
        return { image: element, time: callbackTime, close() {} };
    }
    const image = new VideoFrame(element);
    return { image, time: image.timestamp / 1e6, close: () => image.close() };
}

export class FrameVideo {
    // `onPicture(frame, image)` runs in the browser's frame callback; `image` can be drawn until it
    // returns.
    constructor(url, fps, frames, onPicture) {
        this.fps = fps;
        this.frames = frames;
        this.onPicture = onPicture;
        this.shown = -1;
        this.target = -1;
        this.aim = -1;
        this.waiting = false;
        this.playing = false;
        this.loop = [0, frames - 1];
        this.element = document.createElement("video");
        this.element.muted = true;
        this.element.playsInline = true;
        this.element.preload = "auto";
        this.element.tabIndex = -1;
        this.element.setAttribute("aria-hidden", "true");
        this.element.src = url;
        this.failed = new Promise((resolve) => {
            this.element.addEventListener("error", () => resolve(true));
        });
        this.listen();
    }

    listen() {
        this.element.requestVideoFrameCallback((_now, meta) => {
            this.listen();
            const picture = capture(this.element, meta.mediaTime);
            this.arrived(this.frameAt(picture.time), picture.image);
            picture.close();
        });
    }

    frameAt(time) {
        return Math.floor(time * this.fps + 0.25);
    }

    arrived(frame, image) {
        this.shown = frame;
        if (this.playing) {
            const outside = frame < this.loop[0] || frame >= this.loop[1];
            if (outside && this.timer === undefined) this.wrap(frame);
            this.onPicture(frame, image);
            return;
        }
        // On loading the browser shows the first frame, whatever was asked for.
        if (!this.waiting || frame !== this.aim) return;
        this.waiting = false;
        clearTimeout(this.guard);
        this.onPicture(frame, image);
        if (this.target !== frame) this.start();
    }

    // Asks for a frame. While a seek runs the target is only replaced: the last one counts.
    seek(frame) {
        this.target = frame;
        if (this.waiting) return;
        if (frame !== this.shown || !this.showAgain(frame)) this.start();
    }

    // A seek to the frame that is there already brings no new picture, so it is shown as it is. False
    // if the element has moved on since, as it may after playing.
    showAgain(frame) {
        const picture = capture(this.element, (frame + 0.5) / this.fps);
        const same = this.frameAt(picture.time) === frame;
        if (same) this.onPicture(frame, picture.image);
        picture.close();
        return same;
    }

    start() {
        this.aim = this.target;
        this.waiting = true;
        this.element.currentTime = (this.aim + 0.5) / this.fps;
        this.armGuard(0);
    }

    armGuard(tries) {
        clearTimeout(this.guard);
        this.guard = setTimeout(() => {
            if (!this.waiting || document.hidden) return;
            // A slightly different time within the frame, or browsers would skip the seek.
            this.element.currentTime = (this.aim + (tries % 2 === 0 ? 0.6 : 0.4)) / this.fps;
            this.armGuard(tries + 1);
        }, kGuardMs);
    }

    // Plays `rate` times as fast as 25 frames a second, within the loop.
    play(rate) {
        this.playing = true;
        this.waiting = false;
        clearTimeout(this.guard);
        if (rate < kSlowestRate || typeof VideoFrame !== "function") {
            this.timer = setInterval(() => this.tick(), 1000 / (this.fps * rate));
            return;
        }
        this.element.playbackRate = Math.min(rate, 16);
        this.element.play().catch(() => {});
    }

    tick() {
        const next = this.shown + 1 > this.loop[1] ? this.loop[0] : this.shown + 1;
        this.element.currentTime = (next + 0.5) / this.fps;
    }

    wrap(frame) {
        if (frame >= this.loop[0] && frame <= this.loop[1] && !this.element.ended) {
            // The last frame stays for its time, then the loop starts over.
            clearTimeout(this.again);
            const rate = Math.max(this.element.playbackRate, kSlowestRate);
            this.again = setTimeout(() => this.toLoopStart(), 1000 / (this.fps * rate));
            this.element.pause();
            return;
        }
        this.toLoopStart();
    }

    toLoopStart() {
        if (!this.playing) return;
        this.element.currentTime = (this.loop[0] + 0.5) / this.fps;
        if (this.timer === undefined) this.element.play().catch(() => {});
    }

    pause() {
        this.playing = false;
        clearInterval(this.timer);
        clearTimeout(this.again);
        this.timer = undefined;
        this.element.pause();
    }
}

// Small pictures from a second decoder: thumbnails and the patches of reference frames. It rests
// while the reader steps, or steps would take twice as long.
const kRestMs = 140;
const kKeep = 400;

export class StillSource {
    // `width` x `height`: the part of the video, from its top left corner, that is the frame.
    constructor(url, fps, frames, width, height) {
        this.make = () => new FrameVideo(url, fps, frames, (f, image) => this.arrived(f, image));
        this.size = [width, height];
        this.video = null;
        this.queue = [];
        this.current = null;
        this.cache = new Map();
        this.lastStep = 0;
    }

    // Called at every step of the reader.
    rest() {
        this.lastStep = performance.now();
    }

    // A canvas with frame `f`, `width` pixels wide (0: as the video is). `urgent` goes first. A later
    // call with the same `slot` replaces one that still waits; the replaced one gives null.
    get(f, width, { urgent = false, slot = null } = {}) {
        const key = `${f}/${width}`;
        const hit = this.cache.get(key);
        if (hit !== undefined) return Promise.resolve(hit);
        if (slot !== null) {
            const i = this.queue.findIndex((job) => job.slot === slot);
            if (i >= 0) this.queue.splice(i, 1)[0].resolve(null);
        }
        return new Promise((resolve) => {
            const job = { f, width, key, slot, resolve };
            if (urgent) this.queue.unshift(job);
            else this.queue.push(job);
            this.next();
        });
    }

    next() {
        if (this.current !== null || this.queue.length === 0) return;
        const wait = this.lastStep + kRestMs - performance.now();
        if (wait > 0) {
            clearTimeout(this.later);
            this.later = setTimeout(() => this.next(), wait);
            return;
        }
        if (this.video === null) {
            this.video = this.make();
            this.video.element.className = "decoder";
            document.body.append(this.video.element);
        }
        this.current = this.queue.shift();
        this.video.seek(this.current.f);
    }

    arrived(f, image) {
        const job = this.current;
        if (job === null || f !== job.f) return;
        this.current = null;
        const [w, hgt] = this.size;
        const width = job.width > 0 ? job.width : w;
        const canvas = document.createElement("canvas");
        canvas.width = width;
        canvas.height = Math.max(1, Math.round((width * hgt) / w));
        const ctx = canvas.getContext("2d");
        ctx.drawImage(image, 0, 0, w, hgt, 0, 0, canvas.width, canvas.height);
        this.cache.set(job.key, canvas);
        if (this.cache.size > kKeep) this.cache.delete(this.cache.keys().next().value);
        job.resolve(canvas);
        queueMicrotask(() => this.next());
    }
}
