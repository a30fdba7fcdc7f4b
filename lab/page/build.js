// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Makes a page: bundles its script and style, and puts both into its template together with a content
// security policy that allows these two by their hashes and nothing else.
//
//   node build.js PACKAGES PAGE OUT NAME
//
// PACKAGES holds node_modules; PAGE holds main.js and template.html. Writes NAME.js, NAME.css and
// NAME.html into OUT. The html keeps its other marks (<!--md:...-->) for the program that fills it.

import { createHash } from "node:crypto";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join, resolve } from "node:path";

const [packages, page, out, name] = process.argv.slice(2);
const require = createRequire(resolve(packages, "package.json"));
const esbuild = require("esbuild");

// What runs in the page besides our own code, with its licence in full.
function licences() {
    const folder = join(packages, "node_modules", "uplot");
    const { version } = JSON.parse(readFileSync(join(folder, "package.json"), "utf8"));
    const text = readFileSync(join(folder, "LICENSE"), "utf8").trim();
    return `/*! uPlot ${version}\n\n${text}\n*/`;
}

const result = esbuild.buildSync({
    entryPoints: [join(page, "main.js")],
    bundle: true,
    minify: true,
    format: "iife",
    target: ["chrome120", "firefox120"],
    charset: "utf8",
    legalComments: "inline",
    banner: { js: licences() },
    nodePaths: [resolve(packages, "node_modules")],
    outfile: resolve(out, `${name}.js`),
    write: false,
    logLevel: "warning",
});
const textOf = (end) => result.outputFiles.find((f) => f.path.endsWith(end)).text.trim();
const script = textOf(".js");
const style = textOf(".css");
if (/<\/(script|style)|<!--/i.test(script + style)) {
    throw new Error("the bundle holds a mark that would end its element");
}

const hash = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
const policy = [
    "default-src 'none'",
    `script-src ${hash(script)}`,
    `style-src ${hash(style)}`,
    "img-src data: blob:",
    "media-src blob:",
    "base-uri 'none'",
    "form-action 'none'",
].join("; ");

// Puts a text in place of a mark. A function, so that "$" in the text stays as it is.
const put = (html, mark, text) => html.replace(`<!--build:${mark}-->`, () => text);
let html = readFileSync(join(page, "template.html"), "utf8");
html = put(html, "policy", `<meta http-equiv="Content-Security-Policy" content="${policy}" />`);
html = put(html, "style", `<style>${style}</style>`);
html = put(html, "script", `<script>${script}</script>`);

mkdirSync(out, { recursive: true });
writeFileSync(join(out, `${name}.js`), script);
writeFileSync(join(out, `${name}.css`), style);
writeFileSync(join(out, `${name}.html`), html);
