// One decoder with exact frame numbers. The picture of a frame counts as shown only when the browser
// reports it with its media time; the event "seeked" may come before the picture.

const kGuardMs = 700; // a seek whose picture never came is asked for again after this long
const kSlowestRate = 1 / 16; // slower playing is refused by browsers, so it steps by a timer

export class FrameVideo {
    // `onPicture(frame)` runs inside the browser's frame callback, when `element` holds that frame.
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
            this.arrived(Math.floor(meta.mediaTime * this.fps + 0.25));
        });
    }

    arrived(frame) {
        this.shown = frame;
        if (this.playing) {
            const outside = frame < this.loop[0] || frame >= this.loop[1];
            if (outside && this.timer === undefined) this.wrap(frame);
            this.onPicture(frame);
            return;
        }
        // On loading the browser shows the first frame, whatever was asked for.
        if (!this.waiting || frame !== this.aim) return;
        this.waiting = false;
        clearTimeout(this.guard);
        this.onPicture(frame);
        if (this.target !== frame) this.start();
    }

    // Asks for a frame. While a seek runs the target is only replaced: the last one counts.
    seek(frame) {
        this.target = frame;
        if (this.waiting) return;
        if (frame === this.shown) {
            this.onPicture(frame);
            return;
        }
        this.start();
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
        if (rate < kSlowestRate) {
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
        this.target = this.shown;
        return this.shown;
    }
}

// Small pictures from a second decoder: thumbnails and the patches of reference frames. It rests
// while the reader steps, or steps would take twice as long.
const kRestMs = 140;
const kKeep = 400;

export class StillSource {
    // `width` x `height`: the part of the video, from its top left corner, that is the frame.
    constructor(url, fps, frames, width, height) {
        this.make = () => new FrameVideo(url, fps, frames, (f) => this.arrived(f));
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

    arrived(f) {
        const job = this.current;
        if (job === null || f !== job.f) return;
        this.current = null;
        const [w, hgt] = this.size;
        const width = job.width > 0 ? job.width : w;
        const canvas = document.createElement("canvas");
        canvas.width = width;
        canvas.height = Math.max(1, Math.round((width * hgt) / w));
        const ctx = canvas.getContext("2d");
        ctx.drawImage(this.video.element, 0, 0, w, hgt, 0, 0, canvas.width, canvas.height);
        this.cache.set(job.key, canvas);
        if (this.cache.size > kKeep) this.cache.delete(this.cache.keys().next().value);
        job.resolve(canvas);
        queueMicrotask(() => this.next());
    }
}
