// The text of BlockRowFeatures (cell_sums.h). Each file that includes it is built for another
// instruction set; all here stays inside that file.
#pragma once

#include <cstdint>
#include <cstring>

#include "md/feature/cell_sums.h"
#include "md/feature/two_lanes.h"

namespace {

using I16x8 = int16_t __attribute__((vector_size(16)));
using I32x4 = int32_t __attribute__((vector_size(16)));

// Products of neighbouring lanes, added in pairs.
MD_INLINE I32x4 PairDot(I16x8 a, I16x8 b) {
    return (I32x4)_mm_madd_epi16((__m128i)a, (__m128i)b);
}

// Sums of neighbouring lanes, of `a`, then of `b`.
MD_INLINE I32x4 AddNeighbours(I32x4 a, I32x4 b) {
    return (I32x4)_mm_hadd_epi32((__m128i)a, (__m128i)b);
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

MD_INLINE float PowerOfTwo(int32_t n) {  // n of -126 to 127
    return __builtin_bit_cast(float, (n + 127) << 23);
}

// inv_sqrt_hw for inputs of 1 to 650251. The digit loop gives floor(2^23 / sqrt(m)), cut to 16
// bits, for every normalised m of 2^14 to 2^16 - 1; double precision finds that floor exactly. All
// other numbers here are integers below 2^24, times a power of two, which float holds exactly.
MD_INLINE void InverseRoots(const uint32_t (&aInput)[kStage], uint32_t (&aRoot)[kStage]) {
#pragma GCC unroll 1
    for (int32_t i = 0; i < kStage; ++i) {
        const float fInput = static_cast<float>(static_cast<int32_t>(aInput[i]));
        const int32_t nLog2 = (__builtin_bit_cast(int32_t, fInput) >> 23) - 127;
        const int32_t nExponent = nLog2 >> 1;
        const auto nNormalised = static_cast<int32_t>(fInput * PowerOfTwo(14 - 2 * nExponent));
        const double dRoot = 8388608.0 / __builtin_sqrt(static_cast<double>(nNormalised));
        const double dCut = dRoot < 65535.0 ? dRoot : 65535.0;
        const double dScaled = dCut * static_cast<double>(PowerOfTwo(-nExponent));
        aRoot[i] = static_cast<uint32_t>(static_cast<int32_t>(dScaled));
    }
}

struct Stage {
    I16x8 aLo[kStage], aHi[kStage];  // v[0] to v[7]; v[8] and v[9]
    I32x4 aSquares[kStage];          // four sums whose sum is that of the squares
    uint32_t aSum[kStage];           // of the squares
    uint32_t aScale[kStage];         // usHOGVar
    uint32_t aAvgY[kStage];
    uint32_t aHistNorm2[kStage];
    int32_t aRefHistNorm2[kStage];
};

// Sum of the squares of the ten elements in four parts.
MD_INLINE I32x4 Squares(I16x8 lo, I16x8 hi) {
    return PairDot(lo, lo) + PairDot(hi, hi);
}

MD_INLINE void SumSquares(Stage* pStage) {
    for (int32_t i = 0; i < kStage; i += 4) {
        const I32x4* p = pStage->aSquares + i;
        const I32x4 a = AddNeighbours(p[0], p[1]), b = AddNeighbours(p[2], p[3]);
        Store(pStage->aSum + i, AddNeighbours(a, b));
    }
}

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
    pStage->aSquares[i] = Squares(lo, hi);
}

// Factors and length classes of the stage's vectors.
MD_INLINE void NormsOf(const CellSetup& t, Stage* pStage) {
    const int32_t nLeft = t.nShiftHistMag < 3 ? 3 - t.nShiftHistMag : 0;
    const int32_t nRight = t.nShiftHistMag > 3 ? t.nShiftHistMag - 3 : 0;
    SumSquares(pStage);
    for (uint32_t& nSum : pStage->aSum) ++nSum;
    InverseRoots(pStage->aSum, pStage->aScale);
#pragma GCC unroll 1
    for (int32_t i = 0; i < kStage; ++i) {
        const uint32_t nSum = pStage->aSum[i];
        const uint32_t nVecLen = nSum == 1 ? 1 : (pStage->aScale[i] * nSum) >> 16;
        const uint32_t h = nVecLen >> nRight << nLeft;
        pStage->aHistNorm2[i] = h < 1 ? 1 : h > 255 ? 255 : h;
    }
}

// The sixteen bytes of a BlockSignature. A normalised element is at most 255, since v[i] squared is
// below the sum under the root.
MD_INLINE __m128i Signature(const CellSetup& t, int32_t i, Stage* pStage) {
    if (!t.bMoments) pStage->aLo[i] = pStage->aHi[i] = I16x8{};
    if (t.bMoments && t.bNormalise) {
        pStage->aLo[i] = Scale(pStage->aLo[i], pStage->aScale[i]);
        pStage->aHi[i] = Scale(pStage->aHi[i], pStage->aScale[i]);
    } else {
        pStage->aHistNorm2[i] = 1;
    }
    const __m128i v = _mm_packus_epi16((__m128i)pStage->aLo[i], (__m128i)pStage->aHi[i]);
    const uint32_t nLast = pStage->aAvgY[i] | pStage->aHistNorm2[i] << 8;
    return _mm_insert_epi16(v, static_cast<int16_t>(nLast), 5);
}

// Squared differences of the two vectors, which are what lies before bytes 10 and 11.
MD_INLINE I32x4 SquaredDifferences(__m128i cur, __m128i ref) {
    const __m128i zero = _mm_setzero_si128();
    const I16x8 nLo = (I16x8)_mm_unpacklo_epi8(cur, zero) - (I16x8)_mm_unpacklo_epi8(ref, zero);
    const I16x8 nHi = (I16x8)_mm_unpackhi_epi8(cur, zero) - (I16x8)_mm_unpackhi_epi8(ref, zero);
    return Squares(nLo, nHi & I16x8{-1, -1, 0, 0, 0, 0, 0, 0});
}

// Distances of the stage's blocks from what aSquares holds of their differences.
MD_INLINE void DistancesOf(const CellSetup& t, Stage* pStage, uint8_t (&aDist)[kStage]) {
    SumSquares(pStage);
#pragma GCC unroll 1
    for (int32_t i = 0; i < kStage; ++i) {
        const uint32_t iAccuDist = pStage->aSum[i] >> t.nAccuShift;
        const int32_t hc = static_cast<int32_t>(pStage->aHistNorm2[i]);
        const int32_t nDiff = hc - pStage->aRefHistNorm2[i];
        const int32_t nBelow = t.bWeightOneSided ? 0 : -nDiff;
        const int32_t nFar = nDiff > nBelow ? nDiff : nBelow;
        const uint32_t nProduct =
            iAccuDist * static_cast<uint32_t>(hc + nFar) * static_cast<uint32_t>(t.nScale);
        const int32_t iHOGDist = static_cast<int32_t>(nProduct) >> t.nDistShift;
        aDist[i] = static_cast<uint8_t>(iHOGDist < 255 ? iHOGDist : 255);
    }
}

// Signatures of the stage's blocks, and what their distances need.
MD_INLINE void StageSignatures(const CellSetup& t, int32_t nCount, Stage* pStage,
                               BlockSignature* pCur, const BlockSignature* pRef, uint8_t* pYDiff) {
    for (int32_t i = 0; i < nCount; ++i) {
        const __m128i cur = Signature(t, i, pStage);
        Store(&pCur[i], cur);  // before the reference is read: both may be one record
        const int32_t nYDiff = static_cast<int32_t>(pStage->aAvgY[i]) - pRef[i].nAvgY;
        pYDiff[i] = static_cast<uint8_t>(nYDiff < 0 ? -nYDiff : nYDiff);
        pStage->aRefHistNorm2[i] = pRef[i].histNorm2;
        pStage->aSquares[i] = SquaredDifferences(cur, Load<__m128i>(&pRef[i]));
    }
}

MD_INLINE void BlockRowFeatures(const CellSetup* pSetup, const HalfBlock* pTop,
                                const HalfBlock* pBottom, int32_t nBlocks, BlockSignature* pCur,
                                const BlockSignature* pRef, uint8_t* pDist, uint8_t* pYDiff) {
    const CellSetup t = *pSetup;  // a copy that no store can touch
    Stage tStage{};
    uint8_t aDist[kStage] = {};
    for (int32_t nFirst = 0; nFirst < nBlocks; nFirst += kStage) {
        const int32_t nCount = nBlocks - nFirst < kStage ? nBlocks - nFirst : kStage;
        for (int32_t i = 0; i < nCount; ++i) {
            VectorOf(t, pTop[nFirst + i], pBottom[nFirst + i], i, &tStage);
        }
        if (t.bMoments && t.bNormalise) NormsOf(t, &tStage);
        StageSignatures(t, nCount, &tStage, pCur + nFirst, pRef + nFirst, pYDiff + nFirst);
        if (t.bMoments) DistancesOf(t, &tStage, aDist);
        std::memcpy(pDist + nFirst, aDist, static_cast<size_t>(nCount));
    }
}

}  // namespace
