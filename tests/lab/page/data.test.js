// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Reading the data blocks: what was packed comes back, and damaged bytes are refused.

import assert from "node:assert/strict";
import { test } from "node:test";
import { inflate, Reader } from "../../../lab/page/bytes.js";
import {
    ChunkStore,
    expandFrame,
    openBlocks,
    openMeans,
    openVectors,
    vectorOf,
} from "../../../lab/report/page/chunks.js";
import { openRun, readColumns } from "../../../lab/report/page/data.js";
import { distanceSteps, distanceStepsText, inspect } from "../../../lab/report/page/inspect.js";
import * as encode from "./support/encode.js";
import "./support/inflate_raw.js";
import { walkerRun } from "./support/make.js";
import { kDefaults, noise } from "./support/scene.js";

const unpack = (text) => inflate(new Uint8Array(Buffer.from(text, "base64")));

test("varints and signed thresholds of all sizes come back", () => {
    const values = [0, 1, 127, 128, 16383, 16384, 8144, 2 ** 31 - 1];
    const out = new encode.Bytes();
    for (const v of values) out.varint(v);
    const reader = new Reader(out.bytes);
    assert.deepEqual(
        values.map(() => reader.varint()),
        values,
    );
    assert.throws(() => reader.varint(), RangeError);
    assert.throws(
        () => new Reader(Uint8Array.from([255, 255, 255, 255, 255, 1])).varint(),
        RangeError,
    );
});

function framesOf(run) {
    const frames = run.frames.map((frame, f) => (f % 7 === 5 ? null : frame));
    const out = new encode.Bytes();
    for (const frame of frames) encode.encodeFrame(out, frame);
    return { frames, bytes: out.bytes };
}

test("blocks come back as they were packed, absent frames and thresholds too", async () => {
    const run = walkerRun({ frames: 60, w: 9, h: 5 });
    run.frames.forEach((frame, f) => {
        frame.luma = frame.luma.map((_, y) => (f * 31 + y * 977) % 8145);
    });
    const { frames, bytes } = framesOf(run);
    const chunk = openBlocks(await unpack(encode.pack(bytes)), {
        blocks: 45,
        thresholds: 5,
        frames: 60,
    });
    frames.forEach((frame, f) => {
        const back = expandFrame(chunk, f, 45);
        if (frame === null) assert.equal(back, null);
        else {
            for (const part of ["distance", "state", "outcome"]) {
                assert.deepEqual([...back[part]], [...frame[part]], `${part} of frame ${f}`);
            }
            assert.deepEqual([...back.luma], frame.luma);
        }
    });
});

test("cut or wrong block values are refused, not shown", () => {
    const { bytes } = framesOf(walkerRun({ frames: 20, w: 9, h: 5 }));
    const open = (b, blocks = 45) => openBlocks(b, { blocks, thresholds: 5, frames: 20 });
    open(bytes);
    for (let n = 0; n < bytes.length; n += 13) {
        assert.throws(
            () => open(bytes.subarray(0, n)),
            RangeError,
            `${n} of ${bytes.length} bytes`,
        );
    }
    assert.throws(() => open(Uint8Array.from([20, ...bytes])), /outcome/);
    assert.throws(() => open(bytes, 3), RangeError);
});

test("mean luma and vectors come back as they were packed", () => {
    const random = noise(4);
    const frames = Array.from({ length: 3 }, () =>
        Array.from({ length: 21 }, () => Math.floor(random() * 256)),
    );
    const means = openMeans(encode.encodeMeans(frames), { blocks: 21, frames: 3 });
    assert.deepEqual(
        means.map((m) => [...m]),
        frames,
    );
    assert.throws(() => openMeans(new Uint8Array(62), { blocks: 21, frames: 3 }), RangeError);

    for (const weights of [false, true]) {
        const planes = weights ? 11 : 10;
        const value = (f, i) =>
            Array.from({ length: planes }, (_, p) => (f * 50 + i * 7 + p) & 255);
        const stored = frames.map(
            (_, f) =>
                new Map(
                    [0, 7, 8, 15, 20].filter((i) => (i + f) % 2 === 0).map((i) => [i, value(f, i)]),
                ),
        );
        const bytes = encode.encodeVectors(stored, 21, planes);
        const chunk = openVectors(bytes, { blocks: 21, frames: 3, weights });
        for (let f = 0; f < 3; ++f) {
            for (let i = 0; i < 21; ++i) {
                const v = vectorOf(chunk, f, i);
                const want = stored[f].get(i) ?? null;
                assert.deepEqual(
                    v === null ? null : [...v.v, ...(weights ? [v.length] : [])],
                    want,
                );
                if (v !== null && !weights) assert.equal(v.length, 1);
            }
        }
        assert.throws(
            () => openVectors(bytes.subarray(1), { blocks: 21, frames: 3, weights }),
            RangeError,
        );
    }
});

test("the frame table has the size that the head says", () => {
    const bytes = encode.encodeColumns(["a", "b"], {
        a: [1, -1, 2 ** 31 - 1],
        b: [0, 5, -(2 ** 31)],
    });
    const columns = readColumns(bytes, ["a", "b"], 3);
    assert.deepEqual([...columns.a, ...columns.b], [1, -1, 2 ** 31 - 1, 0, 5, -(2 ** 31)]);
    assert.throws(() => readColumns(bytes, ["a", "b"], 2), RangeError);
});

test("a chunk is fetched once; one that fails is reported and counts as absent", async () => {
    const log = [];
    const store = new ChunkStore({
        bring: (k) => {
            log.push(k);
            return k === 1
                ? Promise.reject(new Error("broken"))
                : Promise.resolve(new Uint8Array([k]));
        },
        open: (bytes) => bytes[0],
        ready: (k) => log.push(`ready ${k}`),
        failed: (error) => log.push(error.message),
    });
    assert.equal(store.get(0), undefined);
    await Promise.all([store.load(0), store.load(0), store.load(1)]);
    assert.equal(store.get(0), 0);
    assert.equal(store.get(1), null);
    assert.deepEqual(log.sort(), [0, 1, "broken", "ready 0", "ready 1"].sort());
});

test("a run finds thresholds by row, by frame or by block", async () => {
    const made = walkerRun({ frames: 3, w: 4, h: 3 });
    for (const luma of [[7], [1, 2, 3], Array.from({ length: 12 }, (_, i) => i * 3)]) {
        for (const frame of made.frames) frame.luma = luma;
        made.record.thresholds = luma.length;
        const out = new encode.Bytes();
        for (const frame of made.frames) encode.encodeFrame(out, frame);
        const head = {
            clip: { frames: 3, first: 100, width: 40, height: 32 },
            chunk_frames: 60,
            runs: [made.record],
        };
        const source = { bytes: () => Promise.resolve(out.bytes) };
        const run = openRun(head, 0, made.columns, source, { ready() {}, failed: assert.fail });
        assert.equal(run.blocks(1), null, "not there before it is unpacked");
        await run.loadChunk(0);
        const want = { 1: 7, 3: 3, 12: 27 }[luma.length];
        assert.equal(run.lumaThreshold(1, 9), want, "the block stands in the third row");
        const r = inspect(run, 1, 9);
        assert.deepEqual([r.luma, r.frame, r.reference, r.x, r.y], [want, 101, 100, 1, 2]);
    }
});

test("a run that shares the luma of the other reads it too, though each block is taken once", async () => {
    const [a, b] = [walkerRun({ frames: 3, w: 4, h: 3 }), walkerRun({ frames: 3, w: 4, h: 3 })];
    const means = a.frames.map((_, f) => Array.from({ length: 12 }, (_v, i) => f + i));
    const blocks = new Map([["md-l0-0", encode.encodeMeans(means)]]);
    const source = {
        bytes: (id) => {
            const bytes = blocks.get(id) ?? null;
            blocks.delete(id);
            return Promise.resolve(bytes);
        },
    };
    for (const run of [a, b]) Object.assign(run.record, { luma_of: 0, luma_frames: [0, 2] });
    const clip = { frames: 3, first: 0, width: 40, height: 32 };
    const head = { clip, chunk_frames: 60, runs: [a.record, b.record] };
    const callbacks = { ready() {}, failed: assert.fail };
    const runs = [a, b].map((run, n) => openRun(head, n, run.columns, source, callbacks));
    for (const run of runs) run.means(1);
    await new Promise((resolve) => setTimeout(resolve, 5));
    for (const run of runs) assert.deepEqual([...run.means(1)], means[1]);
});

test("the distance of two vectors is shown in the chip's own steps", () => {
    const v = (x, length = 1) => ({ v: Array.from({ length: 10 }, () => x), length });
    const text = (s, a, b) =>
        distanceStepsText(distanceSteps({ ...kDefaults, ...s }, a, b)).replaceAll("*", "");
    assert.equal(text({}, v(20), v(10)), "Squares sum to 1000; divided by 16: 62");
    assert.equal(
        text({ MD_HogCellSize: 8 }, v(20), v(10)),
        "Squares sum to 1000; divided by 64: 15",
    );
    assert.equal(
        text({ MD_HogDist_Scale2: 20 }, v(20, 2), v(10, 3)),
        "Squares sum to 1000; divided by 16: 62; times 3 (weight) times 20 (scale), divided by 16: 232",
    );
    assert.equal(
        text({ MD_HogNormalizeMode: 1 }, v(20, 200), v(10, 100)),
        "Squares sum to 1000; divided by 16: 62; times 300 (weight) times 16 (scale), divided by 4096: 72",
    );
    assert.equal(
        text({ MD_HogNormalizeMode: 1, MD_HogDist_WeightMethod: 1 }, v(20, 100), v(10, 200)),
        "Squares sum to 1000; divided by 16: 62; times 100 (weight) times 16 (scale), divided by 4096: 24",
    );
    assert.match(text({}, v(255), v(0)), /: 40640; cut to 255$/);
});
