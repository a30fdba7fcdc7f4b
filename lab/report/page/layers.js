// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What the stage draws over the picture: one function a layer, and the boxes and frames. They know
// the place of cells on the screen and the recorded values of one frame, nothing else.

import { kKinds, kOutcomes } from "./outcomes.js";
import { kFlagActive, kFlagHigh } from "./inspect.js";

export const kBoxAfter = "#3fe0ff";
export const kBoxBefore = "#ffffff";
const kAmber = "#f5a300";
const kOrange = "#ff6a13";
const kBlueLow = [26, 60, 110];
const kBlueHigh = [120, 200, 255];
const kFillShare = 0.6; // filled masks take this share of the strength, so that people stay visible
const kHeat = ["#3b1c6e", "#7c2682", "#c83e5a", "#f5882c", "#fff08c"];

const channels = (hex) => [1, 3, 5].map((i) => Number.parseInt(hex.slice(i, i + 2), 16));

// Colour of a distance 0 to 255 on the heat ramp, over log2(1 + d).
export const kHeatRamp = Array.from({ length: 256 }, (_, d) => {
    const at = (Math.log2(1 + d) / 8) * (kHeat.length - 1);
    const i = Math.min(Math.floor(at), kHeat.length - 2);
    const [a, b] = [channels(kHeat[i]), channels(kHeat[i + 1])];
    return a.map((c, k) => Math.round(c + (b[k] - c) * (at - i)));
});

const rgb = (c, alpha = 1) => `rgba(${c[0]},${c[1]},${c[2]},${alpha})`;

// Where things are on the stage: `scale` css pixels a working pixel, origin at (x, y). A cell is
// drawn in the middle of its block of 16x16 pixels, for blocks overlap.
export function geometry(grid, scale, x, y) {
    const cell = Math.min(grid.stride, 16);
    const inset = (16 - cell) / 2;
    const edgeX = new Int32Array(grid.w * 2);
    const edgeY = new Int32Array(grid.h * 2);
    for (let i = 0; i < grid.w; ++i) {
        edgeX[2 * i] = Math.round(x + (i * grid.stride + inset) * scale);
        edgeX[2 * i + 1] = Math.round(x + (i * grid.stride + inset + cell) * scale);
    }
    for (let i = 0; i < grid.h; ++i) {
        edgeY[2 * i] = Math.round(y + (i * grid.stride + inset) * scale);
        edgeY[2 * i + 1] = Math.round(y + (i * grid.stride + inset + cell) * scale);
    }
    return { grid, scale, x, y, cell, size: cell * scale, edgeX, edgeY };
}

function rectOf(g, i) {
    const bx = i % g.grid.w;
    const by = (i - bx) / g.grid.w;
    const left = g.edgeX[2 * bx];
    const top = g.edgeY[2 * by];
    return [left, top, g.edgeX[2 * bx + 1] - left, g.edgeY[2 * by + 1] - top];
}

function fillCells(ctx, g, cells, color, alpha) {
    if (cells.length === 0) return;
    ctx.globalAlpha = alpha;
    ctx.fillStyle = color;
    ctx.beginPath();
    for (const i of cells) ctx.rect(...rectOf(g, i));
    ctx.fill();
    ctx.globalAlpha = 1;
}

// Hollow cells: a coloured frame within the cell, on a thin dark casing when there is room.
function frameCells(ctx, g, cells, color, alpha, extra) {
    if (cells.length === 0) return;
    const width = g.size >= 12 ? 2 : 1;
    ctx.globalAlpha = alpha;
    ctx.beginPath();
    for (const i of cells) {
        const [x, y, w, hgt] = rectOf(g, i);
        const d = width / 2;
        ctx.rect(x + d, y + d, Math.max(1, w - width), Math.max(1, hgt - width));
        if (extra === "slash" && g.size >= 5) {
            ctx.moveTo(x + d, y + hgt - d);
            ctx.lineTo(x + w - d, y + d);
        }
    }
    ctx.strokeStyle = color;
    ctx.lineWidth = width;
    ctx.stroke();
    if (extra === "inner") dotCells(ctx, g, cells, color, alpha);
    ctx.globalAlpha = 1;
}

function dotCells(ctx, g, cells, color, alpha) {
    if (cells.length === 0) return;
    const size = Math.max(1, Math.min(4, Math.round(g.size / 4)));
    ctx.globalAlpha = alpha;
    ctx.fillStyle = color;
    ctx.beginPath();
    for (const i of cells) {
        const [x, y, w, hgt] = rectOf(g, i);
        ctx.rect(Math.round(x + (w - size) / 2), Math.round(y + (hgt - size) / 2), size, size);
    }
    ctx.fill();
    ctx.globalAlpha = 1;
}

function drawMark(ctx, g, cells, kind, strength) {
    const { color, mark } = kKinds[kind];
    if (mark === "fill") fillCells(ctx, g, cells, color, kFillShare * strength);
    else if (mark === "dot") dotCells(ctx, g, cells, color, strength);
    else frameCells(ctx, g, cells, color, strength, mark);
}

// `filter` is a set of outcomes to show, or null for all.
function decision(ctx, g, frame, { strength, filter }) {
    const cells = {};
    for (let i = 0; i < frame.outcome.length; ++i) {
        const { kind } = kOutcomes[frame.outcome[i]];
        if (kind === null || (filter !== null && !filter.has(frame.outcome[i]))) continue;
        if (kind === "below" && frame.distance[i] === 0) continue;
        (cells[kind] ??= []).push(i);
    }
    for (const kind of Object.keys(kKinds)) {
        if (cells[kind] !== undefined) drawMark(ctx, g, cells[kind], kind, strength);
    }
}

function distance(ctx, g, frame, { strength }) {
    for (let i = 0; i < frame.distance.length; ++i) {
        const d = frame.distance[i];
        if (d === 0) continue;
        const share = 0.45 + (0.35 * Math.log2(1 + d)) / 8;
        ctx.fillStyle = rgb(kHeatRamp[d], share * strength);
        ctx.fillRect(...rectOf(g, i));
    }
}

function active(ctx, g, frame, { strength }) {
    const mask = [];
    const alone = [];
    for (let i = 0; i < frame.outcome.length; ++i) {
        if (kOutcomes[frame.outcome[i]].group === 0) mask.push(i);
        else if ((frame.state[i] & kFlagActive) !== 0) alone.push(i);
    }
    fillCells(ctx, g, mask, kAmber, kFillShare * strength);
    frameCells(ctx, g, alone, kAmber, strength, null);
}

function counter(ctx, g, frame, { strength }) {
    const flagged = [];
    const high = [];
    for (let i = 0; i < frame.state.length; ++i) {
        const state = frame.state[i];
        if (state === 0) continue;
        const share = (state & 15) / 15;
        if (share > 0) {
            const c = kBlueLow.map((low, k) => Math.round(low + (kBlueHigh[k] - low) * share));
            ctx.fillStyle = rgb(c, (0.45 + 0.3 * share) * strength);
            ctx.fillRect(...rectOf(g, i));
        }
        if ((state & kFlagHigh) !== 0) high.push(i);
        else if ((state & kFlagActive) !== 0) flagged.push(i);
    }
    frameCells(ctx, g, flagged, kAmber, strength, null);
    frameCells(ctx, g, high, kOrange, strength, null);
}

// Mean luma against the reference: amber brighter, blue darker.
function luma(ctx, g, frame, { strength, means, referenceMeans }) {
    if (means === null || referenceMeans === null) return;
    for (let i = 0; i < means.length; ++i) {
        const change = means[i] - referenceMeans[i];
        if (change === 0) continue;
        const share = Math.min(1, 0.25 + Math.abs(change) / 40);
        ctx.fillStyle = rgb(change > 0 ? [245, 163, 0] : [70, 150, 255], 0.8 * share * strength);
        ctx.fillRect(...rectOf(g, i));
    }
}

// Two runs: hollow blue only A, filled orange only B, grey both.
function difference(ctx, g, frame, { strength, other }) {
    const only = [[], []];
    const both = [];
    for (let i = 0; i < frame.outcome.length; ++i) {
        const a = kOutcomes[frame.outcome[i]].group === 0;
        const b = kOutcomes[other.outcome[i]].group === 0;
        if (a && b) both.push(i);
        else if (a) only[0].push(i);
        else if (b) only[1].push(i);
    }
    fillCells(ctx, g, both, "#a3adb9", kFillShare * 0.7 * strength);
    fillCells(ctx, g, only[1], "#ff8a28", strength);
    frameCells(ctx, g, only[0], "#5cc8ff", strength, null);
}

const kLayers = { decision, distance, active, counter, luma, diff: difference };

// Draws a layer of one frame. `options`: strength 0.1 to 1, filter, means, referenceMeans, other.
export function drawLayer(ctx, g, layer, frame, options) {
    kLayers[layer]?.(ctx, g, frame, options);
}

// The distances as numbers in the cells, where they fit.
export function drawValues(ctx, g, values, viewport) {
    ctx.font = `600 ${Math.min(11, Math.round(g.size * 0.36))}px ui-monospace, Menlo, monospace`;
    ctx.textAlign = "center";
    ctx.textBaseline = "middle";
    ctx.lineWidth = 2.5;
    ctx.lineJoin = "round";
    ctx.strokeStyle = "rgba(0,0,0,0.8)";
    ctx.fillStyle = "#ffffff";
    for (let i = 0; i < values.length; ++i) {
        if (values[i] === 0) continue;
        const [x, y, w, hgt] = rectOf(g, i);
        if (x > viewport.width || y > viewport.height || x + w < 0 || y + hgt < 0) continue;
        ctx.strokeText(String(values[i]), x + w / 2, y + hgt / 2);
        ctx.fillText(String(values[i]), x + w / 2, y + hgt / 2);
    }
}

// A reported box, [left, top, right, bottom] in working pixels, on a black casing.
export function drawBox(ctx, g, box, color, dashed) {
    const x = g.x + box[0] * g.scale;
    const y = g.y + box[1] * g.scale;
    const w = (box[2] - box[0]) * g.scale;
    const hgt = (box[3] - box[1]) * g.scale;
    ctx.strokeStyle = "#000000";
    ctx.lineWidth = 4.2;
    ctx.strokeRect(x, y, w, hgt);
    ctx.strokeStyle = color;
    ctx.lineWidth = 2;
    if (dashed) ctx.setLineDash([6, 4]);
    ctx.strokeRect(x, y, w, hgt);
    ctx.setLineDash([]);
}

// The chosen block: its cell, and its 16x16 pixels. Small cells show only the pixels.
export function drawChosen(ctx, g, index) {
    const bx = index % g.grid.w;
    const by = (index - bx) / g.grid.w;
    const x = g.x + bx * g.grid.stride * g.scale;
    const y = g.y + by * g.grid.stride * g.scale;
    const size = 16 * g.scale;
    const large = g.size >= 14;
    ctx.strokeStyle = "#000000";
    ctx.lineWidth = 4;
    if (!large) ctx.strokeRect(x, y, size, size);
    ctx.strokeStyle = "#ffffff";
    ctx.lineWidth = large ? 1.5 : 2;
    if (large) ctx.setLineDash([5, 4]);
    ctx.strokeRect(x, y, size, size);
    ctx.setLineDash([]);
    if (!large) return;
    const rect = rectOf(g, index);
    ctx.strokeStyle = "#000000";
    ctx.lineWidth = 4.5;
    ctx.strokeRect(...rect);
    ctx.strokeStyle = "#ffffff";
    ctx.lineWidth = 2.5;
    ctx.strokeRect(...rect);
}

export function drawGrid(ctx, g, viewport) {
    ctx.strokeStyle = "rgba(255,255,255,0.22)";
    ctx.lineWidth = 1;
    ctx.beginPath();
    const bottom = Math.min(viewport.height, g.edgeY[g.edgeY.length - 1]);
    const right = Math.min(viewport.width, g.edgeX[g.edgeX.length - 1]);
    for (const x of g.edgeX) {
        ctx.moveTo(x + 0.5, Math.max(0, g.edgeY[0]));
        ctx.lineTo(x + 0.5, bottom);
    }
    for (const y of g.edgeY) {
        ctx.moveTo(Math.max(0, g.edgeX[0]), y + 0.5);
        ctx.lineTo(right, y + 0.5);
    }
    ctx.stroke();
}

// The block whose cell holds the point, or -1. Between cells of a stride over 16 there is none.
export function blockAt(g, px, py) {
    const find = (edges, p) => {
        for (let i = 0; i < edges.length; i += 2)
            if (p >= edges[i] && p < edges[i + 1]) return i / 2;
        return -1;
    };
    const bx = find(g.edgeX, px);
    const by = find(g.edgeY, py);
    return bx < 0 || by < 0 ? -1 : by * g.grid.w + bx;
}
