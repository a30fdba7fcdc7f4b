// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Paper: light, 700 pixels wide, picture on white, all that counts one below the other. The screen is
// restored after printing.

import { setTheme, themeName } from "../../page/theme.js";

export function listenPrint(app, redraw) {
    let before = null;
    window.addEventListener("beforeprint", () => {
        if (before !== null) return;
        before = { theme: themeName(), tab: app.store.state.tab };
        document.body.dataset.paper = "1";
        setTheme("light");
        app.store.set({ paper: true, layout: app.store.state.layout + 1 });
        redraw();
    });
    window.addEventListener("afterprint", () => {
        if (before === null) return;
        delete document.body.dataset.paper;
        setTheme(before.theme);
        app.store.set({ paper: false, layout: app.store.state.layout + 1 });
        before = null;
        redraw();
    });
}
