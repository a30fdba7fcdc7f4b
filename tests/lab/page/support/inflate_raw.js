// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Browsers inflate raw data with DecompressionStream; that of node 18, which Debian 12 has, does not
// know the raw format. To be imported for what it does to the global name.

import { Duplex } from "node:stream";
import { createInflateRaw } from "node:zlib";

try {
    new DecompressionStream("deflate-raw");
} catch {
    const Own = globalThis.DecompressionStream;
    globalThis.DecompressionStream = function (format) {
        return format === "deflate-raw" ? Duplex.toWeb(createInflateRaw()) : new Own(format);
    };
}
