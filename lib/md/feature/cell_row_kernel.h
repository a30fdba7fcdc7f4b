// The text of CellRowSums (cell_sums.h). Each file that includes it is built for another
// instruction set; all here stays inside that file.
//
// The cell row is worked on in chunks that stay in the first-level cache. A vector holds one pixel
// row of one block: its left cell in the first lane, its right one in the second.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "md/feature/cell_sums.h"
#include "md/feature/two_lanes.h"

namespace {

constexpr int32_t kChunkCells = 64;
constexpr int32_t kChunkPixels = 8 * kChunkCells;
constexpr int32_t kMargin = 32;     // bytes before the first pixel of a row, two of them used
constexpr int32_t kBorderRows = 2;  // above and below a block
constexpr int32_t kRows = 8 + 2 * kBorderRows;

// Rows of the chunk; row 2 is the first of the cells.
struct ChunkRows {
    alignas(32) uint8_t aRow[kRows][kMargin + kChunkPixels + 32];
};

alignas(32) constexpr uint8_t aZeroRow[sizeof ChunkRows::aRow[0]] = {};

// |gy| of row r of the cells: in row r + 2 with the real rows around it; rows 0 and 1 of a top half
// below its border, in rows 0 and 1; rows 6 and 7 of a bottom half above its border, in 10 and 11.
// These four are missing where the border is the real rows.
struct ChunkGradY {
    alignas(32) int16_t aRow[kRows][kChunkPixels];
    int64_t aLuma[kChunkCells][2] = {};  // sum of each cell, and 0
};

// The chunk's part of one pixel row, with two columns before and behind it. Columns beyond the
// frame repeat its edge, which padding mode 0 asks for and the other modes never look at.
MD_INLINE void CopyRow(const uint8_t* pRow, int32_t nWidth, int32_t x0, int32_t nPixels,
                       uint8_t* pCopy) {
    const int32_t nBytes = nPixels + kBorderRows;
    const int32_t nReal = nWidth - x0 < nBytes ? nWidth - x0 : nBytes;
    uint8_t* p = pCopy + kMargin;
    p[-2] = pRow[x0 > 0 ? x0 - 2 : 0];
    p[-1] = pRow[x0 > 0 ? x0 - 1 : 0];
    std::memcpy(p, pRow + x0, static_cast<size_t>(nReal));
    for (int32_t i = nReal; i < nBytes; ++i) p[i] = p[nReal - 1];
}

// |gy| of one pixel row from the five rows around it.
template <int32_t nPairs>
MD_INLINE void GradientRowY(const TapPairs& tPairs, const uint8_t* const apRows[5], int32_t nPixels,
                            int16_t* pOut) {
    for (int32_t i = 0; i < nPixels; i += 32) {
        I16x16 nLow = {}, nHigh = {};
#pragma GCC unroll 3
        for (int32_t k = 0; k < nPairs; ++k) {
            const U8x32 a = Load<U8x32>(apRows[tPairs.aPlace[k][0]] + kMargin + i);
            const U8x32 b = Load<U8x32>(apRows[tPairs.aPlace[k][1]] + kMargin + i);
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
            apRows[k] = rows.aRow[r + k];
            if (n < 2 && r + k < 2) apRows[k] = t.nPadding == 1 ? aZeroRow : rows.aRow[2];
            if (n > 9 && r + k > 9) apRows[k] = t.nPadding == 1 ? aZeroRow : rows.aRow[9];
        }
        GradientRowY<nPairs>(t.tPairsY, apRows, nPixels, pOut->aRow[n]);
    }
}

MD_INLINE void LumaOfCells(const ChunkRows& rows, int32_t nPixels, ChunkGradY* pOut) {
    for (int32_t i = 0; i < nPixels; i += 32) {
        I64x4 n = {};
#pragma GCC unroll 8
        for (int32_t r = 0; r < 8; ++r) {
            n += SumDifferences(Load<U8x32>(rows.aRow[r + kBorderRows] + kMargin + i), U8x32{});
        }
        for (int32_t c = 0; c < 4; ++c) pOut->aLuma[i / 8 + c][0] = n[c];
    }
}

// The filter along a row: each pair of taps takes its pixels from the 16 bytes around a cell.
template <int32_t nPairs>
struct FilterX {
    U8x32 aPlaces[nPairs], aTaps[nPairs];
};

template <int32_t nPairs>
MD_INLINE I16x16 AbsGradientX(const FilterX<nPairs>& tFilter, const uint8_t* pPixels) {
    const U8x32 v = LoadLanes(pPixels - 2, pPixels + 6);
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
        const I16x16 ax = AbsGradientX(tFilter, rows.aRow[r + kBorderRows] + kMargin + nX);
        if (R::bTop) AddRow(r, Magnitude2(ax, &g.aRow[R::Top(r)][nX]), t.aWeight[r], &tTop);
        if (R::bBottom) {
            AddRow(r, Magnitude2(ax, &g.aRow[R::Bottom(r)][nX]), t.aWeight[8 + r], &tBottom);
        }
    }
    const I32x8 nLuma = Load<I32x8>(g.aLuma[nX / 8]);
    if (R::bTop) StoreHalf(tTop, nLuma, pTop);
    if (R::bBottom) StoreHalf(tBottom, nLuma, pBottom);
}

template <typename R, int32_t nPairs>
MD_INLINE void ChunkHalves(const CellSetup& t, const ChunkRows& rows, const ChunkGradY& g,
                           int32_t nBlocks, HalfBlock* pTop, HalfBlock* pBottom) {
    FilterX<nPairs> tFilter;  // a copy that the stores to the halves cannot touch
    for (int32_t k = 0; k < nPairs; ++k) {
        tFilter.aPlaces[k] = Load<U8x32>(t.aPlacesX[k]);
        tFilter.aTaps[k] = (U8x32)(I16x16{} + t.tPairsX.aTaps[k]);
    }
    for (int32_t b = 0; b < nBlocks; ++b) {
        BlockHalves<R>(t, tFilter, rows, g, 8 * t.nStrideCells * b, pTop + b, pBottom + b);
    }
}

// The halves asked for; null pointers stay null.
template <int32_t nPairs, bool bOwnBorder>
MD_INLINE void ChunkRoles(const CellSetup& t, const ChunkRows& rows, const ChunkGradY& g,
                          int32_t nBlocks, HalfBlock* pTop, HalfBlock* pBottom) {
    if (pTop != nullptr && pBottom != nullptr) {
        ChunkHalves<Roles<true, true, bOwnBorder>, nPairs>(t, rows, g, nBlocks, pTop, pBottom);
    } else if (pTop != nullptr) {
        ChunkHalves<Roles<true, false, bOwnBorder>, nPairs>(t, rows, g, nBlocks, pTop, pTop);
    } else {
        ChunkHalves<Roles<false, true, bOwnBorder>, nPairs>(t, rows, g, nBlocks, pBottom, pBottom);
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
        const int32_t x0 = 8 * t.nStrideCells * nFirst;
        const int32_t nCells = (nCount - 1) * t.nStrideCells + 2;
        const int32_t nPixels = (8 * nCells + 31) / 32 * 32;
        for (int32_t r = 0; r < kRows; ++r) {
            int32_t y = nY + r - kBorderRows;  // rows beyond the frame repeat its edge
            y = y < 0 ? 0 : y >= nHeight ? nHeight - 1 : y;
            CopyRow(pY + static_cast<ptrdiff_t>(y) * nWidth, nWidth, x0, nPixels, tRows.aRow[r]);
        }
        WithPairs(t.tPairsY, [&]<int32_t nPairs>() { GradientsY<nPairs>(t, tRows, nPixels, &g); });
        LumaOfCells(tRows, nPixels, &g);
        HalfBlock* const pTops = pTop == nullptr ? nullptr : pTop + nFirst;
        HalfBlock* const pBottoms = pBottom == nullptr ? nullptr : pBottom + nFirst;
        WithPairs(t.tPairsX, [&]<int32_t nPairs>() {
            if (t.nPadding == 0) ChunkRoles<nPairs, false>(t, tRows, g, nCount, pTops, pBottoms);
            if (t.nPadding != 0) ChunkRoles<nPairs, true>(t, tRows, g, nCount, pTops, pBottoms);
        });
    }
}

}  // namespace
