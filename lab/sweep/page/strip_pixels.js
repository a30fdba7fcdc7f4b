// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A strip in numbers: the letter of each pixel, and the counts in words.

import { unpackStrip } from "./data.js";
import { kStrip } from "./words.js";

// From the least to the most important: where a pixel shows several frames, the last one wins.
const kOrder = "-.irhfm";
// The letter of each of `width` pixels. A pixel over several frames shows the most important one, so a
// single missed or false frame is never lost.
export function pixelsOf(text, width) {
    const parts = unpackStrip(text);
    const frames = parts.reduce((n, [length]) => n + length, 0);
    const pixels = new Array(width).fill("-");
    let first = 0;
    for (const [length, letter] of parts) {
        const from = Math.floor((first * width) / frames);
        const to = Math.max(from + 1, Math.ceil(((first + length) * width) / frames));
        for (let x = from; x < Math.min(to, width); ++x) {
            if (kOrder.indexOf(letter) >= kOrder.indexOf(pixels[x])) pixels[x] = letter;
        }
        first += length;
    }
    return pixels;
}

// "80 hit, 3 miss" in words.
export function stripSummary(text) {
    const counts = new Map();
    for (const [n, letter] of unpackStrip(text)) counts.set(letter, (counts.get(letter) ?? 0) + n);
    return [...counts].map(([letter, n]) => `${n} ${kStrip[letter][0]}`).join(", ");
}
