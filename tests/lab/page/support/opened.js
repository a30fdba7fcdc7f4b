// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A made-up run as the page opens it, without packing: all frames are there at once.

import { openRun } from "../../../../lab/report/page/data.js";

export function opened(made, number = 0) {
    const { grid } = made.record;
    const runs = [];
    runs[number] = made.record;
    const clip = { frames: made.frames.length, first: 0 };
    clip.width = (grid.w - 1) * grid.stride + 16;
    clip.height = (grid.h - 1) * grid.stride + 16;
    const none = { bytes: () => Promise.resolve(null) };
    const run = openRun({ clip, chunk_frames: 60, runs }, number, made.columns, none, {
        ready() {},
        failed() {},
    });
    run.blocks = (f) => made.frames[f] ?? null;
    return run;
}
