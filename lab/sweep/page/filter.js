// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The filter of the table: words that all must hold. "MD_HogDist_Th<=12 recall>0.8 1f3a" keeps the
// points that meet the first two and whose id or settings hold the last word.

import { scoreIndex, scoreOf } from "./data.js";

const kTests = {
    "<": (a, b) => a < b,
    "<=": (a, b) => a <= b,
    ">": (a, b) => a > b,
    ">=": (a, b) => a >= b,
    "=": (a, b) => a === b,
    "!=": (a, b) => a !== b,
};

// Gives { accepts(point), fault }: `fault` names a word that cannot be read, else it is null.
export function parseFilter(sweep, clip, text) {
    const tests = [];
    for (const word of text.split(/\s+/).filter((w) => w !== "")) {
        const [, name, sign, value] = word.match(/^([A-Za-z]\w*)(<=|>=|!=|<|>|=)(.+)$/) ?? [];
        if (name === undefined) {
            const part = word.toLowerCase();
            tests.push((p) => `${p.id} ${p.options} ${p.status}`.toLowerCase().includes(part));
            continue;
        }
        const read = reader(sweep, clip, name);
        if (read === null) return { accepts: () => true, fault: `no key or score "${name}"` };
        const number = Number(value);
        const wanted = Number.isNaN(number) ? value : number;
        tests.push((p) => {
            const found = read(p);
            return found !== null && kTests[sign](found, wanted);
        });
    }
    return { accepts: (p) => tests.every((t) => t(p)), fault: null };
}

function reader(sweep, clip, name) {
    const k = sweep.keys.findIndex((key) => key.name === name);
    if (k >= 0) return (p) => p.values[k];
    if (scoreIndex(sweep, name) >= 0) return (p) => scoreOf(sweep, p, clip, name);
    return null;
}
