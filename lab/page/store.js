// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The state of a page: one flat record, and who wants to hear of which member.

// createStore({frame: 0}) gives { state, set(patch), on(names, f) }. `set` stores what differs and
// then calls each listener once that named one of the members changed, in the order of `on`.
export function createStore(initial) {
    const state = { ...initial };
    const listeners = [];

    function set(patch) {
        const changed = new Set();
        for (const [name, value] of Object.entries(patch)) {
            if (Object.is(state[name], value)) continue;
            state[name] = value;
            changed.add(name);
        }
        if (changed.size === 0) return;
        for (const { names, f } of listeners) {
            if (names.some((n) => changed.has(n))) f(state, changed);
        }
    }

    return {
        state,
        set,
        on(names, f) {
            listeners.push({ names, f });
        },
    };
}
