// The text of CellRowSums (cell_sums.h). Each file that includes it is built for another
// instruction set; all here stays inside that file.
//
// The cell row is worked on in chunks that stay in the first-level cache. A vector holds one pixel
// row of one block: its left cell in the first lane, its right one in the second.
#pragma once

#include <cstddef>
#include <cstdint>

#include "md/feature/cell_sums.h"
#include "md/feature/two_lanes.h"

namespace {

constexpr int32_t kChunkCells = 64;
constexpr int32_t kChunkPixels = 8 * kChunkCells;
constexpr int32_t kRows = 12;  // of 8 cells high, with two above and two below

// Where the chunk's pixel rows begin in the frame; row 2 is the first of the cells. Rows beyond the
// frame repeat its edge.
struct ChunkRows {
    const uint8_t* apRow[kRows];
};

alignas(32) constexpr uint8_t kZeroRow[kChunkPixels] = {};

// |gy| of row r of the cells: in row r + 2 with the real rows around it; rows 0 and 1 of a top half
// below its border, in rows 0 and 1; rows 6 and 7 of a bottom half above its border, in 10 and 11.
// These four are missing where the border is the real rows.
struct ChunkGradY {
    alignas(32) int16_t aRow[kRows][kChunkPixels];
    int64_t aLuma[kChunkCells][2] = {};  // sum of each cell, and 0
};

// |gy| of one pixel row from the five rows around it.
template <int32_t nPairs>
MD_INLINE void GradientRowY(const TapPairs& tPairs, const uint8_t* const apRows[5], int32_t nPixels,
                            int16_t* pOut) {
    for (int32_t i = 0; i < nPixels; i += 32) {
        I16x16 nLow = {}, nHigh = {};
#pragma GCC unroll 3
        for (int32_t k = 0; k < nPairs; ++k) {
            const U8x32 a = Load<U8x32>(apRows[tPairs.aPlace[k][0]] + i);
            const U8x32 b = Load<U8x32>(apRows[tPairs.aPlace[k][1]] + i);
            const U8x32 nTaps = (U8x32)(I16x16{} + tPairs.aTaps[k]);
            nLow += BytePairDot(InterleaveLow(a, b), nTaps);
            nHigh += BytePairDot(InterleaveHigh(a, b), nTaps);
        }
        // Of the four cells the low halves hold the first and third, the high ones the others.
        StoreLanes(pOut + i, pOut + i + 16, Abs(nLow));
        StoreLanes(pOut + i + 8, pOut + i + 24, Abs(nHigh));
    }
}

template <int32_t nPairs>
MD_INLINE void GradientsY(const CellSetup& t, const ChunkRows& rows, int32_t nPixels,
                          ChunkGradY* pOut) {
    const int32_t nMissing = t.nPadding == 0 ? 2 : 0;
    for (int32_t n = nMissing; n < kRows - nMissing; ++n) {
        // Rows 0 and 1 of the output look at a top border, 10 and 11 at a bottom one.
        const int32_t r = n < 2 ? n : n > 9 ? n - 4 : n - 2;
        const uint8_t* apRows[5];
        for (int32_t k = 0; k < 5; ++k) {
            apRows[k] = rows.apRow[r + k];
            if (n < 2 && r + k < 2) apRows[k] = t.nPadding == 1 ? kZeroRow : rows.apRow[2];
            if (n > 9 && r + k > 9) apRows[k] = t.nPadding == 1 ? kZeroRow : rows.apRow[9];
        }
        GradientRowY<nPairs>(t.tPairsY, apRows, nPixels, pOut->aRow[n]);
    }
}

MD_INLINE void LumaOfCells(const ChunkRows& rows, int32_t nPixels, ChunkGradY* pOut) {
    for (int32_t i = 0; i < nPixels; i += 32) {
        I64x4 n = {};
#pragma GCC unroll 8
        for (int32_t r = 0; r < 8; ++r) {
            n += SumDifferences(Load<U8x32>(rows.apRow[r + 2] + i), U8x32{});
        }
        for (int32_t c = 0; c < 4; ++c) pOut->aLuma[i / 8 + c][0] = n[c];
    }
}

// The filter along a row: each pair of taps takes its pixels from 16 bytes around a cell.
template <int32_t nPairs>
struct FilterX {
    U8x32 aPlaces[nPairs], aTaps[nPairs];
    ptrdiff_t nStart;  // of the left cell's bytes
};

template <int32_t nPairs>
MD_INLINE FilterX<nPairs> FilterAt(const CellSetup& t, bool bFirst, bool bLast) {
    FilterX<nPairs> tFilter;
    for (int32_t k = 0; k < nPairs; ++k) {
        tFilter.aPlaces[k] = Load<U8x32>(t.aPlacesX[bFirst][bLast][k]);
        tFilter.aTaps[k] = (U8x32)(I16x16{} + t.tPairsX.aTaps[k]);
    }
    tFilter.nStart = bFirst ? 0 : -2;
    return tFilter;
}

template <int32_t nPairs>
MD_INLINE I16x16 AbsGradientX(const FilterX<nPairs>& tFilter, const uint8_t* pPixels) {
    const U8x32 v = LoadLanes(pPixels + tFilter.nStart, pPixels + 6);
    I16x16 g = {};
#pragma GCC unroll 3
    for (int32_t k = 0; k < nPairs; ++k) {
        g += BytePairDot(Shuffle(v, tFilter.aPlaces[k]), tFilter.aTaps[k]);
    }
    return Abs(g);
}

// Twice the magnitude: 2 (max + (min >> 1)) is ax + ay + max without its lowest bit, <= 6120.
MD_INLINE I16x16 Magnitude2(I16x16 ax, const int16_t* pAbsY) {
    const I16x16 ay = Load<I16x16>(pAbsY);
    return (ax + ay + Max(ax, ay)) & ~1;
}

// Row sums and moments of one role, growing from row 7 up: S is the sum of the rows so far, and
// adding S once a row counts each row as often as its number. VNear starts below zero so that it
// stays within signed lanes.
constexpr int16_t kNearBias = 27540;  // half of its largest sum, 55080

struct RoleSums {
    I16x16 S = {}, VFar = {}, VNear = I16x16{} - kNearBias;
};

MD_INLINE void AddRow(int32_t r, I16x16 nMagnitude2, const uint16_t* pWeights, RoleSums* pSums) {
    pSums->S += MulHigh(nMagnitude2, Load<I16x16>(pWeights));
    if (r >= 4) pSums->VFar += pSums->S;
    if (r >= 1 && r < 4) pSums->VNear += pSums->S;
}

// Lanes to the eight numbers of a half block.
MD_INLINE void StoreHalf(const RoleSums& s, I32x8 nLuma, HalfBlock* pHalf) {
    const I16x16 nOnes = I16x16{} + 1;
    const I16x16 nColumns = {0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 2, 3, 4, 5, 6, 7};
    const I32x8 nMomY = PairDot(s.VFar, nOnes) + PairDot(s.VNear, nOnes) + 2 * kNearBias;
    Store(pHalf, AddNeighbours(AddNeighbours(PairDot(s.S, nOnes), PairDot(s.S, nColumns)),
                               AddNeighbours(nMomY, nLuma)));
}

// What a block's halves ask of their border.
template <bool bTopHalf, bool bBottomHalf, bool bOwnBorder>
struct Roles {
    static constexpr bool bTop = bTopHalf, bBottom = bBottomHalf;
    // Rows of ChunkGradY that hold row r.
    static constexpr int32_t Top(int32_t r) { return bOwnBorder && r < 2 ? r : r + 2; }
    static constexpr int32_t Bottom(int32_t r) { return bOwnBorder && r > 5 ? r + 4 : r + 2; }
};

// nX: column of the left cell in the chunk.
template <typename R, int32_t nPairs>
MD_INLINE void BlockHalves(const CellSetup& t, const FilterX<nPairs>& tFilter,
                           const ChunkRows& rows, const ChunkGradY& g, int32_t nX, HalfBlock* pTop,
                           HalfBlock* pBottom) {
    RoleSums tTop, tBottom;
#pragma GCC unroll 8
    for (int32_t r = 7; r >= 0; --r) {
        const I16x16 ax = AbsGradientX(tFilter, rows.apRow[r + 2] + nX);
        if (R::bTop) AddRow(r, Magnitude2(ax, &g.aRow[R::Top(r)][nX]), t.aWeight[r], &tTop);
        if (R::bBottom) {
            AddRow(r, Magnitude2(ax, &g.aRow[R::Bottom(r)][nX]), t.aWeight[8 + r], &tBottom);
        }
    }
    const I32x8 nLuma = Load<I32x8>(g.aLuma[nX / 8]);
    if (R::bTop) StoreHalf(tTop, nLuma, pTop);
    if (R::bBottom) StoreHalf(tBottom, nLuma, pBottom);
}

// The chunk's blocks: nCount of the row's nBlocks, from nFirst on.
struct Blocks {
    int32_t nFirst, nCount, nBlocks;
};

template <typename R, int32_t nPairs>
MD_INLINE void ChunkHalves(const CellSetup& t, const ChunkRows& rows, const ChunkGradY& g,
                           const Blocks& tBlocks, HalfBlock* pTop, HalfBlock* pBottom) {
    const int32_t nLast = tBlocks.nBlocks - 1;
    FilterX<nPairs> tFilter;
    for (int32_t i = 0; i < tBlocks.nCount; ++i) {
        const int32_t b = tBlocks.nFirst + i;
        if (i == 0 || b == 1 || b == nLast) tFilter = FilterAt<nPairs>(t, b == 0, b == nLast);
        BlockHalves<R>(t, tFilter, rows, g, 8 * t.nStrideCells * i, pTop + b, pBottom + b);
    }
}

// The halves asked for. Where one pointer is null its role is left out, and the other stands in.
template <int32_t nPairs, bool bOwnBorder>
MD_INLINE void ChunkRoles(const CellSetup& t, const ChunkRows& rows, const ChunkGradY& g,
                          const Blocks& tBlocks, HalfBlock* pTop, HalfBlock* pBottom) {
    if (pTop != nullptr && pBottom != nullptr) {
        ChunkHalves<Roles<true, true, bOwnBorder>, nPairs>(t, rows, g, tBlocks, pTop, pBottom);
    } else if (pTop != nullptr) {
        ChunkHalves<Roles<true, false, bOwnBorder>, nPairs>(t, rows, g, tBlocks, pTop, pTop);
    } else {
        ChunkHalves<Roles<false, true, bOwnBorder>, nPairs>(t, rows, g, tBlocks, pBottom, pBottom);
    }
}

// Calls fn with the number of pairs, 1 to 3, as a constant.
template <typename Fn>
MD_INLINE void WithPairs(const TapPairs& tPairs, Fn fn) {
    if (tPairs.nPairs == 1) fn.template operator()<1>();
    if (tPairs.nPairs == 2) fn.template operator()<2>();
    if (tPairs.nPairs == 3) fn.template operator()<3>();
}

MD_INLINE void CellRowSums(const CellSetup* pSetup, const uint8_t* pY, int32_t nWidth,
                           int32_t nHeight, int32_t nY, int32_t nBlocks, HalfBlock* pTop,
                           HalfBlock* pBottom) {
    const CellSetup& t = *pSetup;
    ChunkRows tRows;
    ChunkGradY g;
    const int32_t nPerChunk = (kChunkCells - 2) / t.nStrideCells + 1;
    for (int32_t nFirst = 0; nFirst < nBlocks; nFirst += nPerChunk) {
        const int32_t nCount = nBlocks - nFirst < nPerChunk ? nBlocks - nFirst : nPerChunk;
        const int32_t nCells = (nCount - 1) * t.nStrideCells + 2;
        const int32_t nPixels = (8 * nCells + 31) / 32 * 32;
        for (int32_t r = 0; r < kRows; ++r) {
            const int32_t n = nY + r - 2;
            const int32_t y = n < 0 ? 0 : n >= nHeight ? nHeight - 1 : n;
            tRows.apRow[r] = pY + static_cast<ptrdiff_t>(y) * nWidth + 8 * t.nStrideCells * nFirst;
        }
        WithPairs(t.tPairsY, [&]<int32_t nPairs>() { GradientsY<nPairs>(t, tRows, nPixels, &g); });
        LumaOfCells(tRows, nPixels, &g);
        const Blocks tBlocks{nFirst, nCount, nBlocks};
        WithPairs(t.tPairsX, [&]<int32_t nPairs>() {
            if (t.nPadding == 0) ChunkRoles<nPairs, false>(t, tRows, g, tBlocks, pTop, pBottom);
            if (t.nPadding != 0) ChunkRoles<nPairs, true>(t, tRows, g, tBlocks, pTop, pBottom);
        });
    }
}

}  // namespace
