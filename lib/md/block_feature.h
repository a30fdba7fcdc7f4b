// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The feature record of one block: 200 bytes in a fixed layout.
#pragma once

#include <cstdint>

constexpr int kVectorSize = 10;  // bytes of the moment vector that metric 2 compares

struct BlockFeature {
    // The vector: x moments of cells 0 to 3, y moments of cells 0 to 3, x and y moment of the
    // block; each 0 to 255. Cell c covers 8x8 pixels at row c / 2, column c % 2.
    uint8_t v[kVectorSize];
    uint8_t aCog[10];        // cleared, never filled on this chip
    uint8_t aReserved[176];  // not written, not read
    uint8_t histNorm0;       // always 1
    uint8_t nAvgY;           // rounded mean luma of the block, 0 to 255
    uint8_t histNorm2;       // length class of the vector, 1 to 255
    uint8_t histNorm4;       // not written on this chip
};

static_assert(sizeof(BlockFeature) == 200);
