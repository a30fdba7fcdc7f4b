#include "md/feature/cell_sums.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "md/md_result.h"

namespace {

TapPairs PairTaps(const int32_t* pTaps) {
    TapPairs t{};
    int32_t nCount = 0;
    for (int32_t k = 0; k < kGradientTaps; ++k) {
        if (pTaps[k] == 0) continue;
        const int32_t nPair = nCount / 2, nPartner = nCount % 2;
        t.aPlace[nPair][nPartner] = static_cast<uint8_t>(k);
        const auto nTap = static_cast<uint8_t>(pTaps[k]);  // -8 to 8
        t.aTaps[nPair] = static_cast<int16_t>(t.aTaps[nPair] | nTap << 8 * nPartner);
        ++nCount;
    }
    t.nPairs = nCount < 2 ? 1 : (nCount + 1) / 2;
    return t;
}

// What lies around a cell along its rows.
struct Surroundings {
    int32_t nPadding;
    bool bLeftCell;  // the border lies before it, else behind it
    bool bFirst;     // the frame begins with it
    int32_t nLast;   // the frame's last column, counted from the cell's first
};

// Place of column x, -2 to 9, of a cell.
uint8_t PlaceOfColumn(const Surroundings& t, int32_t x) {
    const bool bBorder = t.bLeftCell ? x < 0 : x > 7;
    if (bBorder && t.nPadding == 1) return 128;
    if (bBorder && t.nPadding == 2) x = t.bLeftCell ? 0 : 7;
    x = std::min(x, t.nLast);
    return static_cast<uint8_t>(t.bFirst ? std::max(x, 0) : x + 2);
}

void PlacePairs(const TapPairs& tPairs, const Surroundings& t, int32_t nCell,
                uint8_t (&aPlaces)[3][32]) {
    for (int32_t k = 0; k < 3; ++k) {
        for (int32_t i = 0; i < 16; ++i) {
            const int32_t x = i / 2 + tPairs.aPlace[k][i % 2] - 2;
            aPlaces[k][16 * nCell + i] = PlaceOfColumn(t, x);
        }
    }
}

}  // namespace

void CellSetupInit(const MdParams* pParams, int32_t nWidth, const uint8_t* pGaussWin,
                   CellSetup* pSetup) {
    const MdParams& md = *pParams;
    CellSetup& t = *pSetup;
    t.tPairsX = PairTaps(md.nMD_HogGradX);
    t.tPairsY = PairTaps(md.nMD_HogGradY);
    const int32_t nBehind = (nWidth - 16) % md.nMD_HogBlockStride;  // columns behind the last block
    for (const bool bFirst : {false, true}) {
        for (const bool bLast : {false, true}) {
            const int32_t nLast = bLast ? 7 + nBehind : 9;
            auto& aPlaces = t.aPlacesX[bFirst][bLast];
            PlacePairs(t.tPairsX, {md.nMD_Padding_Method, true, bFirst, 9}, 0, aPlaces);
            PlacePairs(t.tPairsX, {md.nMD_Padding_Method, false, false, nLast}, 1, aPlaces);
        }
    }
    for (size_t r = 0; r < 16; ++r) {
        for (size_t c = 0; c < 16; ++c) {
            const int32_t w =
                md.nMD_HogMagnitudeWeightEn != 0 ? pGaussWin[r * kGaussPitch + c] : 64;
            t.aWeight[r][c] = static_cast<uint16_t>(w << 9);
        }
    }
    t.nPadding = md.nMD_Padding_Method;
    t.nStrideCells = md.nMD_HogBlockStride / 8;
    t.bMoments = (md.nMD_MetricMode & kMetricMog) != 0;
    t.bNormalise = md.nMD_HogNormalizeMode != 0;
    t.nShiftMetric = md.nMD_ShiftMetric2_Th;
    t.nShiftHistMag = md.nMD_ShiftHistMag2;
    t.bWeightOneSided = md.nMD_HogDist_WeightMethod != 0;
    t.nAccuShift = md.nMD_HogBlockSize != md.nMD_HogCellSize ? 6 : 4;
    t.nScale = md.nMD_HogDist_Scale2;
    t.nDistShift = t.bNormalise ? 12 : 4;
}

void ExpandSignatures(const BlockSignature* pSignatures, int32_t nBlocks, BlockFeature* pFeatures) {
    for (int32_t i = 0; i < nBlocks; ++i) {
        BlockFeature& f = pFeatures[i];
        std::memcpy(f.v, pSignatures[i].v, sizeof f.v);
        std::memset(f.aCog, 0, sizeof f.aCog);
        f.histNorm0 = 1;
        f.nAvgY = pSignatures[i].nAvgY;
        f.histNorm2 = pSignatures[i].histNorm2;
    }
}
