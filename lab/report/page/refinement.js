// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The cases of box method 2's own look at a block, as sentences. Pure. Codes in ../FORMAT.md.

const kCases = [
    "Not looked at: not in the mask, or distance 0.",
    "Listed: a saturated patch.",
    "Listed: the saturated upper edge of a change.",
    "Saturated, with nothing above, but no edge at the left.",
    "Listed: the strong upper edge of a change.",
    "Strong, but no edge.",
    "Not listed: over its threshold for fewer than *3* frames.",
    "Steady: the largest of three distances is at most *1.25* times the smallest.",
    "Its distance jumps, but four confirmed blocks around hold it.",
    "Not listed: its distance jumps.",
    "Not listed: not over its threshold (*60* without confirmed blocks around).",
];
const kIsolated = 16;
const kConfirming = new Set([3, 5, 7, 8]);

// The sentence of a stored value: the case in the low four bits, bit 4 for too few around.
export function refinementText(value) {
    const which = value & 15;
    const text = kCases[which] ?? `Case ${which}.`;
    if (!kConfirming.has(which)) return text;
    return (value & kIsolated) !== 0
        ? `${text} Confirmed, but not listed: fewer than *2* confirmed blocks around.`
        : `${text} Confirmed and listed.`;
}
