// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/mog_feature.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "md/feature/inv_sqrt.h"
#include "md/md_result.h"

namespace {

constexpr int32_t kCell = 8;  // edge of a cell in pixels, whatever nMD_HogCellSize holds

// Larger plus half the smaller of the two absolute gradients at a window pixel.
uint32_t Magnitude(const MdParams& md, const uint8_t* pPixel, int32_t nPitch) {
    int16_t gx = 0;
    int16_t gy = 0;
    for (int32_t k = 0; k < kGradientTaps; ++k) {
        gx = static_cast<int16_t>(gx + pPixel[k - 2] * md.nMD_HogGradX[k]);
        gy = static_cast<int16_t>(gy + pPixel[(k - 2) * nPitch] * md.nMD_HogGradY[k]);
    }
    const uint16_t ax = static_cast<uint16_t>(std::abs(gx));
    const uint16_t ay = static_cast<uint16_t>(std::abs(gy));
    return ax > ay ? uint32_t{ax} + (ay >> 1) : uint32_t{ay} + (ax >> 1);
}

// Normalises the vector to a length of about 256 and gives its length class.
uint8_t NormaliseVector(uint8_t* v, int32_t nShiftHistMag2) {
    uint32_t nSumSq = 1;  // keeps the input of the root away from 0
    for (int32_t i = 0; i < kVectorSize; ++i) nSumSq += uint32_t{v[i]} * v[i];
    uint16_t usHOGVar = 0;
    inv_sqrt_hw(nSumSq, &usHOGVar);
    const uint32_t nVecLen = nSumSq == 1 ? 1 : (usHOGVar * nSumSq) >> 16;
    for (int32_t i = 0; i < kVectorSize; ++i) {
        v[i] = static_cast<uint8_t>(std::min<uint32_t>((uint32_t{v[i]} * usHOGVar) >> 8, 255));
    }
    const int32_t t = nShiftHistMag2 - 3;
    const uint32_t h = t > 0 ? nVecLen >> t : nVecLen << -t;
    return static_cast<uint8_t>(std::clamp<uint32_t>(h, 1, 255));
}

}  // namespace

void BlockFeature_NormalHog(const MdParams* pParams, const uint8_t* pBlkBuf,
                            const uint8_t* pGaussWin, BlockFeature* pFeature) {
    const MdParams& md = *pParams;
    const int32_t B = md.nMD_HogBlockSize;
    const int32_t nPitch = B + 4;
    const bool bMoments = (md.nMD_MetricMode & (kMetricMog | kMetricCog)) != 0;
    MogSums tSums{};
    for (int32_t x8 = 0; x8 <= B - kCell; x8 += kCell) {
        for (int32_t y8 = 0; y8 <= B - kCell; y8 += kCell) {
            const int32_t c = 2 * (y8 / kCell) + x8 / kCell;
            for (int32_t y = y8; y < y8 + kCell; ++y) {
                for (int32_t x = x8; x < x8 + kCell; ++x) {
                    const uint8_t* pPixel = pBlkBuf + (y + 2) * nPitch + x + 2;
                    tSums.nSumY += *pPixel;
                    uint32_t mag = Magnitude(md, pPixel, nPitch);
                    if (md.nMD_HogMagnitudeWeightEn != 0) {
                        mag = (mag * pGaussWin[y * kGaussPitch + x]) >> 6;
                    }
                    if (bMoments && mag >= static_cast<uint32_t>(md.nMD_MetricMagTh)) {
                        const int32_t nMag = static_cast<int32_t>(mag);
                        tSums.nBlkMomX += nMag * x;
                        tSums.nBlkMomY += nMag * y;
                        tSums.mag_x_cell[c] += nMag * (x - x8);
                        tSums.mag_y_cell[c] += nMag * (y - y8);
                    }
                }
            }
        }
    }
    BlockFeatureRecord(RecordSetupOf(md), tSums, pFeature);
}

RecordSetup RecordSetupOf(const MdParams& md) {
    return {
        .bMoments = (md.nMD_MetricMode & kMetricMog) != 0,
        .bNormalise = md.nMD_HogNormalizeMode != 0,
        .nShiftMetric = md.nMD_ShiftMetric2_Th,
        .nShiftHistMag = md.nMD_ShiftHistMag2,
    };
}

void BlockFeatureRecord(const RecordSetup& t, const MogSums& tSums, BlockFeature* pFeature) {
    BlockFeature& f = *pFeature;
    std::memset(f.v, 0, sizeof f.v);
    std::memset(f.aCog, 0, sizeof f.aCog);
    f.histNorm0 = 1;
    f.histNorm2 = 1;
    if (t.bMoments) {
        const auto Saturate = [](int32_t n) { return static_cast<uint8_t>(std::min(n, 255)); };
        const int32_t s = t.nShiftMetric;
        for (size_t c = 0; c < 4; ++c) {
            f.v[c] = Saturate(tSums.mag_x_cell[c] >> s);
            f.v[4 + c] = Saturate(tSums.mag_y_cell[c] >> s);
        }
        f.v[8] = Saturate(tSums.nBlkMomX >> (s + 2));
        f.v[9] = Saturate(tSums.nBlkMomY >> (s + 2));
        if (t.bNormalise) f.histNorm2 = NormaliseVector(f.v, t.nShiftHistMag);
    }
    f.nAvgY = static_cast<uint8_t>((tSums.nSumY + 128) >> 8);  // half rounds up
}
