// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Data blocks of a page: base64 text in, bytes out. Integers are little endian.

export function fromBase64(text) {
    if (typeof Uint8Array.fromBase64 === "function") return Uint8Array.fromBase64(text.trim());
    const raw = atob(text.trim());
    const bytes = new Uint8Array(raw.length);
    for (let i = 0; i < raw.length; ++i) bytes[i] = raw.charCodeAt(i);
    return bytes;
}

// Raw deflate. Rejects on broken data.
export async function inflate(bytes) {
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
    return new Uint8Array(await new Response(stream).arrayBuffer());
}

// Reads integers one after the other. Throws a RangeError past the end, so cut data never passes.
export class Reader {
    constructor(bytes) {
        this.bytes = bytes;
        this.view = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
        this.at = 0;
    }
    get left() {
        return this.bytes.length - this.at;
    }
    u8() {
        if (this.at >= this.bytes.length) throw new RangeError("data ends early");
        return this.bytes[this.at++];
    }
    u16() {
        this.at += 2;
        return this.view.getUint16(this.at - 2, true);
    }
    u32() {
        this.at += 4;
        return this.view.getUint32(this.at - 4, true);
    }
    i32() {
        this.at += 4;
        return this.view.getInt32(this.at - 4, true);
    }
    // Seven bits a byte, lowest first, the top bit set on all but the last.
    varint() {
        let value = 0;
        for (let shift = 0; shift < 35; shift += 7) {
            const byte = this.u8();
            value += (byte & 127) * 2 ** shift;
            if (byte < 128) return value;
        }
        throw new RangeError("a number of more than five bytes");
    }
    // A view of the next n bytes, not a copy.
    take(n) {
        if (n > this.left) throw new RangeError("data ends early");
        this.at += n;
        return this.bytes.subarray(this.at - n, this.at);
    }
    // The next n numbers of the given array type, as a copy.
    column(Type, n) {
        const bytes = this.take(n * Type.BYTES_PER_ELEMENT);
        return new Type(bytes.slice().buffer);
    }
}
