// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A block's distance over 49 frames, 36 back and 12 on, with its thresholds as steps.

import { canvasContext } from "../../page/dom.js";
import { color } from "../../page/theme.js";
import { kActive, kOutcomes, kOver } from "./outcomes.js";
import { blockThresholds } from "./thresholds.js";

const kBack = 36;
const kOn = 12;
const kHeight = 96;
const kLeft = 26;
const kRight = 30;
const kTicks = [0, 3, 15, 63, 255];

const level = (d) => Math.log2(1 + d) / 8;

export function drawHistory(app, run, canvas, frame, block) {
    const width = canvas.clientWidth;
    if (width < 40) return;
    const ctx = canvasContext(canvas, width, kHeight);
    const plot = { x: kLeft, y: 7, w: width - kLeft - kRight, h: kHeight - 23 };
    const first = frame - kBack;
    const each = plot.w / (kBack + kOn + 1);
    const yOf = (d) => plot.y + plot.h * (1 - level(d));
    axes(ctx, plot, yOf);
    ctx.fillStyle = color("accent-ground");
    ctx.fillRect(plot.x + kBack * each, plot.y, each, plot.h);

    const steps = [];
    for (let i = 0; i <= kBack + kOn; ++i) {
        const f = first + i;
        if (f < 0 || f >= run.frames) continue;
        const values = run.blocks(f);
        if (values === null) continue;
        const x = plot.x + i * each;
        bar(ctx, values, block, x, each, yOf);
        steps.push({ x, t: blockThresholds(run.settings, run.lumaThreshold(f, block)) });
    }
    thresholds(ctx, steps, each, yOf, plot);
    frameNumbers(ctx, run, frame, plot, each);
    canvas.onclick = (e) => {
        const at = Math.floor((e.offsetX - plot.x) / each);
        if (at >= 0 && at <= kBack + kOn) app.go(first + at);
    };
}

function axes(ctx, plot, yOf) {
    ctx.font = "10px system-ui, sans-serif";
    ctx.textAlign = "right";
    ctx.textBaseline = "middle";
    for (const d of kTicks) {
        ctx.strokeStyle = color("grid");
        ctx.lineWidth = 1;
        ctx.beginPath();
        ctx.moveTo(plot.x, Math.round(yOf(d)) + 0.5);
        ctx.lineTo(plot.x + plot.w, Math.round(yOf(d)) + 0.5);
        ctx.stroke();
        ctx.fillStyle = color("ink2");
        ctx.fillText(String(d), plot.x - 4, yOf(d));
    }
}

// Full: active. Hollow: over the threshold but turned down. Grey: below.
function bar(ctx, values, block, x, each, yOf) {
    const d = values.distance[block];
    if (d === 0) return;
    const { group } = kOutcomes[values.outcome[block]];
    const w = Math.max(1, each - 1.5);
    const top = yOf(d);
    const hgt = yOf(0) - top;
    if (group === kOver) {
        ctx.strokeStyle = color("refused");
        ctx.lineWidth = 1;
        ctx.strokeRect(x + 0.5, top + 0.5, w - 1, hgt - 1);
        return;
    }
    ctx.fillStyle = color(group === kActive ? "counted" : "all");
    ctx.fillRect(x, top, w, hgt);
}

function thresholds(ctx, steps, each, yOf, plot) {
    ctx.strokeStyle = color("threshold");
    ctx.lineWidth = 1.2;
    ctx.fillStyle = color("threshold");
    ctx.textAlign = "left";
    const labels = [];
    for (const [name, dash] of [
        ["th", []],
        ["alone", [4, 2]],
        ["high", [1.5, 2]],
    ]) {
        ctx.setLineDash(dash);
        ctx.beginPath();
        let last = null;
        for (const { x, t } of steps) {
            const y = yOf(t[name]);
            if (last === null || x - last > each * 1.5) ctx.moveTo(x, y);
            else ctx.lineTo(x, y);
            ctx.lineTo(x + each, y);
            last = x;
        }
        ctx.stroke();
        if (steps.length > 0) labels.push([steps.at(-1).t[name], yOf(steps.at(-1).t[name])]);
    }
    ctx.setLineDash([]);
    let free = Number.POSITIVE_INFINITY;
    for (const [d, y] of labels) {
        const at = Math.min(y, free);
        ctx.fillText(String(d), plot.x + plot.w + 4, at);
        free = at - 9;
    }
}

function frameNumbers(ctx, run, frame, plot, each) {
    ctx.textBaseline = "top";
    const y = plot.y + plot.h + 3;
    const put = (f, align, ink) => {
        if (f < 0 || f >= run.frames) return;
        ctx.fillStyle = color(ink);
        ctx.textAlign = align;
        ctx.fillText(String(run.first + f), plot.x + (f - frame + kBack + 0.5) * each, y);
    };
    put(frame - kBack, "left", "ink2");
    put(frame, "center", "accent");
    put(frame + kOn, "right", "ink2");
}
