// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Numbers and times as the pages write them.

const kThin = "\u2009";

// 3705495 as "3 705 495", with thin blanks, from five digits on only.
export function count(n) {
    const text = String(Math.round(n));
    return Math.abs(n) < 10000 ? text : text.replace(/\B(?=(\d{3})+$)/g, kThin);
}

// A share in percent. Never rounded to 0 or 100 unless it is.
export function percent(part, whole) {
    if (whole <= 0 || part <= 0) return "0 %";
    if (part >= whole) return "100 %";
    const p = (100 * part) / whole;
    if (p < 0.1) return "<0.1 %";
    if (p > 99.9) return ">99.9 %";
    return p < 10 || p > 99 ? `${p.toFixed(1)} %` : `${Math.round(p)} %`;
}

// "1 frame", "2 frames".
export const plural = (n, one, many = `${one}s`) => `${count(n)} ${n === 1 ? one : many}`;

// Seconds as m:ss.t, or null without a rate.
export function clock(frame, fps) {
    if (!(fps > 0)) return null;
    const tenths = Math.floor((frame / fps) * 10 + 1e-6);
    const seconds = Math.floor(tenths / 10);
    return `${Math.floor(seconds / 60)}:${String(seconds % 60).padStart(2, "0")}.${tenths % 10}`;
}

// A length as "14.8 s", or null without a rate.
export const seconds = (frames, fps) => (fps > 0 ? `${(frames / fps).toFixed(1)} s` : null);

export const range = (first, last) => (first === last ? String(first) : `${first}–${last}`);

// At most `digits` decimals, without trailing zeros.
export const short = (x, digits = 2) => String(Number(x.toFixed(digits)));

// Short labels of an axis: 0, 50, 1k, 1.5M.
export function axisNumber(n) {
    if (Math.abs(n) >= 1e6) return `${short(n / 1e6, 1)}M`;
    if (Math.abs(n) >= 1e4) return `${short(n / 1e3, 1)}k`;
    return short(n, 2);
}
