// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Help, and the list of what was left out of the file.

import { h } from "../../page/dom.js";
import { kKeys } from "./keys.js";

function open(title, ...content) {
    const close = h("button.button", { type: "button", onclick: () => dialog.close() }, "Close");
    const dialog = h(
        "dialog",
        { "aria-label": title },
        h("h2", null, title),
        content,
        h("p", null, close),
    );
    dialog.addEventListener("close", () => dialog.remove());
    dialog.addEventListener("click", (e) => {
        if (e.target === dialog) dialog.close();
    });
    document.body.append(dialog);
    dialog.showModal();
}

const kReading = [
    "The picture shows one frame. Warm, filled cells are active: the rules let them into the mask. " +
        "Cool, hollow cells were over their threshold but turned down. A grey dot: changed, but below " +
        "the threshold. Nothing: no change.",
    "Click on a cell: the Block panel says in one sentence which rule decided, shows the tests in " +
        "their order, and which setting each one reads.",
    "Under the picture is why the frame has a box or none. A block can be active and the frame " +
        "still have no box: too few blocks, or the gate holds the box until it has settled.",
    "Was something missed? Go to the frame, look for hollow cells on it, click on one. Did something " +
        "trigger wrongly? Click on a filled cell there. The panel Distances counts each reason.",
];

export function openHelp(app) {
    open(
        "Reading this page",
        kReading.map((text) => h("p", null, text)),
        h("h2", null, "Keys"),
        h(
            "table",
            null,
            h(
                "tbody",
                null,
                kKeys.map(([keys, text]) =>
                    h(
                        "tr",
                        null,
                        h(
                            "td",
                            null,
                            keys.split(" ").map((key) => [h("kbd", null, key), " "]),
                        ),
                        h("td", null, text),
                    ),
                ),
            ),
        ),
        h(
            "p.small.quiet",
            null,
            `Written by ${app.head.writer}. This file loads nothing from anywhere.`,
        ),
    );
}

export function openLeftOut(app) {
    const rows = app.head.left_out.map(({ part, effect, how }) =>
        h(
            "tr",
            null,
            h("td", null, h("b", null, part)),
            h("td", null, effect),
            h("td.mono", null, how),
        ),
    );
    open(
        "What was left out to keep the file small",
        h(
            "table",
            null,
            h(
                "thead",
                null,
                h(
                    "tr",
                    null,
                    h("th", null, "Part"),
                    h("th", null, "Effect"),
                    h("th", null, "How to get it back"),
                ),
            ),
            h("tbody", null, rows),
        ),
    );
}
