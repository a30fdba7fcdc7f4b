// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Row kernel 1: the sums that the blocks' records are made of, over a whole row of cells instead of
// one block at a time.
//
// A block is four cells of 8 x 8 pixels, and strides are multiples of 8, so every block's corner is
// on the grid of cells. A cell serves each block over it in another role: as its left or right
// half, as its top or bottom half. The border of a block (block_fetch.h) changes the horizontal
// gradient only in its columns 0, 1, 14, 15, so only by the left or right role, and the vertical
// one only in its rows 0, 1, 14, 15, so only by the top or bottom role. A row of cells needs two
// versions of each vertical gradient, whatever the number of blocks over it.
//
// Per role and column, over the eight rows of the cells:
//   gradient      gx, gy: five taps each                        |g| <= 2040 by the tap limit
//   magnitude     m = max(|gx|, |gy|) + (min(|gx|, |gy|) >> 1)  <= 3060
//   weighted      w = (m * weight) >> 6                         <= 3060, weight <= 64
//   column sum    sum of w                                      <= 8 * 3060 = 24480
//   y moment      sum of (row - 4) * w                          >= -(4 + 3 + 2 + 1) * 3060 = -30600
//                                                               <= (1 + 2 + 3) * 3060 = 18360
// so 16 bits hold every one. Row 4 is the middle that keeps the y moment small; four times the
// magnitude, added at the end, moves it back to row 0. The sums of a cell take 32 bits: its
// moments are at most 28 * 8 * 3060 = 685,440.
#pragma once

#include <cstdint>

#include "md/sim_params.h"

// What the kernel reads of the settings.
struct CellSetup {
    int16_t aTapsX[kGradientTaps];  // -8 to 8; positive and negative ones sum up to 8 each at most
    int16_t aTapsY[kGradientTaps];
    // Rows of Gaussian weights << 9; 64 << 9 with weighting off. The product with twice the
    // magnitude has the weighted magnitude in its upper half. Each row twice, for vectors that hold
    // two blocks.
    alignas(64) uint16_t aWeight[16][32];
    int32_t nPadding;      // PaddingMethod
    int32_t nStrideCells;  // from block to block, 1 to 8
    // For vectors: where the pixels under a pair of taps are for each column of a cell, as the
    // left one of its block and as the right one, and both again. Pairs are taps 0 and 1, 3 and 4,
    // 2 and 3. With kPadNeighbours the places count from two columns before the cell, else from
    // the block's first column; at place 128 is a zero.
    alignas(64) uint8_t aPlacesX[3][4][16];
};

// `pGaussWin`: 32 x 32 weights.
void CellSetupInit(const MdParams* pParams, const uint8_t* pGaussWin, CellSetup* pSetup);

// Planes of HalfRow. Of the first three there are two, for the left and for the right cell.
enum HalfPlane : int32_t { kMag = 0, kMomX = 2, kMomY = 4, kLuma = 6, kHalfPlanes = 7 };

// The sums of one half, the upper or the lower, of every block of a row: one plane for each sum,
// one place in it for each block. Magnitude and moments are those of one cell, the moments counted
// from the cell's own corner; luma is that of both cells together. Owns nothing.
struct HalfRow {
    int32_t* apPlane[kHalfPlanes];
};

// Row kernels write whole groups of blocks: planes have room for a multiple of kRowStep, and what
// comes after the last block is junk.
constexpr int32_t kRowStep = 16;
constexpr int32_t RoundToRowStep(int32_t nBlocks) {
    return (nBlocks + kRowStep - 1) / kRowStep * kRowStep;
}

// Bytes after the end of a luma plane that may be read too; their values do not matter.
constexpr int32_t kLumaSlack = 64;

// Luma plane, row pitch nWidth, readable for kLumaSlack bytes after its end.
struct LumaPlane {
    const uint8_t* pY;
    int32_t nWidth, nHeight;
};

// Sums of the cell row whose first pixel row is `nY`, a multiple of 8 up to nHeight - 8, for the
// `nBlocks` blocks of a block row, which are wholly inside the frame: as their upper half into
// pTop, as their lower half into pBottom. One of the two may be null.
using CellRowSumsFn = void(const CellSetup& t, const LumaPlane& tLuma, int32_t nY, int32_t nBlocks,
                           const HalfRow* pTop, const HalfRow* pBottom);

// The definition, in plain loops; cell_sums.inc holds the vector text.
CellRowSumsFn CellRowSums_Scalar;
