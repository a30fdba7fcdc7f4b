#include "md/feature/cell_sums.h"

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

// Place of column x, -2 to 9, of a cell. The border lies before a left cell, behind a right one.
uint8_t PlaceOfColumn(int32_t nPadding, bool bLeftCell, int32_t x) {
    const bool bBorder = bLeftCell ? x < 0 : x > 7;
    if (bBorder && nPadding == 1) return 128;
    if (bBorder && nPadding == 2) x = bLeftCell ? 0 : 7;
    return static_cast<uint8_t>(x + 2);
}

}  // namespace

void CellSetupInit(const MdParams* pParams, const uint8_t* pGaussWin, CellSetup* pSetup) {
    const MdParams& md = *pParams;
    CellSetup& t = *pSetup;
    t.tPairsX = PairTaps(md.nMD_HogGradX);
    t.tPairsY = PairTaps(md.nMD_HogGradY);
    for (int32_t k = 0; k < 3; ++k) {
        for (int32_t i = 0; i < 32; ++i) {
            const int32_t x = i % 16 / 2 + t.tPairsX.aPlace[k][i % 2] - 2;
            t.aPlacesX[k][i] = PlaceOfColumn(md.nMD_Padding_Method, i < 16, x);
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
