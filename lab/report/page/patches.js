// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The chosen block's pixels in this frame and in the reference, enlarged.

import { h } from "../../page/dom.js";

// Two empty canvases, or null where the page has no video.
export function patches(app) {
    if (app.stills === null) return null;
    return h(
        "div.patches",
        null,
        h("canvas.now", {
            width: 16,
            height: 16,
            title: "This frame",
            role: "img",
            "aria-label": "This frame",
        }),
        h("canvas.ref", {
            width: 16,
            height: 16,
            title: "Reference",
            role: "img",
            "aria-label": "Reference frame",
        }),
    );
}

// This frame from the stage's own picture, the reference from the second decoder.
export async function showPatches(app, node, frame, block) {
    const now = node.querySelector("canvas.now");
    if (now === null || app.picture.frame !== frame) return;
    const run = app.runs[0];
    drawPatch(now, app.picture.raw, run.grid, block);
    const reference = Math.max(0, frame - run.settings.MD_RefFrmIdx);
    const still = await app.stills.get(reference, 0, { urgent: true, slot: "patch" });
    const canvas = node.querySelector("canvas.ref");
    const current = app.store.state;
    if (still === null || canvas === null) return;
    if (current.frame === frame && current.block === block)
        drawPatch(canvas, still, run.grid, block);
}

function drawPatch(canvas, source, grid, block) {
    const ctx = canvas.getContext("2d");
    const scale = source.width / grid.width;
    const x = (block % grid.w) * grid.stride * scale;
    const y = Math.floor(block / grid.w) * grid.stride * scale;
    ctx.globalCompositeOperation = "copy";
    ctx.drawImage(source, x, y, 16 * scale, 16 * scale, 0, 0, 16, 16);
    ctx.globalCompositeOperation = "saturation";
    ctx.fillStyle = "#808080";
    ctx.fillRect(0, 0, 16, 16);
}
