// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The picture under the overlay: a copy of the frame that the decoder showed, in the chosen look. It
// is made in the same callback that gives the frame's number, so that the two always agree.

export class Picture {
    // `width` x `height`: the part of the video, from its top left corner, that is the frame.
    constructor(width, height) {
        this.raw = document.createElement("canvas");
        this.raw.width = width;
        this.raw.height = height;
        this.look = document.createElement("canvas");
        this.look.width = width;
        this.look.height = height;
        this.frame = -1;
        this.done = "";
    }

    // Takes over frame `f`.
    grab(image, f) {
        const { width, height } = this.raw;
        this.raw.getContext("2d").drawImage(image, 0, 0, width, height, 0, 0, width, height);
        this.frame = f;
        this.done = "";
    }

    // Block means as a smooth picture, for files without video.
    fromMeans(means, grid, f) {
        const small = document.createElement("canvas");
        small.width = grid.w;
        small.height = grid.h;
        const ctx = small.getContext("2d");
        const image = ctx.createImageData(grid.w, grid.h);
        for (let i = 0; i < means.length; ++i) {
            image.data.fill(means[i], 4 * i, 4 * i + 3);
            image.data[4 * i + 3] = 255;
        }
        ctx.putImageData(image, 0, 0);
        const out = this.raw.getContext("2d");
        out.clearRect(0, 0, this.raw.width, this.raw.height);
        const scale = this.raw.width / grid.width;
        const size = (n) => ((n - 1) * grid.stride + 16) * scale;
        out.drawImage(small, 0, 0, size(grid.w), size(grid.h));
        this.frame = f;
        this.done = "";
    }

    clear(f) {
        this.raw.getContext("2d").clearRect(0, 0, this.raw.width, this.raw.height);
        this.frame = f;
        this.done = "";
    }

    // The frame as "colour", "grey", "dim" or "none", or null for none.
    as(look) {
        if (look === "none" || this.frame < 0) return null;
        if (look === "colour") return this.raw;
        if (this.done === look) return this.look;
        const { width, height } = this.look;
        const ctx = this.look.getContext("2d");
        ctx.globalCompositeOperation = "copy";
        ctx.drawImage(this.raw, 0, 0);
        // Mixing in a colour without saturation leaves the lightness: grey, as the chip sees it.
        ctx.globalCompositeOperation = "saturation";
        ctx.fillStyle = "#808080";
        ctx.fillRect(0, 0, width, height);
        if (look === "dim") {
            ctx.globalCompositeOperation = "source-over";
            ctx.fillStyle = "rgba(12,14,17,0.62)";
            ctx.fillRect(0, 0, width, height);
        }
        this.done = look;
        return this.look;
    }
}
