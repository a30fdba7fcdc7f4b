// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A planar 4:2:0 frame in memory: Y, then U, then V, one buffer, no row padding. Sizes and
// coordinates are luma pixels, passed with every call; sizes are even as a rule. At an odd size
// the chroma planes hold (w >> 1) * (h >> 1) bytes each, and no operation here leaves its plane.
#pragma once

#include <cstdint>

struct YuvRect {
    int32_t x;  // left
    int32_t y;  // top
    int32_t w;  // width, a size and not an edge
    int32_t h;
};

// A colour is three bytes in the order R, G, B.
using RgbColour = uint8_t[3];

// Offsets of one plane within its frame's buffer.
struct YuvPlane {
    int64_t nStart;  // byte at which the plane starts
    int64_t nSize;   // its bytes
    int32_t nPitch;  // bytes of a row
};

inline YuvPlane LumaPlane(int32_t nW, int32_t nH) {
    return {0, int64_t{nW} * nH, nW};
}

// U for nIndex 0, V for 1.
inline YuvPlane ChromaPlane(int32_t nW, int32_t nH, int32_t nIndex) {
    const int64_t nLuma = int64_t{nW} * nH;
    const int64_t nStart = nIndex == 0 ? nLuma : (nLuma * 5) / 4;
    return {nStart, int64_t{nW >> 1} * (nH >> 1), nW >> 1};
}
