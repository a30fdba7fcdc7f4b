// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A clip's frames as a strip: one colour for hit, miss, false frame and quiet frame.

import { canvasContext } from "../../page/dom.js";
import { color } from "../../page/theme.js";
import { pixelsOf } from "./strip_pixels.js";

const kHeight = 16;
const kColors = {
    h: "reported",
    r: "reported",
    m: "threshold",
    f: "counted",
    ".": "empty",
    "-": "empty",
    i: "grid",
};

export function drawStrip(canvas, text) {
    const width = Math.max(40, Math.floor(canvas.parentElement.clientWidth));
    const ctx = canvasContext(canvas, width, kHeight);
    pixelsOf(text, width).forEach((letter, x) => {
        ctx.fillStyle = color(kColors[letter]);
        // Misses are drawn at the top, false frames at the bottom, so that they differ without colour.
        const [top, height] = letter === "m" ? [0, 9] : letter === "f" ? [7, 9] : [0, kHeight];
        if (height < kHeight) {
            ctx.fillStyle = color("empty");
            ctx.fillRect(x, 0, 1, kHeight);
            ctx.fillStyle = color(kColors[letter]);
        }
        ctx.fillRect(x, top, 1, height);
    });
}
