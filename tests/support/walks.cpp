// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/support/walks.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "md/block_grid.h"
#include "md/decision/block_walk.h"
#include "md/decision/luma_threshold.h"
#include "md/decision/row_walk.h"
#include "md/feature/gaussian_window.h"

std::string Setting::Text() const {
    std::ostringstream t;
    t << nWidth << "x" << nHeight << " picture " << nPicture << " padding " << md.nMD_Padding_Method
      << " stride " << md.nMD_HogBlockStride << " taps x";
    for (const int32_t n : md.nMD_HogGradX) t << ' ' << n;
    t << " y";
    for (const int32_t n : md.nMD_HogGradY) t << ' ' << n;
    t << " weight " << md.nMD_HogMagnitudeWeightEn << " normalise " << md.nMD_HogNormalizeMode
      << " metric " << md.nMD_MetricMode << " correlation " << md.nMD_NeighborCorrelation
      << " check " << md.nMD_HogDistAvailCheck << " method " << md.nMD_HogDist_AvgYDiffCalc_Method
      << " R " << md.nMD_RefFrmIdx;
    return t.str();
}

namespace {

// Five taps whose positive and negative sums are each at most 8, often exactly 8.
void PickTaps(const Picker& Pick, int32_t* pTaps) {
    std::fill_n(pTaps, kGradientTaps, 0);
    if (Pick(0, 2) == 0) {  // a difference filter: -q, -p, 0, p, q
        pTaps[3] = Pick(-8, 8);
        const int32_t nRest = 8 - std::abs(pTaps[3]);
        pTaps[4] = Pick(0, 1) * (pTaps[3] < 0 ? -nRest : nRest);
        for (const int32_t k : {0, 1}) pTaps[k] = -pTaps[4 - k];
        return;
    }
    for (const int32_t nSign : {1, -1}) {
        for (int32_t nLeft = Pick(0, 3) == 0 ? Pick(0, 8) : 8; nLeft > 0; --nLeft) {
            int32_t& nTap = pTaps[Pick(0, kGradientTaps - 1)];
            if (nTap * nSign >= 0) nTap += nSign;  // else the other sign sits there
        }
    }
}

}  // namespace

// All settings have their whole range, but shifts, scales and thresholds are mostly such that
// distances are neither all 0 nor all over every bound: elsewhere the decision has little to do.
Setting PickSetting(const Picker& Pick, int32_t nWidth, int32_t nHeight) {
    const auto Mostly = [&](int32_t nLow, int32_t nHigh, int32_t nWholeHigh) {
        return Pick(0, 3) == 0 ? Pick(0, nWholeHigh) : Pick(nLow, nHigh);
    };
    Setting s;
    MdParams& md = s.md;
    s.nWidth = nWidth;
    s.nHeight = nHeight;
    s.nPicture = Pick(0, 8);
    md.nMD_Padding_Method = Pick(0, 2);
    md.nMD_RefFrmIdx = Pick(0, 9) == 0 ? 0 : Pick(1, 3);
    s.nFrames = md.nMD_RefFrmIdx + Pick(2, 5);
    md.nMD_HogBlockSize = 16;
    md.nMD_HogCellSize = 8 * Pick(1, 2);
    md.nMD_HogBlockStride = Pick(0, 1) == 0 ? 8 : 8 * Pick(1, 8);
    PickTaps(Pick, md.nMD_HogGradX);
    PickTaps(Pick, md.nMD_HogGradY);
    md.nMD_HogMagnitudeWeightEn = Pick(0, 1);
    md.nMD_HogNormalizeMode = Pick(0, 2);
    md.nMD_MetricMode = Pick(0, 19) == 0 ? 0 : 2;
    md.nMD_ShiftMetric2_Th = Mostly(5, 11, 15);
    md.nMD_ShiftHistMag2 = Mostly(0, 3, 7);
    md.nMD_NeighborCorrelation = Pick(0, 4) == 0 ? 0 : 1;
    md.nMD_ActBlk_MinMaxRatio_Scale = Pick(0, 255);
    md.nMD_ActBlkRepeatFrmCntTh = Pick(0, 5);
    md.nMD_ActNeighborBlkCntTh = Pick(0, 9);
    md.nMD_HogDist_AvgYDiffCalc_Method = Pick(0, 2);
    md.nMD_HogDist_AvgYDiffThre_Scale = Mostly(0, 32, 511);
    md.nMD_HogDist_Th_AvgYDiffAdj_Scale = Mostly(0, 8, 255);
    md.nMD_HogDist_Th_nnAdj_Scale = Pick(0, 31);
    md.nMD_HogDist_Th_highActiveAdj_scale = Pick(0, 31);
    md.nMD_LowDelayEn = Pick(0, 1);
    md.nMD_HogDist_Th_LowDelay_shift = Pick(0, 3);
    md.nMD_HogDist_Th_LowDelay_nn_count = Pick(0, 3);
    md.nMD_HogDist_Th_LowDelay_prev_nn_count = Pick(0, 3);
    md.nMD_HogDist_WeightMethod = Pick(0, 1);
    md.nMD_HogDist_Scale2 = Pick(0, 3) == 0 ? 511 : Mostly(8, 64, 511);
    md.nMD_HogDistAvailCheck = Pick(0, 2) == 0 ? 1 : 0;
    md.nMD_HogDist_Th = Mostly(0, 40, 255);
    GaussianWindowInit(3.0, 16, 64, s.aGauss);
    return s;
}

Walked Walk(Setting s, const std::vector<Plane>& aFrames, const RowKernels* pPath) {
    MdParams& md = s.md;
    const size_t n = static_cast<size_t>(BlockCount(s.nWidth, md)) *
                     static_cast<size_t>(BlockCount(s.nHeight, md));
    const int32_t R = md.nMD_RefFrmIdx;
    std::vector<std::vector<BlockFeature>> aPool(static_cast<size_t>(R + 1));
    for (auto& t : aPool) t.assign(n, BlockFeature{});
    std::vector<BlockHistory> aHistory(n);
    std::vector<BlockHistory*> apHistory;
    apHistory.reserve(n);
    for (BlockHistory& t : aHistory) apHistory.push_back(&t);
    RowWalk* pWalk =
        pPath == nullptr ? nullptr : RowWalkCreate(*pPath, &md, s.nWidth, s.nHeight, s.aGauss);
    Walked w;
    nYDiffThreCarry = 0;
    for (size_t f = 0; f < aFrames.size(); ++f) {
        md.CurFrmId = static_cast<int32_t>(f);
        md.RefBufIdx = md.CurFrmId < R ? 0 : (md.CurFrmId + 1) % (R + 1);
        const int32_t nCur = md.CurFrmId % (R + 1);
        const int32_t nRef = f == 0 ? nCur : md.RefBufIdx;
        Plane aAvail(n + kMapSlack, 77), aDist(n + kMapSlack, 88);
        auto& aCur = aPool[static_cast<size_t>(nCur)];
        if (pWalk == nullptr) {
            FrameBlockScan_NormalHog(&md, aFrames[f].data(), s.nWidth, s.nHeight, s.aGauss,
                                     aCur.data(), aPool[static_cast<size_t>(nRef)].data(),
                                     aAvail.data(), aDist.data(), apHistory.data());
        } else {
            Plane aLuma = aFrames[f];
            aLuma.resize(aLuma.size() + kLumaSlack, 255);
            RowWalkFrame(pWalk, &md, aLuma.data(), nCur, nRef, aAvail.data(), aDist.data());
            RowWalkExpand(pWalk, nCur, aCur.data());
        }
        const auto nEnd = static_cast<ptrdiff_t>(n);
        w.aAvail.insert(w.aAvail.end(), aAvail.begin(), aAvail.begin() + nEnd);
        w.aDist.insert(w.aDist.end(), aDist.begin(), aDist.begin() + nEnd);
        w.aFeatures.insert(w.aFeatures.end(), aCur.begin(), aCur.end());
        w.aCarry.push_back(nYDiffThreCarry);
    }
    RowWalkRelease(pWalk);
    return w;
}

std::string Difference(const Walked& a, const Walked& b) {
    std::ostringstream t;
    for (size_t i = 0; i < a.aDist.size(); ++i) {
        const BlockFeature &p = a.aFeatures[i], &q = b.aFeatures[i];
        for (size_t k = 0; k < kVectorSize; ++k) {
            if (p.v[k] != q.v[k]) t << " v[" << k << "] " << +p.v[k] << " " << +q.v[k];
        }
        if (p.nAvgY != q.nAvgY) t << " nAvgY " << +p.nAvgY << " " << +q.nAvgY;
        if (p.histNorm2 != q.histNorm2) t << " histNorm2 " << +p.histNorm2 << " " << +q.histNorm2;
        if (p.histNorm0 != q.histNorm0) t << " histNorm0";
        if (a.aDist[i] != b.aDist[i]) t << " dist " << +a.aDist[i] << " " << +b.aDist[i];
        if (a.aAvail[i] != b.aAvail[i]) t << " avail " << +a.aAvail[i] << " " << +b.aAvail[i];
        if (!t.str().empty()) return "entry " + std::to_string(i) + ":" + t.str();
    }
    return a.aCarry == b.aCarry ? "" : "carry";
}
