// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The address follows the page: "#p=1f3a&clip=2&x=false_per_1000&y=recall", so that a mail can point
// at a point.

import { scoreIndex } from "./data.js";

export function readAddress(sweep, hash) {
    const words = new URLSearchParams(hash.replace(/^#/, ""));
    const state = {};
    const point = sweep.points.findIndex((p) => p.id === words.get("p"));
    if (point >= 0) state.point = point;
    const clip = sweep.clips.findIndex((c) => c.name === words.get("clip"));
    if (clip >= 0) state.clip = clip;
    for (const axis of ["x", "y", "score"]) {
        if (scoreIndex(sweep, words.get(axis) ?? "") >= 0) state[axis] = words.get(axis);
    }
    if (words.has("filter")) state.filter = words.get("filter");
    return state;
}

export function writeAddress(sweep, state) {
    const words = new URLSearchParams({ p: sweep.points[state.point].id });
    if (state.clip >= 0) words.set("clip", sweep.clips[state.clip].name);
    for (const axis of ["x", "y", "score"]) words.set(axis, state[axis]);
    if (state.filter !== "") words.set("filter", state.filter);
    return `#${words}`;
}
