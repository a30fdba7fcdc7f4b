// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A block as plain text: what the panel shows, with values in hexadecimal beside the decimal ones.

import { outsideReason } from "./centred_box.js";
import { distanceSteps, distanceStepsText } from "./inspect.js";
import { ladder } from "./ladder.js";
import { blockSentence, plain } from "./words.js";

const hex = (n) => n.toString(16).padStart(2, "0");
const both = (n) => `${n} (0x${hex(n)})`;

// `r` is the record of inspect.js, or null where the file has no values of the block.
export function blockText(run, r, frame, block) {
    if (r === null) return "";
    const label = run.label === "" ? "" : `run ${run.label}, `;
    const lines = [
        `${label}frame ${r.frame}, block ${r.x}, ${r.y} (no. ${block}), pixels ` +
            `${r.x * run.grid.stride}..${r.x * run.grid.stride + 15}, ` +
            `${r.y * run.grid.stride}..${r.y * run.grid.stride + 15}`,
        plain(blockSentence(r)),
        ...outsideLines(run, frame, block),
        `distance ${both(r.d[0])}, before ${both(r.d[1])}, ${both(r.d[2])}`,
        `repeat counter ${r.before} -> ${r.after}, state 0x${hex(r.state)}`,
        `active among nine ${r.act}, not yet decided ${r.later}, highly active ${r.high}`,
        `thresholds ${r.t.th}, alone ${r.t.alone}, high ${r.t.high}, luma ${r.luma}`,
    ];
    if (r.mean !== null)
        lines.push(`mean luma ${both(r.mean)}, reference ${r.meanReference ?? "?"}`);
    lines.push("around (distance, a active, h highly active, ' of the last frame):");
    for (let row = 0; row < 3; ++row) {
        lines.push(
            r.places
                .slice(3 * row, 3 * row + 3)
                .map(placeText)
                .join(" "),
        );
    }
    for (const row of ladder(r)) {
        if (row.state === "later") continue;
        const end = row.state === "passed" ? "" : `  <- decides: ${row.state}`;
        lines.push(`  ${row.name}: ${row.text}${end}`);
    }
    lines.push(...vectorLines(run, r, frame, block));
    return lines.join("\n");
}

function outsideLines(run, frame, block) {
    const reason = outsideReason(run, frame, block);
    return reason === null ? [] : [plain(reason.text)];
}

function placeText(p) {
    if (p.index < 0) return "    -  ";
    const flags = p.high ? "h" : p.active ? "a" : " ";
    return `${String(p.distance).padStart(5)}${flags}${p.now ? " " : "'"}`;
}

function vectorLines(run, r, frame, block) {
    const now = run.vector(frame, block);
    const reference = run.vector(r.reference - run.first, block);
    if (now === null || reference === null) return [];
    const row = (name, v) => `${name} ${v.map(hex).join(" ")}`;
    return [
        row("vector   ", now.v),
        row("reference", reference.v),
        plain(distanceStepsText(distanceSteps(run.settings, now, reference))),
    ];
}
