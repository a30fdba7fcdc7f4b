// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Thresholds of a block under the luma threshold of its row. The chip's integer formulas; nothing
// here decides anything, the page only names the numbers that applied.

// `s` is settings by key; `luma` is the luma threshold, 0 and up. All results are 0 to 255 but `low`.
export function blockThresholds(s, luma) {
    const set = s.MD_HogDist_Th;
    const th = Math.min(Math.max(set, (luma * s.MD_HogDist_Th_AvgYDiffAdj_Scale) >> 3), 255);
    const alone = Math.min((th * s.MD_HogDist_Th_nnAdj_Scale) >> 2, 255);
    const high = Math.min((th * (s.MD_HogDist_Th_highActiveAdj_scale + 4)) >> 2, 255);
    const low = (alone * 2) >> s.MD_HogDist_Th_LowDelay_shift;
    return { set, th, alone, high, low, carried: th >> 4 };
}

// Frames that a block is over its threshold before it can be active by being steady. The low-delay
// branch takes the first two frames, so then it is three at least.
export const framesNeeded = (s) =>
    Math.max(s.MD_LowDelayEn !== 0 ? 3 : 1, s.MD_ActBlkRepeatFrmCntTh);

// Largest allowed distance of the last three, from the smallest.
export const steadyLimit = (s, smallest) => (smallest * (s.MD_ActBlk_MinMaxRatio_Scale + 16)) >> 4;

// The same as a ratio, "2" or "2.25" to one.
export const ratioText = (s) => String((s.MD_ActBlk_MinMaxRatio_Scale + 16) / 16);
