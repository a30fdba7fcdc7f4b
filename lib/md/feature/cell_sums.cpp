#include "md/feature/cell_sums.h"

#include <cstddef>
#include <cstring>

#include "md/md_result.h"

void CellSetupInit(const MdParams* pParams, const uint8_t* pGaussWin, CellSetup* pSetup) {
    const MdParams& md = *pParams;
    CellSetup& t = *pSetup;
    for (int32_t k = 0; k < kGradientTaps; ++k) {
        t.aGradX[k] = static_cast<int16_t>(md.nMD_HogGradX[k]);  // -8 to 8
        t.aGradY[k] = static_cast<int16_t>(md.nMD_HogGradY[k]);
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
