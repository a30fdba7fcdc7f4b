// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The block values of a run, unpacked chunk by chunk when they are wanted. Pure but for the function
// that brings the packed bytes; formats in ../FORMAT.md.

import { Reader } from "../../page/bytes.js";

const kAbsent = 255; // ordinary outcome of a frame without block values

// Chunks of one kind. `bring(k)` promises the unpacked bytes of chunk k, or null where the file has
// none; `open(bytes, k)` turns them into what get() gives. get() gives undefined while a chunk is not
// there yet (and sends for it), null if there is none. `ready(k)` and `failed(error)` are called later.
export class ChunkStore {
    constructor({ bring, open, ready, failed }) {
        Object.assign(this, { bring, open, ready, failed });
        this.chunks = new Map();
        this.loading = new Map();
    }

    get(k) {
        const chunk = this.chunks.get(k);
        if (chunk === undefined) this.load(k);
        return chunk;
    }

    load(k) {
        if (this.chunks.has(k)) return Promise.resolve();
        let promise = this.loading.get(k);
        if (promise === undefined) {
            promise = this.fetch(k);
            this.loading.set(k, promise);
        }
        return promise;
    }

    async fetch(k) {
        let chunk = null;
        try {
            const bytes = await this.bring(k);
            chunk = bytes === null ? null : this.open(bytes, k);
        } catch (error) {
            this.failed(error);
        }
        this.chunks.set(k, chunk);
        this.loading.delete(k);
        this.ready(k);
    }
}

const unzigzag = (n) => (n >>> 1) ^ -(n & 1);

function readThresholds(reader, n) {
    const values = new Int32Array(n);
    let value = 0;
    for (let i = 0; i < n; ++i) {
        value += unzigzag(reader.varint());
        values[i] = value;
    }
    return values;
}

// Passes over the live blocks of one frame; `live(first, n, at)` gets each run of them.
function eachLive(reader, blocks, live) {
    let at = 0;
    while (at < blocks) {
        at += reader.varint();
        const n = reader.varint();
        if (at + n > blocks) throw new RangeError("more blocks than the grid has");
        const bytes = reader.take(3 * n);
        if (n > 0) live?.(at, n, bytes);
        at += n;
    }
}

// A chunk of block values: where each of its frames begins, and its luma thresholds. Passing over it
// once checks it whole, so later reads cannot run out of it.
export function openBlocks(bytes, { blocks, thresholds, frames }) {
    const reader = new Reader(bytes);
    const entries = [];
    for (let i = 0; i < frames; ++i) {
        const ordinary = reader.u8();
        if (ordinary === kAbsent) {
            entries.push(null);
            continue;
        }
        if (ordinary > 19) throw new RangeError("an outcome that does not exist");
        const luma = readThresholds(reader, thresholds);
        entries.push({ ordinary, luma, at: reader.at });
        eachLive(reader, blocks, null);
    }
    return { bytes, entries };
}

// One frame of an opened chunk, one byte a block each: distance (as the history keeps it), state after
// the frame, outcome. Null for a frame without block values.
export function expandFrame(chunk, i, blocks) {
    const entry = chunk.entries[i];
    if (entry === null) return null;
    const distance = new Uint8Array(blocks);
    const state = new Uint8Array(blocks);
    const outcome = new Uint8Array(blocks).fill(entry.ordinary);
    const reader = new Reader(chunk.bytes);
    reader.at = entry.at;
    eachLive(reader, blocks, (first, n, bytes) => {
        for (let b = 0; b < n; ++b) {
            distance[first + b] = bytes[3 * b];
            state[first + b] = bytes[3 * b + 1];
            outcome[first + b] = bytes[3 * b + 2];
        }
    });
    return { distance, state, outcome, luma: entry.luma };
}

// Mean luma of a chunk: undoes the differences, in place; a frame is a view of the bytes.
export function openMeans(bytes, { blocks, frames }) {
    if (bytes.length !== blocks * frames) throw new RangeError("luma of another size");
    for (let i = blocks; i < bytes.length; ++i) bytes[i] += bytes[i - blocks];
    return Array.from({ length: frames }, (_, f) => bytes.subarray(f * blocks, (f + 1) * blocks));
}

const bitsOf = Uint8Array.from({ length: 256 }, (_, n) => {
    let bits = 0;
    for (let rest = n; rest > 0; rest >>= 1) bits += rest & 1;
    return bits;
});

const countBits = (bytes, end) => {
    let bits = 0;
    for (let i = 0; i < end; ++i) bits += bitsOf[bytes[i]];
    return bits;
};

export function openVectors(bytes, { blocks, frames, weights }) {
    const size = Math.ceil(blocks / 8);
    const starts = [0];
    for (let f = 0; f < frames; ++f) {
        starts.push(starts[f] + countBits(bytes.subarray(f * size, (f + 1) * size), size));
    }
    const total = starts[frames];
    const planes = weights ? 11 : 10;
    if (bytes.length !== size * frames + planes * total) {
        throw new RangeError("vectors of another size");
    }
    return { bytes, size, starts, total, planes: bytes.subarray(size * frames), weights };
}

// The vector of block `index` in frame `i` of an opened chunk, { v, length }, or null if not stored.
export function vectorOf(chunk, i, index) {
    const map = chunk.bytes.subarray(i * chunk.size, (i + 1) * chunk.size);
    const byte = map[index >> 3];
    if ((byte & (1 << (index & 7))) === 0) return null;
    const before = bitsOf[byte & ((1 << (index & 7)) - 1)];
    const at = chunk.starts[i] + countBits(map, index >> 3) + before;
    const v = Array.from({ length: 10 }, (_, plane) => chunk.planes[plane * chunk.total + at]);
    return { v, length: chunk.weights ? chunk.planes[10 * chunk.total + at] : 1 };
}
