// The text of the kernels declared in cell_sums.h, in the compiler's own vector types. Each file
// that includes it is built for another instruction set and gives the two functions its names; all
// else here stays inside that file, and nothing here calls a library template, so that no code
// built for a newer processor can be linked into an older path.
//
// A vector holds 16 lanes of 16 bits: a pixel row of one block, its left cell in lanes 0 to 7 and
// its right one in lanes 8 to 15.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "md/feature/cell_sums.h"

namespace {

using U8x16 = uint8_t __attribute__((vector_size(16)));
using I16x16 = int16_t __attribute__((vector_size(32)));
using I32x8 = int32_t __attribute__((vector_size(32)));
using I16x8 = int16_t __attribute__((vector_size(16)));
using I32x4 = int32_t __attribute__((vector_size(16)));

constexpr int32_t kChunkCells = 32;                          // blocks worked on at once at stride 8
constexpr int32_t kChunkPixels = 8 * (kChunkCells + 1);      // and the cell behind the last one
constexpr int32_t kVectors = (kChunkPixels + 15) / 16;       // of a pixel row
constexpr int32_t kMargin = 16;                              // lanes before the first pixel
constexpr int32_t kRowLanes = kMargin + 16 * kVectors + 16;  // of the longest row

#define MD_INLINE inline __attribute__((always_inline))

template <typename V, typename T>
MD_INLINE V Load(const T* p) {
    V v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

template <typename V, typename T>
MD_INLINE void Store(T* p, V v) {
    std::memcpy(p, &v, sizeof v);
}

// High halves of the products of unsigned lanes.
MD_INLINE I16x16 MulHigh(I16x16 a, I16x16 b) {
#ifdef __AVX2__
    return (I16x16)_mm256_mulhi_epu16((__m256i)a, (__m256i)b);
#else
    __m128i x[2], y[2];
    std::memcpy(x, &a, sizeof a);
    std::memcpy(y, &b, sizeof b);
    x[0] = _mm_mulhi_epu16(x[0], y[0]);
    x[1] = _mm_mulhi_epu16(x[1], y[1]);
    return Load<I16x16>(x);
#endif
}

MD_INLINE I16x16 Max(I16x16 a, I16x16 b) {
    return a > b ? a : b;
}
MD_INLINE I16x16 Abs(I16x16 a) {
#ifdef __AVX2__
    return (I16x16)_mm256_abs_epi16((__m256i)a);
#else
    return Max(a, -a);
#endif
}

// Pixels of the chunk's rows as 16-bit lanes; row 2 is the cell row's first.
struct ChunkRows {
    alignas(32) int16_t aRow[12][kRowLanes];
};

// |gx| in block order: lanes of row r at entry c + 1 are cell c as left half, cell c + 1 as right
// half. |gy| in pixel order, once in the top role, once in the bottom role.
struct ChunkGradients {
    alignas(32) int16_t aX[8][2 * kVectors + 1][16];  // two cells a vector, and the half before
    alignas(32) int16_t aYTop[8][16 * kVectors + 16];
    alignas(32) int16_t aYBottom[8][16 * kVectors + 16];
    alignas(32) uint16_t aLuma[16 * kVectors + 16];  // column sums over the 8 rows, <= 2040
};

// The chunk's part of one pixel row, with two columns before and behind it. Columns beyond the
// frame repeat its edge, which padding mode 0 asks for and the other modes never look at.
MD_INLINE void WidenRow(const uint8_t* pRow, int32_t nWidth, int32_t x0, int32_t nVectors,
                        int16_t* pLanes) {
    const int32_t nLanes = 16 * nVectors + 2;
    const int32_t nReal = nWidth - x0 < nLanes ? nWidth - x0 : nLanes;
    const int32_t nWhole = nReal / 16 * 16;
    int16_t* p = pLanes + kMargin;
    p[-2] = pRow[x0 > 0 ? x0 - 2 : 0];
    p[-1] = pRow[x0 > 0 ? x0 - 1 : 0];
#pragma GCC unroll 4
    for (int32_t i = 0; i < nWhole; i += 16) {
        Store(p + i, __builtin_convertvector(Load<U8x16>(pRow + x0 + i), I16x16));
    }
    for (int32_t i = nWhole; i < nLanes; ++i) p[i] = pRow[x0 + (i < nReal ? i : nReal - 1)];
}

// `v` with column nColumn of both cells taken from `from`.
template <int32_t nColumn>
MD_INLINE I16x16 Replace(I16x16 v, I16x16 from) {
#define MD_LANE(i) ((i) % 8 == nColumn ? 16 + (i) : (i))
    return __builtin_shufflevector(v, from, MD_LANE(0), MD_LANE(1), MD_LANE(2), MD_LANE(3),
                                   MD_LANE(4), MD_LANE(5), MD_LANE(6), MD_LANE(7), MD_LANE(8),
                                   MD_LANE(9), MD_LANE(10), MD_LANE(11), MD_LANE(12), MD_LANE(13),
                                   MD_LANE(14), MD_LANE(15));
#undef MD_LANE
}

// What a gradient function may take for granted of its taps: taps that are 0 cost as much as
// others, and the filters of practice are differences, with opposite taps at opposite places.
template <bool bOuterTaps, bool bDifferenceTaps>
struct TapPattern {
    static constexpr bool bOuter = bOuterTaps;            // tap 0 or tap 4 counts
    static constexpr bool bDifference = bDifferenceTaps;  // taps -q, -p, 0, p, q
};

// Calls fn with the pattern that covers the taps.
template <typename Fn>
MD_INLINE void WithPattern(const int16_t* pTaps, Fn fn) {
    const bool bOuter = pTaps[0] != 0 || pTaps[4] != 0;
    const bool bDifference = pTaps[2] == 0 && pTaps[0] == -pTaps[4] && pTaps[1] == -pTaps[3];
    if (bDifference && bOuter) fn(TapPattern<true, true>{});
    if (bDifference && !bOuter) fn(TapPattern<false, true>{});
    if (!bDifference) fn(TapPattern<true, false>{});
}

// The filter over five places in a row.
template <typename Taps>
MD_INLINE I16x16 Filter(const int16_t* pTaps, I16x16 a, I16x16 b, I16x16 c, I16x16 d, I16x16 e) {
    if (Taps::bDifference) {
        const I16x16 nInner = (d - b) * pTaps[3];
        return Taps::bOuter ? nInner + (e - a) * pTaps[4] : nInner;
    }
    return a * pTaps[0] + b * pTaps[1] + c * pTaps[2] + d * pTaps[3] + e * pTaps[4];
}

// |gx| of one pixel row in both roles. In the left role the columns before a cell are the border,
// in the right role those behind it.
template <int32_t nPadding, typename Taps>
MD_INLINE void GradientRowX(const int16_t* pTaps, const int16_t* pLanes, int32_t nVectors,
                            int32_t nRow, ChunkGradients* pOut) {
#pragma GCC unroll 2
    for (int32_t i = 0; i < nVectors; ++i) {
        const int16_t* p = pLanes + kMargin + 16 * i;
        const I16x16 a = Load<I16x16>(p - 2), b = Load<I16x16>(p - 1), c = Load<I16x16>(p),
                     d = Load<I16x16>(p + 1), e = Load<I16x16>(p + 2);
        I16x16 aL = a, bL = b, dR = d, eR = e;
        if (nPadding != 0) {
            const I16x16 nEdge = nPadding == 1 ? I16x16{} : c;    // of column 0 and of column 7
            const I16x16 nBefore = nPadding == 1 ? I16x16{} : b;  // column 0 seen from column 1
            const I16x16 nBehind = nPadding == 1 ? I16x16{} : d;  // column 7 seen from column 6
            bL = Replace<0>(b, nEdge);
            aL = Replace<0>(Replace<1>(a, nBefore), nEdge);
            dR = Replace<7>(d, nEdge);
            eR = Replace<7>(Replace<6>(e, nBehind), nEdge);
        }
        const I16x16 nAbsLeft = Abs(Filter<Taps>(pTaps, aL, bL, c, d, e));
        const I16x16 nAbsRight = Abs(Filter<Taps>(pTaps, a, b, c, dR, eR));
        // Cells 2i and 2i + 1: as left halves of their own blocks, as right halves of those before.
        std::memcpy(&pOut->aX[nRow][2 * i + 1][0], &nAbsLeft, 16);
        std::memcpy(&pOut->aX[nRow][2 * i + 2][0], (const char*)&nAbsLeft + 16, 16);
        std::memcpy(&pOut->aX[nRow][2 * i][8], &nAbsRight, 16);
        std::memcpy(&pOut->aX[nRow][2 * i + 1][8], (const char*)&nAbsRight + 16, 16);
    }
}

template <typename Taps>
MD_INLINE void GradientsX(const CellSetup& t, const ChunkRows& rows, int32_t nVectors,
                          ChunkGradients* pOut) {
    for (int32_t r = 0; r < 8; ++r) {
        const int16_t* pLanes = rows.aRow[r + 2];
        if (t.nPadding == 0) GradientRowX<0, Taps>(t.aGradX, pLanes, nVectors, r, pOut);
        if (t.nPadding == 1) GradientRowX<1, Taps>(t.aGradX, pLanes, nVectors, r, pOut);
        if (t.nPadding == 2) GradientRowX<2, Taps>(t.aGradX, pLanes, nVectors, r, pOut);
    }
}

// |gy| of one pixel row from the five rows around it.
template <typename Taps>
MD_INLINE void GradientRowY(const int16_t* pTaps, const int16_t* const apRows[5], int32_t nVectors,
                            int16_t* pOut) {
#pragma GCC unroll 2
    for (int32_t i = 0; i < nVectors; ++i) {
        const auto Row = [&](int32_t k) { return Load<I16x16>(apRows[k] + kMargin + 16 * i); };
        const I16x16 g = Filter<Taps>(pTaps, Row(0), Row(1), Row(2), Row(3), Row(4));
        Store(pOut + 16 * i, Abs(g));
    }
}

// |gy| of the 8 rows in the roles asked for. The border rows above the top half and below the
// bottom half are those of the padding mode; between the halves rows are always real.
template <typename Taps>
MD_INLINE void GradientsY(const CellSetup& t, const ChunkRows& rows, int32_t nVectors,
                          ChunkGradients* pOut) {
    alignas(32) static const int16_t aZero[kRowLanes] = {};
    for (int32_t r = 0; r < 8; ++r) {
        const int16_t* apTop[5];
        const int16_t* apBottom[5];
        for (int32_t k = 0; k < 5; ++k) {
            const int32_t n = r + k;  // row 2 is the first of the cell, row 9 its last
            apTop[k] = apBottom[k] = rows.aRow[n];
            if (t.nPadding == 1 && n < 2) apTop[k] = aZero;
            if (t.nPadding == 1 && n > 9) apBottom[k] = aZero;
            if (t.nPadding == 2 && n < 2) apTop[k] = rows.aRow[2];
            if (t.nPadding == 2 && n > 9) apBottom[k] = rows.aRow[9];
        }
        GradientRowY<Taps>(t.aGradY, apTop, nVectors, pOut->aYTop[r]);
        if (t.nPadding != 0 && r > 5) {
            GradientRowY<Taps>(t.aGradY, apBottom, nVectors, pOut->aYBottom[r]);
        } else if (t.nPadding != 0 && r < 2) {
            const int16_t* apReal[5];
            for (int32_t k = 0; k < 5; ++k) apReal[k] = rows.aRow[r + k];
            GradientRowY<Taps>(t.aGradY, apReal, nVectors, pOut->aYBottom[r]);
        }
    }
}

// Row sums and moments of one role, growing from row 7 up: S is the sum of the rows so far, and
// adding S once a row counts each row as often as its number. VNear starts below zero so that it
// stays within signed lanes.
constexpr int16_t kNearBias = 27540;  // half of its largest sum, 55080

struct RoleSums {
    I16x16 S = {}, VFar = {}, VNear = I16x16{} - kNearBias;
};

// Products of neighbouring signed lanes, added in pairs.
MD_INLINE I32x8 PairDot(I16x16 a, I16x16 b) {
#ifdef __AVX2__
    return (I32x8)_mm256_madd_epi16((__m256i)a, (__m256i)b);
#else
    __m128i x[2], y[2];
    std::memcpy(x, &a, sizeof a);
    std::memcpy(y, &b, sizeof b);
    x[0] = _mm_madd_epi16(x[0], y[0]);
    x[1] = _mm_madd_epi16(x[1], y[1]);
    return Load<I32x8>(x);
#endif
}

// Sums of neighbouring lanes, first of `a`, then of `b`, in each half of the register.
MD_INLINE I32x8 AddNeighbours(I32x8 a, I32x8 b) {
#ifdef __AVX2__
    return (I32x8)_mm256_hadd_epi32((__m256i)a, (__m256i)b);
#else
    return __builtin_shufflevector(a, b, 0, 2, 8, 10, 4, 6, 12, 14) +
           __builtin_shufflevector(a, b, 1, 3, 9, 11, 5, 7, 13, 15);
#endif
}

// Lanes to the eight numbers of a half block.
MD_INLINE void StoreHalf(const RoleSums& s, I16x16 nLuma, HalfBlock* pHalf) {
    const I16x16 nOnes = I16x16{} + 1;
    const I16x16 nColumns = {0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 2, 3, 4, 5, 6, 7};
    const I32x8 nMomY = PairDot(s.VFar, nOnes) + PairDot(s.VNear, nOnes) + 2 * kNearBias;
    Store(pHalf, AddNeighbours(AddNeighbours(PairDot(s.S, nOnes), PairDot(s.S, nColumns)),
                               AddNeighbours(nMomY, PairDot(nLuma, nOnes))));
}

// Twice the magnitude: 2 (max + (min >> 1)) is ax + ay + max without its lowest bit, <= 6120.
MD_INLINE I16x16 Magnitude2(I16x16 ax, I16x16 ay) {
    return (ax + ay + Max(ax, ay)) & ~1;
}

template <bool bTop, bool bBottom>
MD_INLINE void BlockHalves(const CellSetup& t, const ChunkGradients& g, int32_t nCell,
                           HalfBlock* pTop, HalfBlock* pBottom) {
    RoleSums tTop, tBottom;
#pragma GCC unroll 8
    for (int32_t r = 7; r >= 0; --r) {
        const I16x16 ax = Load<I16x16>(g.aX[r][nCell + 1]);
        const bool bOneVersion = r >= 2 && r <= 5;
        I16x16 m = {};
        if (bTop || bOneVersion) m = Magnitude2(ax, Load<I16x16>(&g.aYTop[r][8 * nCell]));
        if (bTop) {
            tTop.S += MulHigh(m, Load<I16x16>(t.aWeight[r]));
            if (r >= 4) tTop.VFar += tTop.S;
            if (r >= 1 && r < 4) tTop.VNear += tTop.S;
        }
        if (bBottom) {
            if (!bOneVersion) m = Magnitude2(ax, Load<I16x16>(&g.aYBottom[r][8 * nCell]));
            tBottom.S += MulHigh(m, Load<I16x16>(t.aWeight[8 + r]));
            if (r >= 4) tBottom.VFar += tBottom.S;
            if (r >= 1 && r < 4) tBottom.VNear += tBottom.S;
        }
    }
    const I16x16 nLuma = Load<I16x16>(&g.aLuma[8 * nCell]);
    if (bTop) StoreHalf(tTop, nLuma, pTop);
    if (bBottom) StoreHalf(tBottom, nLuma, pBottom);
}

MD_INLINE void CellRowSums(const CellSetup* pSetup, const uint8_t* pY, int32_t nWidth,
                           int32_t nHeight, int32_t nY, int32_t nBlocks, HalfBlock* pTop,
                           HalfBlock* pBottom) {
    const CellSetup& t = *pSetup;
    ChunkRows tRows;
    ChunkGradients g;
    const int32_t nStep = t.nStrideCells;
    const int32_t nPerChunk = (kChunkCells - 1) / nStep + 1;
    for (int32_t nFirst = 0; nFirst < nBlocks; nFirst += nPerChunk) {
        const int32_t nEnd = nFirst + nPerChunk < nBlocks ? nFirst + nPerChunk : nBlocks;
        const int32_t x0 = 8 * nStep * nFirst;
        const int32_t nVectors = ((nEnd - 1 - nFirst) * nStep + 3) / 2;  // cells, two a vector
        for (int32_t r = 0; r < 12; ++r) {
            int32_t y = nY + r - 2;  // rows beyond the frame repeat its edge
            y = y < 0 ? 0 : y >= nHeight ? nHeight - 1 : y;
            WidenRow(pY + static_cast<ptrdiff_t>(y) * nWidth, nWidth, x0, nVectors, tRows.aRow[r]);
        }
        WithPattern(t.aGradX,
                    [&]<typename Taps>(Taps) { GradientsX<Taps>(t, tRows, nVectors, &g); });
        WithPattern(t.aGradY,
                    [&]<typename Taps>(Taps) { GradientsY<Taps>(t, tRows, nVectors, &g); });
        if (t.nPadding == 0) std::memcpy(g.aYBottom, g.aYTop, sizeof g.aYTop);
        for (int32_t i = 0; i < 16 * nVectors; i += 16) {
            I16x16 n = {};
#pragma GCC unroll 8
            for (int32_t r = 0; r < 8; ++r) n += Load<I16x16>(tRows.aRow[r + 2] + kMargin + i);
            Store(g.aLuma + i, n);
        }
        for (int32_t b = nFirst; b < nEnd; ++b) {
            const int32_t nCell = (b - nFirst) * nStep;
            if (pTop != nullptr && pBottom != nullptr) {
                BlockHalves<true, true>(t, g, nCell, pTop + b, pBottom + b);
            } else if (pTop != nullptr) {
                BlockHalves<true, false>(t, g, nCell, pTop + b, nullptr);
            } else {
                BlockHalves<false, true>(t, g, nCell, nullptr, pBottom + b);
            }
        }
    }
}

// Products of neighbouring lanes, added in pairs.
MD_INLINE I32x4 PairDot(I16x8 a, I16x8 b) {
    return (I32x4)_mm_madd_epi16((__m128i)a, (__m128i)b);
}

MD_INLINE int32_t LaneSum(I32x4 v) {
    v += __builtin_shufflevector(v, v, 2, 3, 0, 1);
    return v[0] + v[1];
}

// Two times four lanes to eight, cut to 0 to 255; the values are not negative.
MD_INLINE I16x8 Saturate(I32x4 a, I32x4 b) {
    const I16x8 nMax = {255, 255, 255, 255, 255, 255, 255, 255};
    const I16x8 v = (I16x8)_mm_packs_epi32((__m128i)a, (__m128i)b);
    return v < nMax ? v : nMax;
}

MD_INLINE I16x8 Scale(I16x8 v, uint32_t nFactor) {
    const __m128i nFactors = _mm_set1_epi16(static_cast<int16_t>(nFactor));
    return (I16x8)_mm_mulhi_epu16((__m128i)(v << 8), nFactors);
}

// A row is worked on in stages over a few blocks at a time: the root's long wait in one block then
// passes while the others' are under way.
constexpr int32_t kStage = 16;

// inv_sqrt_hw for inputs of 1 to 650251. The digit loop gives floor(2^23 / sqrt(m)), cut to 16
// bits, for every normalised m of 2^14 to 2^16 - 1; double precision finds that floor exactly.
MD_INLINE void InverseRoots(const uint32_t (&aInput)[kStage], uint32_t (&aRoot)[kStage]) {
    int32_t aExponent[kStage], aNormalised[kStage];
    for (int32_t i = 0; i < kStage; ++i) {
        aExponent[i] = (31 - __builtin_clz(aInput[i])) / 2;
        aNormalised[i] = static_cast<int32_t>((uint64_t{aInput[i]} << 14) >> (2 * aExponent[i]));
    }
    for (int32_t i = 0; i < kStage; ++i) {
        const double dRoot = 8388608.0 / __builtin_sqrt(aNormalised[i]);
        const int32_t nRoot = static_cast<int32_t>(dRoot);
        aNormalised[i] = nRoot < 65535 ? nRoot : 65535;
    }
    for (int32_t i = 0; i < kStage; ++i) {
        aRoot[i] = static_cast<uint32_t>(aNormalised[i]) >> aExponent[i];
    }
}

struct Stage {
    I16x8 aLo[kStage], aHi[kStage];  // v[0] to v[7]; v[8] and v[9]
    uint32_t aAvgY[kStage];
    uint32_t aSumSq[kStage];
    uint32_t aScale[kStage];  // usHOGVar
    uint32_t aHistNorm2[kStage];
};

// The vector before normalisation, its sum of squares, and the block's mean luma.
MD_INLINE void VectorOf(const CellSetup& t, const HalfBlock& top, const HalfBlock& bottom,
                        int32_t i, Stage* pStage) {
    const I32x4 c0 = Load<I32x4>(&top.tLeft), c1 = Load<I32x4>(&top.tRight),
                c2 = Load<I32x4>(&bottom.tLeft), c3 = Load<I32x4>(&bottom.tRight);
    const I32x4 nRight = c1 + c3;
    const I32x4 nLower = c2 + c3;
    const I32x4 nAll = c0 + c2 + nRight;  // magnitude, x moment, y moment, luma of the block
    pStage->aAvgY[i] = static_cast<uint32_t>(nAll[3] + 128) >> 8;
    const int32_t s = t.nShiftMetric;
    // The four cells' x moments and y moments side by side.
    const I32x4 nLow01 = __builtin_shufflevector(c0, c1, 0, 4, 1, 5);
    const I32x4 nLow23 = __builtin_shufflevector(c2, c3, 0, 4, 1, 5);
    const I32x4 nHigh01 = __builtin_shufflevector(c0, c1, 2, 6, 3, 7);
    const I32x4 nHigh23 = __builtin_shufflevector(c2, c3, 2, 6, 3, 7);
    const I32x4 nX = __builtin_shufflevector(nLow01, nLow23, 2, 3, 6, 7);
    const I32x4 nY = __builtin_shufflevector(nHigh01, nHigh23, 0, 1, 4, 5);
    const I16x8 lo = Saturate(nX >> s, nY >> s);
    // A cell's own moments count from its corner; the block's from the block's.
    const I32x4 nOwn = __builtin_shufflevector(nAll, I32x4{}, 1, 2, 4, 5);
    const I32x4 nFar = __builtin_shufflevector(nRight, nLower, 0, 4, 0, 4) & I32x4{-1, -1, 0, 0};
    const I16x8 hi = Saturate((nOwn + (nFar << 3)) >> (s + 2), I32x4{});
    pStage->aLo[i] = lo;
    pStage->aHi[i] = hi;
    pStage->aSumSq[i] = static_cast<uint32_t>(1 + LaneSum(PairDot(lo, lo) + PairDot(hi, hi)));
}

// Factors and length classes of the stage's vectors.
MD_INLINE void NormsOf(const CellSetup& t, Stage* pStage) {
    const int32_t nShift = t.nShiftHistMag - 3;
    InverseRoots(pStage->aSumSq, pStage->aScale);
    for (int32_t i = 0; i < kStage; ++i) {
        const uint32_t nSumSq = pStage->aSumSq[i];
        const uint32_t nVecLen = nSumSq == 1 ? 1 : (pStage->aScale[i] * nSumSq) >> 16;
        const uint32_t h = nShift > 0 ? nVecLen >> nShift : nVecLen << -nShift;
        pStage->aHistNorm2[i] = h < 1 ? 1 : h > 255 ? 255 : h;
    }
}

// The sixteen bytes of a BlockSignature. A normalised element is at most 256, since v[i] squared is
// below the sum under the root.
MD_INLINE __m128i Signature(const CellSetup& t, int32_t i, const Stage& tStage) {
    I16x8 lo = {}, hi = {};
    uint32_t histNorm2 = 1;
    if (t.bMoments) {
        lo = tStage.aLo[i];
        hi = tStage.aHi[i];
    }
    if (t.bMoments && t.bNormalise) {
        lo = Scale(lo, tStage.aScale[i]);
        hi = Scale(hi, tStage.aScale[i]);
        histNorm2 = tStage.aHistNorm2[i];
    }
    const __m128i v = _mm_packus_epi16((__m128i)lo, (__m128i)hi);
    return _mm_insert_epi16(v, static_cast<int16_t>(tStage.aAvgY[i] | histNorm2 << 8), 5);
}

MD_INLINE uint8_t Distance(const CellSetup& t, __m128i cur, __m128i ref) {
    const __m128i zero = _mm_setzero_si128();
    const I16x8 nLo = (I16x8)_mm_unpacklo_epi8(cur, zero) - (I16x8)_mm_unpacklo_epi8(ref, zero);
    const I16x8 nHi = (I16x8)_mm_unpackhi_epi8(cur, zero) - (I16x8)_mm_unpackhi_epi8(ref, zero);
    const I16x8 nTwo = nHi & I16x8{-1, -1, 0, 0, 0, 0, 0, 0};  // v[8] and v[9] alone
    const int32_t iAccuDist = LaneSum(PairDot(nLo, nLo) + PairDot(nTwo, nTwo)) >> t.nAccuShift;
    const int32_t hc = _mm_extract_epi16(cur, 5) >> 8;
    const int32_t nDiff = hc - (_mm_extract_epi16(ref, 5) >> 8);
    const int32_t nBelow = t.bWeightOneSided ? 0 : -nDiff;
    const int32_t nFar = nDiff > nBelow ? nDiff : nBelow;
    const uint32_t nProduct = static_cast<uint32_t>(iAccuDist) * static_cast<uint32_t>(hc + nFar) *
                              static_cast<uint32_t>(t.nScale);
    const int32_t iHOGDist = static_cast<int32_t>(nProduct) >> t.nDistShift;
    return static_cast<uint8_t>(iHOGDist < 255 ? iHOGDist : 255);
}

MD_INLINE void BlockRowFeatures(const CellSetup* pSetup, const HalfBlock* pTop,
                                const HalfBlock* pBottom, int32_t nBlocks, BlockSignature* pCur,
                                const BlockSignature* pRef, uint8_t* pDist, uint8_t* pYDiff) {
    const CellSetup& t = *pSetup;
    Stage tStage;
    for (int32_t nFirst = 0; nFirst < nBlocks; nFirst += kStage) {
        const int32_t nCount = nBlocks - nFirst < kStage ? nBlocks - nFirst : kStage;
        for (int32_t i = 0; i < nCount; ++i) {
            VectorOf(t, pTop[nFirst + i], pBottom[nFirst + i], i, &tStage);
        }
        for (int32_t i = nCount; i < kStage; ++i) tStage.aSumSq[i] = 1;
        if (t.bMoments && t.bNormalise) NormsOf(t, &tStage);
        for (int32_t i = 0; i < nCount; ++i) {
            const int32_t b = nFirst + i;
            const __m128i cur = Signature(t, i, tStage);
            Store(&pCur[b], cur);  // before the reference is read: both may be one record
            const __m128i ref = Load<__m128i>(&pRef[b]);
            const int32_t nYDiff =
                (_mm_extract_epi16(cur, 5) & 255) - (_mm_extract_epi16(ref, 5) & 255);
            pYDiff[b] = static_cast<uint8_t>(nYDiff < 0 ? -nYDiff : nYDiff);
            pDist[b] = t.bMoments ? Distance(t, cur, ref) : uint8_t{0};
        }
    }
}

}  // namespace
