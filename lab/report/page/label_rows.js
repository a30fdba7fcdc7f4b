// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Labels as rows and as csv. Pure. A row is { first, last (frame indexes of the run), box or null, what },
// a box [left, top, right, bottom] in pixels of the input, edges included.

export const kWhats = ["motion", "ignore"];
const kHead = "first,last,left,top,right,bottom,what";

// Frames of a csv are those of the clip, `first` is the number of the run's first.
export function toCsv(rows, first) {
    const lines = rows.map(({ first: a, last: b, box, what }) =>
        [first + a, first + b, ...(box ?? ["", "", "", ""]), what].join(","),
    );
    return `${[kHead, ...lines].join("\n")}\n`;
}

// { rows, error }: the rows in their order, or a message with the line that cannot be read.
export function fromCsv(text, clip) {
    const rows = [];
    const lines = text.split(/\r?\n/);
    for (const [i, line] of lines.entries()) {
        const trimmed = line.trim();
        if (trimmed === "" || trimmed.startsWith("#") || trimmed === kHead) continue;
        const row = parseRow(
            trimmed.split(",").map((field) => field.trim()),
            clip,
        );
        if (typeof row === "string") return { rows: [], error: `line ${i + 1}: ${row}` };
        rows.push(row);
    }
    return { rows, error: null };
}

const whole = (text) => (/^\d+$/.test(text) ? Number(text) : null);

function parseRow(fields, clip) {
    if (fields.length !== 7) return `7 fields are needed, here are ${fields.length}`;
    const [a, b] = [whole(fields[0]), whole(fields[1])];
    if (a === null || b === null || b < a) return "first and last are no range of frames";
    const end = clip.first + clip.frames - 1;
    if (a < clip.first || b > end) return `frames of this report are ${clip.first} to ${end}`;
    const edges = fields.slice(2, 6);
    const empty = edges.every((e) => e === "");
    const box = empty ? null : edges.map(whole);
    if (box !== null && (box.includes(null) || box[2] < box[0] || box[3] < box[1])) {
        return "the box is not left,top,right,bottom in pixels";
    }
    if (!kWhats.includes(fields[6])) return `"${fields[6]}" is neither motion nor ignore`;
    return { first: a - clip.first, last: b - clip.first, box, what: fields[6] };
}

const touch = (a, b) => a[0] < b[2] + 1 && b[0] < a[2] + 1 && a[1] < b[3] + 1 && b[1] < a[3] + 1;

// What a run makes of the labels: of each row the frames that found it and the first that missed it
// (-1: none); and how many frames were reported outside all rows. `reportedBox(f)` is the box of
// frame f in pixels of the input, or null. A row with a box is found by a box that touches it, which
// is `on_target` of the scores; a row without one by any box.
export function judge(rows, frames, reportedBox) {
    const labelled = new Uint8Array(frames);
    const boxes = Array.from({ length: frames }, (_, f) => reportedBox(f));
    const each = rows.map(({ first, last, box: wanted }) => {
        let found = 0;
        let missed = -1;
        for (let f = first; f <= last; ++f) {
            labelled[f] = 1;
            const box = boxes[f];
            if (box !== null && (wanted === null || touch(box, wanted))) ++found;
            else if (missed < 0) missed = f;
        }
        return { frames: last - first + 1, found, missed };
    });
    let outside = 0;
    let firstOutside = -1;
    for (let f = 0; f < frames; ++f) {
        if (labelled[f] === 1 || boxes[f] === null) continue;
        ++outside;
        if (firstOutside < 0) firstOutside = f;
    }
    return { each, outside, firstOutside };
}

// A box of working pixels, edges included, as MD reports it, in pixels of the input; not rounded.
export function reportedToInput([left, top, right, bottom], clip) {
    const sx = clip.input_width / clip.width;
    const sy = clip.input_height / clip.height;
    return [left * sx, top * sy, (right + 1) * sx - 1, (bottom + 1) * sy - 1];
}

// A rectangle of working pixels (any two corners) as a box of the input.
export function toInputBox([x0, y0, x1, y1], clip) {
    const along = (p, q, working, input) => {
        const scale = input / working;
        // A tiny amount over an edge is rounding and adds no pixel.
        const low = Math.floor(Math.min(p, q) * scale + 1e-6);
        const high = Math.ceil(Math.max(p, q) * scale - 1e-6) - 1;
        const clamp = (v) => Math.min(input - 1, Math.max(0, v));
        return [clamp(low), clamp(Math.max(low, high))];
    };
    const [left, right] = along(x0, x1, clip.width, clip.input_width);
    const [top, bottom] = along(y0, y1, clip.height, clip.input_height);
    return [left, top, right, bottom];
}

// A box of the input as edges in working pixels, for drawing.
export function toWorkingBox([left, top, right, bottom], clip) {
    const sx = clip.width / clip.input_width;
    const sy = clip.height / clip.input_height;
    return [left * sx, top * sy, (right + 1) * sx, (bottom + 1) * sy];
}
