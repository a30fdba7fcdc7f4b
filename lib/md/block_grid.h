// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The grid of blocks over a frame.
#pragma once

#include <cstdint>

#include "md/sim_params.h"

// Blocks along one axis of nPixels pixels, at least one block long.
inline int32_t BlockCount(int32_t nPixels, const MdParams& md) {
    return (nPixels - md.nMD_HogBlockSize) / md.nMD_HogBlockStride + 1;
}

// Whether block (x, y) has all its eight neighbours.
inline bool HasAllNeighbours(int32_t x, int32_t y, int32_t nBlkW, int32_t nBlkH) {
    return 0 < x && x < nBlkW - 1 && 0 < y && y < nBlkH - 1;
}
