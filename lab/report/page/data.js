// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Opens the data of a report: the head, one record a run with its frame table, and small functions
// that give block values. Formats in ../FORMAT.md.

import { fromBase64, inflate, Reader } from "../../page/bytes.js";
import { ChunkStore, expandFrame, openBlocks, openMeans, openVectors, vectorOf } from "./chunks.js";

const kFormat = 1;
export const kDistanceEdges = [0, 1, 2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64, 96, 128, 192, 255];

// Columns of int32, one after the other: { name: Int32Array }. Throws if the size does not fit.
export function readColumns(bytes, names, frames) {
    if (bytes.length !== names.length * frames * 4) {
        throw new RangeError("the frame table has another size than the head says");
    }
    const reader = new Reader(bytes);
    return Object.fromEntries(names.map((name) => [name, reader.column(Int32Array, frames)]));
}

const kCacheBytes = 40e6; // of expanded frames

// `source` brings packed data: bytes(id) gives a promise of unpacked bytes, or null if the file has no
// such block. `ready` is called when block values have arrived, `failed` with an error.
export function openRun(head, number, columns, source, { ready, failed }) {
    const record = head.runs[number];
    const settings = Object.fromEntries(
        Object.entries(record.settings).map(([key, s]) => [key, s.value]),
    );
    const { grid } = record;
    const run = {
        ...record,
        number,
        frames: head.clip.frames,
        first: head.clip.first,
        grid: {
            ...grid,
            blocks: grid.w * grid.h,
            width: head.clip.width,
            height: head.clip.height,
        },
        settings,
        info: record.settings,
        columns,
        boxBefore: (f) => boxAt(columns, "before", f),
        boxAfter: (f) => boxAt(columns, "after", f),
    };
    addBlocks(run, head, source, { ready, failed });
    addFeatures(run, head, source, { ready, failed });
    return run;
}

// A box as [left, top, right, bottom] in working pixels, or null.
function boxAt(columns, name, f) {
    if (columns[`${name}_left`][f] < 0) return null;
    return ["left", "top", "right", "bottom"].map((side) => columns[`${name}_${side}`][f]);
}

function chunkStore(head, kind, source, open, callbacks) {
    const per = head.chunk_frames;
    const framesOf = (k) => Math.min(per, head.clip.frames - k * per);
    return new ChunkStore({
        bring: (k) => source.bytes(`md-${kind}-${k}`),
        open: (bytes, k) => open(bytes, framesOf(k)),
        ...callbacks,
    });
}

function addBlocks(run, head, source, callbacks) {
    const per = head.chunk_frames;
    const { blocks } = run.grid;
    const store = chunkStore(
        head,
        `b${run.number}`,
        source,
        (bytes, frames) =>
            openBlocks(bytes, {
                blocks,
                thresholds: run.thresholds,
                frames,
            }),
        callbacks,
    );
    const cache = new Map();
    const room = Math.max(64, Math.floor(kCacheBytes / (3 * blocks)));
    run.chunkCount = run.has_blocks === "none" ? 0 : Math.ceil(run.frames / per);
    run.loadChunk = (k) => store.load(k);

    // Values of frame f, or null: not there (yet). hasBlocks() says which.
    run.blocks = (f) => {
        if (run.has_blocks === "none" || f < 0 || f >= run.frames) return null;
        let frame = cache.get(f);
        if (frame !== undefined) return frame;
        const chunk = store.get(Math.floor(f / per));
        if (chunk === undefined || chunk === null) return null;
        frame = expandFrame(chunk, f % per, blocks);
        cache.set(f, frame);
        if (cache.size > room) cache.delete(cache.keys().next().value);
        return frame;
    };
    // False only where it is known that the file holds no values of the frame.
    run.hasBlocks = (f) => {
        if (run.has_blocks === "none") return false;
        const chunk = store.chunks.get(Math.floor(f / per));
        if (chunk === undefined) return true;
        return chunk !== null && chunk.entries[f % per] !== null;
    };
    // The luma threshold that the block's decision used.
    run.lumaThreshold = (f, index) => {
        const luma = run.blocks(f)?.luma;
        if (luma === undefined) return 0;
        if (luma.length === 1) return luma[0];
        if (luma.length === run.grid.h && run.grid.h !== blocks) {
            return luma[Math.floor(index / run.grid.w)];
        }
        return luma[index];
    };
}

// Luma and vectors can be those of the other run, so stores are shared through the source: a data block
// can be taken from the page only once.
function sharedStore(head, kind, source, open, callbacks) {
    source.stores ??= new Map();
    if (!source.stores.has(kind)) {
        source.stores.set(kind, chunkStore(head, kind, source, open, callbacks));
    }
    return source.stores.get(kind);
}

function addFeatures(run, head, source, callbacks) {
    const per = head.chunk_frames;
    const { blocks } = run.grid;
    const store = (wanted, kind, open) =>
        wanted ? sharedStore(head, kind, source, open, callbacks) : { get: () => null };
    const means = store(run.luma_of !== null, `l${run.luma_of}`, (bytes, frames) =>
        openMeans(bytes, { blocks, frames }),
    );
    const vectors = store(run.vectors_of !== null, `v${run.vectors_of}`, (bytes, frames) =>
        openVectors(bytes, { blocks, frames, weights: run.weights }),
    );
    const refined = store(run.method === 2, `r${run.number}`, (bytes, frames) => {
        if (bytes.length !== blocks * frames) throw new RangeError("cases of another size");
        return bytes;
    });
    const covered = (range, f) =>
        range !== null &&
        Math.floor(f / per) >= Math.floor(range[0] / per) &&
        Math.floor(f / per) <= Math.floor(range[1] / per);

    run.hasMeans = (f) => covered(run.luma_frames, f);
    run.hasVectors = (f) => covered(run.vector_frames, f);
    // Mean luma of each block, or null: left out, or not there yet.
    run.means = (f) =>
        run.hasMeans(f) ? (means.get(Math.floor(f / per))?.[f % per] ?? null) : null;
    run.vector = (f, index) => {
        const chunk = run.hasVectors(f) ? vectors.get(Math.floor(f / per)) : null;
        return chunk === null || chunk === undefined ? null : vectorOf(chunk, f % per, index);
    };
    // Method 2: the case of the refinement that decided, with bit 4; else null.
    run.refinement = (f, index) => {
        const chunk = refined.get(Math.floor(f / per));
        return chunk === null || chunk === undefined ? null : chunk[(f % per) * blocks + index];
    };
}

// Data blocks in the document. A block is taken out of the page once it was read.
export function documentSource(doc) {
    const take = (id) => {
        const node = doc.getElementById(id);
        if (node === null) return null;
        const bytes = fromBase64(node.textContent);
        node.remove();
        return bytes;
    };
    return {
        raw: take,
        bytes: (id) => {
            try {
                const packed = take(id);
                return packed === null ? Promise.resolve(null) : inflate(packed);
            } catch (error) {
                return Promise.reject(error);
            }
        },
    };
}

export function readHead(doc) {
    const head = JSON.parse(doc.getElementById("md-head").textContent);
    if (head.format !== kFormat) {
        throw new Error(`the data has format ${head.format}, this page reads format ${kFormat}`);
    }
    return head;
}
