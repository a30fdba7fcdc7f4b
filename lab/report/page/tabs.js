// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The panels on the right and their tabs. On wide screens the block stays open beside the others.

import { h } from "../../page/dom.js";

// `panels`: [id, name, node]; the one with id "block" stays open on wide screens.
export function createTabs(app, panels) {
    const list = h("div.tabs", { role: "tablist", "aria-label": "Panels" });
    const buttons = panels.map(([id, name, node]) => {
        node.id = `panel-${id}`;
        node.setAttribute("role", "tabpanel");
        node.setAttribute("tabindex", "-1");
        const button = h(
            "button",
            {
                type: "button",
                role: "tab",
                "aria-controls": node.id,
                onclick: () => app.store.set({ tab: id }),
                data: { tab: id },
            },
            name,
        );
        list.append(button);
        return button;
    });
    const update = () => {
        const wide = app.wide();
        let { tab } = app.store.state;
        if (wide && tab === "block") tab = panels.find(([id]) => id !== "block")[0];
        panels.forEach(([id, , node], i) => {
            const pinned = wide && id === "block";
            node.hidden = !pinned && id !== tab;
            buttons[i].hidden = pinned;
            buttons[i].setAttribute("aria-selected", String(id === tab));
            buttons[i].tabIndex = id === tab ? 0 : -1;
        });
    };
    list.addEventListener("keydown", (e) => {
        const by = e.key === "ArrowRight" ? 1 : e.key === "ArrowLeft" ? -1 : 0;
        if (by === 0) return;
        e.stopPropagation();
        const open = buttons.filter((b) => !b.hidden);
        const next = open[(open.indexOf(document.activeElement) + by + open.length) % open.length];
        next.click();
        next.focus();
    });
    app.store.on(["tab", "layout"], update);
    update();
    return h(
        "div.right",
        null,
        list,
        panels.map(([, , node]) => node),
    );
}
