// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The chosen block's feature vector, that of its reference, and how the distance follows from both.

import { h, rich } from "../../page/dom.js";
import { distanceSteps, distanceStepsText } from "./inspect.js";

const kVectorNames = [
    "c0 x",
    "c1 x",
    "c2 x",
    "c3 x",
    "c0 y",
    "c1 y",
    "c2 y",
    "c3 y",
    "blk x",
    "blk y",
];

// A heading and the table, or a sentence that says why there is none.
export function vector(run, frame, block, r) {
    const head = h("h3", null, "Feature vector");
    if (run.vectors_of === null || !run.hasVectors(frame)) {
        return [head, h("p.quiet", null, "Vectors were left out of this file to keep it small.")];
    }
    const now = run.vector(frame, block);
    const reference = run.vector(r.reference - run.first, block);
    if (now === null || reference === null) {
        const why = r.d[0] === 0 ? "not stored where the distance is 0" : "not there yet";
        return [head, h("p.quiet", null, `${why[0].toUpperCase()}${why.slice(1)}.`)];
    }
    const difference = now.v.map((v, i) => v - reference.v[i]);
    const signed = (d) => (d > 0 ? `+${d}` : d < 0 ? `−${-d}` : "0");
    const shade = (d) => {
        const cell = h("td.n.diff", null, signed(d));
        cell.style.setProperty("--shade", `${Math.round(Math.min(1, Math.abs(d) / 32) * 70)}%`);
        return cell;
    };
    const row = (name, list) => h("tr", null, h("th", null, name), list);
    const cells = (v) => v.map((value) => h("td.n", null, value));
    return [
        head,
        h(
            "table.vector",
            null,
            h(
                "thead",
                null,
                h(
                    "tr",
                    null,
                    h("th"),
                    kVectorNames.map((name) =>
                        h(
                            "th.n",
                            null,
                            name.split(" ").map((p) => h("span", null, p)),
                        ),
                    ),
                ),
            ),
            h(
                "tbody",
                null,
                row("this", cells(now.v)),
                row("ref", cells(reference.v)),
                row("diff", difference.map(shade)),
            ),
        ),
        h("p.small", null, rich(distanceStepsText(distanceSteps(run.settings, now, reference)))),
    ];
}
