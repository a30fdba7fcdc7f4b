// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/cell_sums.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "md/md_result.h"

namespace {

constexpr int32_t kCell = 8;       // pixels
constexpr int32_t kBlock = 16;     // pixels
constexpr int32_t kBorder = 2;     // pixels, on each side
constexpr int32_t kRows = 12;      // a cell's, with its border
constexpr int32_t kColumns = 20;   // a block's, with its border
constexpr int32_t kMiddleRow = 4;  // of a cell: the y moment counts from here first

// Half a block with its border: pixel row 0 of the cells is row 2, column 0 of the block column 2.
using Patch = uint8_t[kRows][kColumns];
using Half = int16_t[kCell][kBlock];  // a number a pixel

// The border left and right as the block's padding wants it. Rows above and below are the frame's,
// whose edge goes on beyond it.
void FetchPatch(const CellSetup& t, const LumaPlane& tLuma, int32_t nX, int32_t nY, Patch& aPatch) {
    for (int32_t r = 0; r < kRows; ++r) {
        const int32_t y = std::clamp(nY + r - kBorder, 0, tLuma.nHeight - 1);
        const uint8_t* pRow = tLuma.pY + static_cast<ptrdiff_t>(y) * tLuma.nWidth;
        uint8_t* p = aPatch[r];
        std::memcpy(p + kBorder, pRow + nX, kBlock);
        for (const int32_t c : {0, 1, kColumns - 2, kColumns - 1}) {
            const int32_t x = nX + c - kBorder;
            const int32_t nOwn = std::clamp(x, nX, nX + kBlock - 1);
            const int32_t nInFrame = std::clamp(x, 0, tLuma.nWidth - 1);
            p[c] = t.nPadding == kPadZeros ? uint8_t{0}
                                           : pRow[t.nPadding == kPadEdge ? nOwn : nInFrame];
        }
    }
}

// |gx|. The sums stay in 16 bits by the tap limit.
void AbsGradientsX(const CellSetup& t, const Patch& aPatch, Half& aOut) {
    for (int32_t r = 0; r < kCell; ++r) {
        const uint8_t* p = aPatch[r + kBorder];
        for (int32_t x = 0; x < kBlock; ++x) {
            int16_t g = 0;
            for (int32_t k = 0; k < kGradientTaps; ++k) {
                g = static_cast<int16_t>(g + p[x + k] * t.aTapsX[k]);
            }
            aOut[r][x] = static_cast<int16_t>(std::abs(g));
        }
    }
}

// |gy|.
void AbsGradientsY(const CellSetup& t, const Patch& aPatch, Half& aOut) {
    for (int32_t r = 0; r < kCell; ++r) {
        for (int32_t x = 0; x < kBlock; ++x) {
            int16_t g = 0;
            for (int32_t k = 0; k < kGradientTaps; ++k) {
                g = static_cast<int16_t>(g + aPatch[r + k][x + kBorder] * t.aTapsY[k]);
            }
            aOut[r][x] = static_cast<int16_t>(std::abs(g));
        }
    }
}

// The block's own border, above its upper half or below its lower one.
void SetBorderRows(const CellSetup& t, bool bTop, Patch& aPatch) {
    if (t.nPadding == kPadNeighbours) return;
    for (int32_t n = 0; n < kBorder; ++n) {
        uint8_t* pRow = aPatch[bTop ? n : kRows - kBorder + n];
        if (t.nPadding == kPadZeros) {
            std::memset(pRow, 0, kColumns);
        } else {
            std::memcpy(pRow, aPatch[bTop ? kBorder : kRows - kBorder - 1], kColumns);
        }
    }
}

struct ColumnSums {
    int16_t aMag[kBlock];
    int16_t aMomY[kBlock];  // counted from kMiddleRow
};

// `pWeights`: of the half's first row in the block.
void SumColumns(const Half& aAbsX, const Half& aAbsY, const uint16_t (*pWeights)[2 * kBlock],
                ColumnSums* pSums) {
    *pSums = {};
    for (int32_t r = 0; r < kCell; ++r) {
        const auto nRow = static_cast<int16_t>(r - kMiddleRow);
        for (int32_t x = 0; x < kBlock; ++x) {
            const int16_t ax = aAbsX[r][x], ay = aAbsY[r][x];
            const int16_t nMax = std::max(ax, ay), nMin = std::min(ax, ay);
            const auto nTwice = static_cast<uint16_t>(2 * (nMax + (nMin >> 1)));
            const auto nWeighted = static_cast<int16_t>((uint32_t{nTwice} * pWeights[r][x]) >> 16);
            pSums->aMag[x] = static_cast<int16_t>(pSums->aMag[x] + nWeighted);
            pSums->aMomY[x] = static_cast<int16_t>(pSums->aMomY[x] + nRow * nWeighted);
        }
    }
}

// The columns of both cells to the numbers of block i.
void StoreSums(const ColumnSums& tSums, int32_t nLuma, int32_t i, const HalfRow& tOut) {
    for (int32_t nSide = 0; nSide < 2; ++nSide) {
        int32_t nMag = 0, nMomX = 0, nMomY = 0;
        for (int32_t x = 0; x < kCell; ++x) {
            const int32_t n = tSums.aMag[kCell * nSide + x];
            nMag += n;
            nMomX += n * x;
            nMomY += tSums.aMomY[kCell * nSide + x];
        }
        tOut.apPlane[kMag + nSide][i] = nMag;
        tOut.apPlane[kMomX + nSide][i] = nMomX;
        tOut.apPlane[kMomY + nSide][i] = nMomY + kMiddleRow * nMag;
    }
    tOut.apPlane[kLuma][i] = nLuma;
}

int32_t LumaOf(const Patch& aPatch) {
    int32_t nSum = 0;
    for (int32_t r = 0; r < kCell; ++r) {
        for (int32_t x = 0; x < kBlock; ++x) nSum += aPatch[r + kBorder][x + kBorder];
    }
    return nSum;
}

// Place of column x of a block, -2 to 17, and with kPadNeighbours also of a cell.
uint8_t PlaceOfColumn(int32_t nPadding, int32_t x) {
    if (nPadding == kPadNeighbours) return static_cast<uint8_t>(x + kBorder);
    const bool bBorder = x < 0 || x >= kBlock;
    if (bBorder && nPadding == kPadZeros) return 128;
    return static_cast<uint8_t>(std::clamp(x, 0, kBlock - 1));
}

}  // namespace

void CellSetupInit(const MdParams* pParams, const uint8_t* pGaussWin, CellSetup* pSetup) {
    const MdParams& md = *pParams;
    CellSetup& t = *pSetup;
    for (int32_t k = 0; k < kGradientTaps; ++k) {
        t.aTapsX[k] = static_cast<int16_t>(md.nMD_HogGradX[k]);
        t.aTapsY[k] = static_cast<int16_t>(md.nMD_HogGradY[k]);
    }
    for (int32_t r = 0; r < kBlock; ++r) {
        for (int32_t c = 0; c < kBlock; ++c) {
            const int32_t w =
                md.nMD_HogMagnitudeWeightEn != 0 ? pGaussWin[r * kGaussPitch + c] : 64;
            t.aWeight[r][c] = t.aWeight[r][kBlock + c] = static_cast<uint16_t>(w << 9);
        }
    }
    t.nPadding = md.nMD_Padding_Method;
    t.nStrideCells = md.nMD_HogBlockStride / kCell;
    constexpr int32_t aFirstTap[3] = {0, 3, 2};
    for (int32_t nPair = 0; nPair < 3; ++nPair) {
        for (int32_t nLane = 0; nLane < 4; ++nLane) {
            const int32_t nFirst = t.nPadding == kPadNeighbours ? 0 : kCell * (nLane % 2);
            for (int32_t i = 0; i < 16; ++i) {
                const int32_t nTap = aFirstTap[nPair] + i % 2;
                t.aPlacesX[nPair][nLane][i] =
                    PlaceOfColumn(t.nPadding, nFirst + i / 2 + nTap - kBorder);
            }
        }
    }
}

void CellRowSums_Scalar(const CellSetup& t, const LumaPlane& tLuma, int32_t nY, int32_t nBlocks,
                        const HalfRow* pTop, const HalfRow* pBottom) {
    for (int32_t i = 0; i < nBlocks; ++i) {
        Patch aPatch;
        FetchPatch(t, tLuma, kCell * t.nStrideCells * i, nY, aPatch);
        Half aAbsX;
        AbsGradientsX(t, aPatch, aAbsX);
        const int32_t nLuma = LumaOf(aPatch);
        for (const bool bTop : {true, false}) {
            const HalfRow* pOut = bTop ? pTop : pBottom;
            if (pOut == nullptr) continue;
            Patch aRolePatch;
            std::memcpy(aRolePatch, aPatch, sizeof aPatch);
            SetBorderRows(t, bTop, aRolePatch);
            Half aAbsY;
            AbsGradientsY(t, aRolePatch, aAbsY);
            ColumnSums tSums;
            SumColumns(aAbsX, aAbsY, t.aWeight + (bTop ? 0 : kCell), &tSums);
            StoreSums(tSums, nLuma, i, *pOut);
        }
    }
}
