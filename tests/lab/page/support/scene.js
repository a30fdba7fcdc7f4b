// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A made-up run for tests of the page: a walker of saturated and changing blocks over a quiet grid,
// decided by a plain second writing of the chip's rules, so that every sentence has real numbers.

import { blockThresholds } from "../../../../lab/report/page/thresholds.js";

// Settings that the page reads, with the defaults of the chip.
export const kDefaults = {
    MD_RefFrmIdx: 1,
    MD_HogBlockSize: 16,
    MD_HogCellSize: 16,
    MD_HogBlockStride: 8,
    MD_HogNormalizeMode: 0,
    MD_HogDist_Scale2: 16,
    MD_HogDist_WeightMethod: 0,
    MD_HogDist_Th: 10,
    MD_HogDist_Th_AvgYDiffAdj_Scale: 42,
    MD_HogDist_Th_nnAdj_Scale: 8,
    MD_HogDist_Th_highActiveAdj_scale: 12,
    MD_HogDist_Th_LowDelay_shift: 1,
    MD_HogDist_Th_LowDelay_nn_count: 1,
    MD_HogDist_Th_LowDelay_prev_nn_count: 1,
    MD_LowDelayEn: 1,
    MD_ActBlkRepeatFrmCntTh: 3,
    MD_ActBlk_MinMaxRatio_Scale: 16,
    MD_ActNeighborBlkCntTh: 2,
    MD_NeighborCorrelation: 1,
    MD_HogDistAvailCheck: 0,
    MD_PostProcMethod: 0,
    MD_BlkCnt_Th: 8,
    MD_Bbox_PP_Enable: 0,
    MD_Bbox_PP_Window: 5,
    MD_PP_Area_Converge_Thresh: 1.3,
    MD_PP_Aspect_Converge_Thresh: 1.5,
};

// Numbers that look random and are the same everywhere.
export function noise(seed) {
    let state = seed >>> 0 || 1;
    return () => {
        state ^= state << 13;
        state ^= state >>> 17;
        state ^= state << 5;
        state >>>= 0;
        return state / 2 ** 32;
    };
}

// Distances of `frames` frames: a walker crosses the grid, some blocks flicker.
export function walkerDistances({ w, h, frames, seed = 7 }) {
    const random = noise(seed);
    return Array.from({ length: frames }, (_, f) => {
        const d = new Uint8Array(w * h);
        const cx = 2 + ((f * 0.7) % (w - 4));
        const cy = h / 2;
        for (let i = 0; i < d.length && f > 0; ++i) {
            const dx = (i % w) - cx;
            const dy = Math.floor(i / w) - cy;
            const near = Math.abs(dx) < 2 && Math.abs(dy) < Math.max(2, h / 6);
            const r = random();
            if (near) d[i] = r < 0.15 ? 255 : Math.floor(5 + r * 200);
            else if (Math.abs(dx) < 3.5 && Math.abs(dy) < h / 5 && r < 0.5)
                d[i] = Math.floor(r * 60);
            else if (r < 0.01) d[i] = Math.floor(random() * 90);
        }
        return d;
    });
}

const kLow = 15;

// The decision of one block, written from the rules: { outcome, state }.
function decide(s, t, c) {
    const cnt = c.before;
    const up = Math.min(cnt + 1, kLow);
    const d = c.d[0];
    if (!c.border) {
        if (d === 255 && c.upLeft === 255 && c.up === 255 && c.left === 255) return [6, up];
        if (d === 255 && c.upLeft + c.up + c.upRight === 0 && c.left >= 180) return [7, up];
        const quiet = Math.max(c.upLeft, c.up, c.upRight) <= 2;
        if (d >= 170 && quiet && c.left >= 200) return [8, up];
    }
    if (c.high > 0 && d > t.th >> 4) return [9, cnt | flags(t, d)];
    if (c.act === 0 ? d <= t.alone : d <= t.th) {
        return [d === 0 ? 3 : c.act === 0 ? 5 : 4, Math.max(cnt - 1, 0)];
    }
    return over(s, t, c, up);
}

const flags = (t, d) => 16 | (d >= t.high ? 32 : 0);

function over(s, t, c, cnt) {
    const [d, one, two] = c.d;
    const near = c.act >= s.MD_HogDist_Th_LowDelay_nn_count;
    if (s.MD_LowDelayEn !== 0 && cnt <= 2) {
        if (cnt === 1) return [near && d > t.low && one < t.th && two < t.th ? 10 : 11, cnt];
        const later = c.later >= s.MD_HogDist_Th_LowDelay_prev_nn_count;
        return [(near || later) && d > t.low && one > t.low && two < t.th ? 12 : 13, cnt];
    }
    if (cnt < s.MD_ActBlkRepeatFrmCntTh) return [14, cnt];
    const alone = c.high === 0 && c.act < s.MD_ActNeighborBlkCntTh;
    const limit = (Math.min(...c.d) * (s.MD_ActBlk_MinMaxRatio_Scale + 16)) >> 4;
    if (Math.max(...c.d) <= limit) return [alone ? 16 : 15, cnt | flags(t, d)];
    const back = Math.max(s.MD_ActBlkRepeatFrmCntTh - (3 - Math.min(c.act, 2)), 0);
    if (c.act < 4) return [19, back];
    return [alone ? 18 : 17, back | flags(t, d)];
}

function look(frames, now, f, i, { w, h }) {
    const x = i % w;
    const y = Math.floor(i / w);
    const c = {
        act: 0,
        later: 0,
        high: 0,
        border: x === 0 || y === 0 || x === w - 1 || y === h - 1,
    };
    const at = (dx, dy) =>
        x + dx < 0 || x + dx >= w || y + dy < 0 || y + dy >= h ? -1 : i + dy * w + dx;
    for (let dy = -1; dy <= 1; ++dy) {
        for (let dx = -1; dx <= 1; ++dx) {
            const j = at(dx, dy);
            if (j < 0) continue;
            const done = dy < 0 || (dy === 0 && dx < 0);
            const state = done ? now.state[j] : (frames[f - 1]?.state[j] ?? 0);
            if ((state & 16) !== 0) ++c.act;
            if ((state & 16) !== 0 && !done && !(dy === 0 && dx < 0)) ++c.later;
            if ((state & 32) !== 0) ++c.high;
        }
    }
    const dist = (j) => (j < 0 ? 0 : now.distance[j]);
    [c.up, c.left, c.upLeft, c.upRight] = [at(0, -1), at(-1, 0), at(-1, -1), at(1, -1)].map(dist);
    c.before = (frames[f - 1]?.state[i] ?? 0) & 15;
    c.d = [now.distance[i], frames[f - 1]?.distance[i] ?? 0, frames[f - 2]?.distance[i] ?? 0];
    return c;
}

// Frames with distance, state, outcome and luma thresholds (one a row), from distances.
export function decideAll(distances, grid, s, lumaOf = () => 0) {
    const frames = [];
    distances.forEach((distance, f) => {
        const blocks = distance.length;
        const now = {
            distance,
            state: new Uint8Array(blocks),
            outcome: new Uint8Array(blocks),
            luma: Array.from({ length: grid.h }, () => lumaOf(f)),
        };
        for (let i = 0; i < blocks && f > 0; ++i) {
            if (s.MD_NeighborCorrelation === 0) {
                now.outcome[i] = 2;
                continue;
            }
            const c = look(frames, now, f, i, grid);
            [now.outcome[i], now.state[i]] = decide(s, blockThresholds(s, lumaOf(f)), c);
        }
        frames.push(now);
    });
    return frames;
}
