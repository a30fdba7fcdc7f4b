// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Under the legend: first, back, play, on, last; the frame number, its time, the speed; and the
// sentence of the frame.

import { fill, h, rich, svg } from "../../page/dom.js";
import { clock } from "../../page/format.js";
import { kSpeeds } from "./actions.js";
import { frameKey, frameRecord, frameSentence } from "./frame_words.js";
import { plain } from "./words.js";

const kIcons = {
    first: "M3 2v10h2V2zM13 2L6 7l7 5z",
    back: "M11 2L4 7l7 5z",
    play: "M4 2l8 5-8 5z",
    pause: "M3 2h3v10H3zM8 2h3v10H8z",
    on: "M3 2l7 5-7 5z",
    last: "M9 2v10h2V2zM1 2l7 5-7 5z",
};

const icon = (name) =>
    svg(
        "svg",
        { viewBox: "0 0 14 14", width: 14, height: 14, "aria-hidden": "true" },
        svg("path", { d: kIcons[name], fill: "currentColor" }),
    );

export function createTransport(app) {
    return h(
        "div.control",
        null,
        h("div.transport", null, buttons(app), number(app), speeds(app)),
        sentence(app),
    );
}

function buttons(app) {
    const single = app.frames === 1;
    const make = (name, title, f) =>
        h(
            "button.button.icon",
            { type: "button", title, "aria-label": title, disabled: single, onclick: f },
            icon(name),
        );
    const play = make("play", "Play (Space)", () => app.play(!app.store.state.playing));
    app.store.on(["playing"], (s) => fill(play, icon(s.playing ? "pause" : "play")));
    return [
        make("first", "First frame (Home)", () => app.go(0)),
        make("back", "Frame back (←)", () => app.step(-1)),
        play,
        make("on", "Frame on (→)", () => app.step(1)),
        make("last", "Last frame (End)", () => app.go(app.frames - 1)),
    ];
}

function number(app) {
    const { first } = app.runs[0];
    const input = h("input.field.frameno", {
        type: "text",
        inputmode: "numeric",
        "aria-label": "Frame number",
        disabled: app.frames === 1,
        onchange: () => {
            const f = Number.parseInt(input.value, 10);
            if (Number.isFinite(f)) app.go(f - first);
            input.value = String(first + app.store.state.frame);
        },
        onkeydown: (e) => {
            if (e.key === "Enter" || e.key === "Escape") input.blur();
        },
    });
    const time = h("span.time.quiet");
    const update = () => {
        const f = app.store.state.frame;
        if (document.activeElement !== input) input.value = String(first + f);
        const at = clock(f, app.fps) ?? "";
        time.textContent = at !== "" && app.head.clip.variable_rate ? `about ${at}` : at;
    };
    app.store.on(["frame"], update);
    update();
    app.typeFrame = () => {
        input.focus();
        input.select();
    };
    return [
        h("label", null, h("span.framelabel", null, "Frame "), input),
        h("span.quiet", null, `of ${first + app.frames - 1}`),
        time,
    ];
}

function speeds(app) {
    const select = h(
        "select.field",
        {
            "aria-label": "Speed",
            disabled: app.frames === 1,
            onchange: () => {
                app.store.set({ speed: Number(select.value) });
                select.blur();
            },
        },
        kSpeeds.map((s) => h("option", { value: s }, `${s}×`)),
    );
    const update = () => {
        select.value = String(app.store.state.speed);
    };
    app.store.on(["speed"], update);
    update();
    return select;
}

function sentence(app) {
    const node = h("div.sentence", { "aria-live": "polite" });
    const update = () =>
        fill(
            node,
            app.runs.map((run) => line(app, run)),
        );
    app.store.on(["frame"], update);
    update();
    return node;
}

// A click on the sentence opens the setting that it speaks of.
function line(app, run) {
    const record = frameRecord(run, app.store.state.frame);
    const text = frameSentence(record);
    const key = frameKey(record);
    const label =
        run.label === "" ? null : h(`span.run.${run.label.toLowerCase()}`, null, run.label);
    const title = key === null ? plain(text) : `${plain(text)} Click: open ${key}.`;
    const open = key === null ? null : () => app.openSetting(key);
    return h(
        `p${key === null ? "" : ".leads"}`,
        { title, onclick: open ?? undefined },
        label,
        rich(text),
    );
}
