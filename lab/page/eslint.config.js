// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Rules for the pages and their tests, on top of the recommended ones. Run by scripts/lint.sh from the
// root of the sources; packages come from the build tree.
import { createRequire } from "node:module";
import { join, resolve } from "node:path";

const packages = resolve(process.env.MD_PAGE_TREE ?? "build/release/page");
const js = createRequire(join(packages, "package.json"))("@eslint/js");

const names = (list) => Object.fromEntries(list.map((name) => [name, "readonly"]));
const both = [
    "performance",
    "console",
    "setTimeout",
    "clearTimeout",
    "setInterval",
    "clearInterval",
    "queueMicrotask",
    "URL",
    "URLSearchParams",
    "DecompressionStream",
    "TextDecoder",
    "Blob",
    "Response",
    "atob",
];
const browser = [
    "window",
    "document",
    "location",
    "history",
    "navigator",
    "Node",
    "ImageData",
    "ResizeObserver",
    "HTMLInputElement",
    "HTMLTextAreaElement",
    "HTMLSelectElement",
    "HTMLButtonElement",
    "getComputedStyle",
    "VideoFrame",
    "requestIdleCallback",
    "requestAnimationFrame",
    "FileReader",
];

export default [
    js.configs.recommended,
    {
        languageOptions: {
            ecmaVersion: 2023,
            sourceType: "module",
            globals: names([...both, ...browser]),
        },
        rules: {
            "no-unused-vars": ["error", { argsIgnorePattern: "^_" }],
            "prefer-const": "error",
            "no-var": "error",
            eqeqeq: "error",
            "no-shadow": "error",
            "max-lines-per-function": ["error", { max: 80, skipComments: true }],
            "no-param-reassign": "error",
            "no-eval": "error",
        },
    },
    {
        files: ["tests/**/*.js", "**/page/build.js", "**/eslint.config.js"],
        languageOptions: { globals: names(["process", "Buffer"]) },
        rules: { "max-lines-per-function": "off" },
    },
];
