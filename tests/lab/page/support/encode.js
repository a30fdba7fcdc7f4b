// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A writer of report files for tests: turns plain frames into the data blocks that ../FORMAT.md of the
// report defines, independent of the program that writes real ones.

import { readFileSync } from "node:fs";
import { deflateRawSync } from "node:zlib";
import { kDistanceEdges } from "../../../../lab/report/page/data.js";

export class Bytes {
    constructor() {
        this.list = [];
    }
    u8(...values) {
        this.list.push(...values);
        return this;
    }
    varint(n) {
        let rest = n;
        while (rest > 127) {
            this.list.push((rest & 127) | 128);
            rest = Math.floor(rest / 128);
        }
        this.list.push(rest);
        return this;
    }
    zigzag(n) {
        return this.varint(n < 0 ? -2 * n - 1 : 2 * n);
    }
    i32(n) {
        this.list.push(n & 255, (n >> 8) & 255, (n >> 16) & 255, (n >> 24) & 255);
        return this;
    }
    get bytes() {
        return Uint8Array.from(this.list);
    }
}

// One frame: { distance, state, outcome } arrays, `luma` thresholds; null for an absent frame.
export function encodeFrame(out, frame) {
    if (frame === null) {
        out.u8(255);
        return;
    }
    const blocks = frame.outcome.length;
    const tally = new Map();
    frame.outcome.forEach((o) => tally.set(o, (tally.get(o) ?? 0) + 1));
    const ordinary = [...tally].sort((a, b) => b[1] - a[1])[0][0];
    out.u8(ordinary);
    let last = 0;
    for (const y of frame.luma) {
        out.zigzag(y - last);
        last = y;
    }
    const skipped = (i) =>
        frame.distance[i] === 0 && frame.state[i] === 0 && frame.outcome[i] === ordinary;
    for (let at = 0; at < blocks;) {
        let live = at;
        while (live < blocks && skipped(live)) ++live;
        let end = live;
        while (end < blocks && !skipped(end)) ++end;
        out.varint(live - at).varint(end - live);
        for (let i = live; i < end; ++i)
            out.u8(frame.distance[i], frame.state[i], frame.outcome[i]);
        at = end;
    }
}

// Mean luma of a chunk: the first frame raw, then differences modulo 256.
export function encodeMeans(frames) {
    const out = [];
    frames.forEach((means, f) => {
        means.forEach((m, i) => out.push(f === 0 ? m : (m - frames[f - 1][i]) & 255));
    });
    return Uint8Array.from(out);
}

// vectors: per frame a Map of block index to ten (or eleven) values.
export function encodeVectors(frames, blocks, planes) {
    const out = [];
    for (const vectors of frames) {
        const map = new Uint8Array(Math.ceil(blocks / 8));
        for (const i of vectors.keys()) map[i >> 3] |= 1 << (i & 7);
        out.push(...map);
    }
    for (let p = 0; p < planes; ++p) {
        for (const vectors of frames) {
            for (const i of [...vectors.keys()].sort((a, b) => a - b)) out.push(vectors.get(i)[p]);
        }
    }
    return Uint8Array.from(out);
}

export function encodeColumns(names, columns) {
    const out = new Bytes();
    for (const name of names) for (const v of columns[name]) out.i32(v);
    return out.bytes;
}

export const pack = (bytes) => Buffer.from(deflateRawSync(bytes)).toString("base64");

const escape = (text) => text.replace(/[&<>"']/g, (c) => `&#${c.charCodeAt(0)};`);

// The html of a report: `template` path, `head` record, `blocks` (id to base64), header html.
export function fillTemplate(template, { head, blocks, header }) {
    const parts = [
        `<script type="application/json" id="md-head">${JSON.stringify(head).replaceAll("<", "\\u003c")}</script>`,
        ...Object.entries(blocks).map(
            ([id, text]) => `<script type="text/plain" id="${id}">${text}</script>`,
        ),
    ];
    return readFileSync(template, "utf8")
        .replace("<!--md:title-->", () => escape(head.verdict))
        .replace("<!--md:verdict-->", () => escape(head.verdict))
        .replace("<!--md:header-->", () => header)
        .replace("<!--md:data-->", () => parts.join("\n"));
}

// Columns that follow from the block values: counts of outcomes and of distance classes, and so on.
export function tallies(frames, s) {
    const columns = {};
    const add = (name, f, by) => {
        columns[name] ??= new Array(frames.length).fill(0);
        columns[name][f] += by;
    };
    frames.forEach((frame, f) => {
        for (let o = 0; o < 20; ++o) add(`o${o}`, f, 0);
        for (let k = 0; k < 17; ++k) add(`d${k}`, f, 0);
        for (const name of ["active", "counted", "largest", "luma"]) add(name, f, 0);
        frame.outcome.forEach((outcome, i) => {
            const d = outcome <= 1 ? 0 : frame.distance[i];
            const active = [2, 6, 7, 8, 9, 10, 12, 15, 17].includes(outcome);
            add(`o${outcome}`, f, 1);
            add(`d${kDistanceEdges.findLastIndex((e) => d >= e)}`, f, 1);
            add("active", f, active ? 1 : 0);
            add("counted", f, active && d > s.MD_HogDist_Th ? 1 : 0);
            columns.largest[f] = Math.max(columns.largest[f], d);
        });
        columns.luma[f] = frame.luma.at(-1);
    });
    return columns;
}
