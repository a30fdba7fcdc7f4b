// The fast walk and its kernels against the plain walk: every map, every record, over all small
// sizes, border modes, tap patterns and kinds of picture.
#include "md/decision/fast_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "md/decision/frame_block_scan.h"
#include "md/feature/gaussian_window.h"
#include "md/feature/inv_sqrt.h"

#ifdef __x86_64__
#include "md/feature/cell_sums_kernel.h"

namespace {

using Rng = std::mt19937;
using Plane = std::vector<uint8_t>;

int32_t Pick(Rng& rng, int32_t nLow, int32_t nHigh) {
    return std::uniform_int_distribution<int32_t>(nLow, nHigh)(rng);
}

const KernelPath aFastPaths[] = {
    {"sse2", CellRowSums_Sse2, BlockRowFeatures_Sse2},
    {"avx2", CellRowSums_Avx2, BlockRowFeatures_Avx2},
};

bool Runs(const KernelPath& t) {
    return t.pCellRowSums == CellRowSums_Sse2 || __builtin_cpu_supports("avx2") != 0;
}

struct Setting {
    MdParams md{};
    int32_t nWidth = 0, nHeight = 0, nFrames = 0, nPicture = 0;
    uint8_t aGauss[32 * 32] = {};

    std::string Text() const {
        std::ostringstream t;
        t << nWidth << "x" << nHeight << " picture " << nPicture << " padding "
          << md.nMD_Padding_Method << " stride " << md.nMD_HogBlockStride << " taps x";
        for (const int32_t n : md.nMD_HogGradX) t << ' ' << n;
        t << " y";
        for (const int32_t n : md.nMD_HogGradY) t << ' ' << n;
        t << " weight " << md.nMD_HogMagnitudeWeightEn << " normalise " << md.nMD_HogNormalizeMode
          << " metric " << md.nMD_MetricMode << " correlation " << md.nMD_NeighborCorrelation
          << " check " << md.nMD_HogDistAvailCheck << " method "
          << md.nMD_HogDist_AvgYDiffCalc_Method << " R " << md.nMD_RefFrmIdx;
        return t.str();
    }
};

// Five taps whose positive and negative sums are each at most 8, often exactly 8.
void PickTaps(Rng& rng, int32_t* pTaps) {
    std::fill_n(pTaps, kGradientTaps, 0);
    for (const int32_t nSign : {1, -1}) {
        for (int32_t nLeft = Pick(rng, 0, 3) == 0 ? Pick(rng, 0, 8) : 8; nLeft > 0;) {
            int32_t& nTap = pTaps[Pick(rng, 0, kGradientTaps - 1)];
            if (nTap * nSign < 0) {
                --nLeft;  // the other sign sits there
                continue;
            }
            const int32_t n = Pick(rng, 1, nLeft);
            nTap += nSign * n;
            nLeft -= n;
        }
    }
}

Setting PickSetting(Rng& rng, int32_t nWidth, int32_t nHeight) {
    Setting s;
    MdParams& md = s.md;
    s.nWidth = nWidth;
    s.nHeight = nHeight;
    s.nFrames = Pick(rng, 3, 7);
    s.nPicture = Pick(rng, 0, 7);
    md.nMD_Padding_Method = Pick(rng, 0, 2);
    md.nMD_RefFrmIdx = Pick(rng, 0, 3);
    md.nMD_HogBlockSize = 16;
    md.nMD_HogCellSize = 8 * Pick(rng, 1, 2);
    md.nMD_HogBlockStride = Pick(rng, 0, 1) == 0 ? 8 : 8 * Pick(rng, 1, 8);
    PickTaps(rng, md.nMD_HogGradX);
    PickTaps(rng, md.nMD_HogGradY);
    md.nMD_HogMagnitudeWeightEn = Pick(rng, 0, 1);
    md.nMD_HogNormalizeMode = Pick(rng, 0, 2);
    md.nMD_MetricMode = Pick(rng, 0, 9) == 0 ? 0 : 2;
    md.nMD_ShiftMetric2_Th = Pick(rng, 0, 15);
    md.nMD_ShiftHistMag2 = Pick(rng, 0, 7);
    md.nMD_NeighborCorrelation = Pick(rng, 0, 4) == 0 ? 0 : 1;
    md.nMD_ActBlk_MinMaxRatio_Scale = Pick(rng, 0, 255);
    md.nMD_ActBlkRepeatFrmCntTh = Pick(rng, 0, 5);
    md.nMD_ActNeighborBlkCntTh = Pick(rng, 0, 9);
    md.nMD_HogDist_AvgYDiffCalc_Method = Pick(rng, 0, 2);
    md.nMD_HogDist_AvgYDiffThre_Scale = Pick(rng, 0, 511);
    md.nMD_HogDist_Th_AvgYDiffAdj_Scale = Pick(rng, 0, 255);
    md.nMD_HogDist_Th_nnAdj_Scale = Pick(rng, 0, 31);
    md.nMD_HogDist_Th_highActiveAdj_scale = Pick(rng, 0, 31);
    md.nMD_LowDelayEn = Pick(rng, 0, 1);
    md.nMD_HogDist_Th_LowDelay_shift = Pick(rng, 0, 3);
    md.nMD_HogDist_Th_LowDelay_nn_count = Pick(rng, 0, 3);
    md.nMD_HogDist_Th_LowDelay_prev_nn_count = Pick(rng, 0, 3);
    md.nMD_HogDist_WeightMethod = Pick(rng, 0, 1);
    md.nMD_HogDist_Scale2 = Pick(rng, 0, 3) == 0 ? 511 : Pick(rng, 0, 64);
    md.nMD_HogDistAvailCheck = Pick(rng, 0, 1);
    md.nMD_HogDist_Th = Pick(rng, 0, 1) == 0 ? Pick(rng, 0, 255) : 10;
    GaussianWindowInit(3.0, 16, 64, s.aGauss);
    return s;
}

// Flat, full, alternating, ramps, noise, and two that leave most blocks quiet.
uint8_t Pixel(Rng& rng, int32_t nPicture, int32_t x, int32_t y, int32_t f) {
    switch (nPicture) {
        case 0:
            return static_cast<uint8_t>(f % 2 == 0 ? 0 : 255);
        case 1:
            return static_cast<uint8_t>((x + y + f) % 2 == 0 ? 255 : 0);
        case 2:
            return static_cast<uint8_t>((x / 2 + f) % 2 == 0 ? 255 : 0);
        case 3:
            return static_cast<uint8_t>(x * 7 + y * 3 + f * 11);
        case 4:
            return static_cast<uint8_t>(rng() % 2 == 0 ? 0 : 255);
        case 5:
            return static_cast<uint8_t>(128 + rng() % 4);
        case 6:
            return static_cast<uint8_t>((x - 4 * f) / 6 == 2 && y / 6 == 2 ? 250 : 90 + rng() % 3);
        default:
            return static_cast<uint8_t>(rng());
    }
}

// All that a walk leaves behind, frame by frame.
struct Walked {
    Plane aAvail, aDist;
    std::vector<BlockFeature> aFeatures;
    std::vector<int32_t> aCarry;
};

Walked Walk(Setting s, const std::vector<Plane>& aFrames, const KernelPath* pPath) {
    MdParams& md = s.md;
    const auto n = static_cast<size_t>(BlockCount(s.nWidth, md) * BlockCount(s.nHeight, md));
    const int32_t R = md.nMD_RefFrmIdx;
    std::vector<std::vector<BlockFeature>> aPool(static_cast<size_t>(R + 1));
    for (auto& t : aPool) t.assign(n, BlockFeature{});
    std::vector<BlockHistory> aHistory(n);
    std::vector<BlockHistory*> apHistory;
    for (BlockHistory& t : aHistory) apHistory.push_back(&t);
    FastScan* pScan =
        pPath == nullptr ? nullptr : FastScanCreate(*pPath, &md, s.nWidth, s.nHeight, s.aGauss);
    Walked w;
    nYDiffThreCarry = 0;
    for (size_t f = 0; f < aFrames.size(); ++f) {
        md.CurFrmId = static_cast<int32_t>(f);
        md.RefBufIdx = md.CurFrmId < R ? 0 : (md.CurFrmId + 1) % (R + 1);
        const int32_t nCur = md.CurFrmId % (R + 1);
        const int32_t nRef = f == 0 ? nCur : md.RefBufIdx;
        Plane aAvail(n + kMapSlack, 77), aDist(n + kMapSlack, 88);
        auto& aCur = aPool[static_cast<size_t>(nCur)];
        if (pScan == nullptr) {
            FrameBlockScan_NormalHog(&md, aFrames[f].data(), s.nWidth, s.nHeight, s.aGauss,
                                     aCur.data(), aPool[static_cast<size_t>(nRef)].data(),
                                     aAvail.data(), aDist.data(), apHistory.data());
        } else {
            FrameBlockScan_Fast(pScan, &md, aFrames[f].data(), nCur, nRef, aAvail.data(),
                                aDist.data());
            FastScanExpand(pScan, nCur, aCur.data());
        }
        const auto nEnd = static_cast<ptrdiff_t>(n);
        w.aAvail.insert(w.aAvail.end(), aAvail.begin(), aAvail.begin() + nEnd);
        w.aDist.insert(w.aDist.end(), aDist.begin(), aDist.begin() + nEnd);
        w.aFeatures.insert(w.aFeatures.end(), aCur.begin(), aCur.end());
        w.aCarry.push_back(nYDiffThreCarry);
    }
    FastScanRelease(pScan);
    return w;
}

// First difference between two walks, in words; empty when there is none.
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

void ExpectEqualWalks(Rng& rng, const Setting& s) {
    std::vector<Plane> aFrames(static_cast<size_t>(s.nFrames));
    for (size_t f = 0; f < aFrames.size(); ++f) {
        for (int32_t y = 0; y < s.nHeight; ++y) {
            for (int32_t x = 0; x < s.nWidth; ++x) {
                aFrames[f].push_back(Pixel(rng, s.nPicture, x, y, static_cast<int32_t>(f)));
            }
        }
    }
    const Walked tPlain = Walk(s, aFrames, nullptr);
    for (const KernelPath& tPath : aFastPaths) {
        if (!Runs(tPath)) continue;
        EXPECT_EQ(Difference(tPlain, Walk(s, aFrames, &tPath)), "")
            << tPath.szName << " " << s.Text();
    }
}

}  // namespace

TEST(FastScan, EverySmallSizeEqualsPlainWalk) {
    testing::internal::CaptureStdout();  // the method 0 lines
    Rng rng(20261122);
    for (int32_t h = 16; h <= 64 && !HasFailure(); ++h) {
        for (int32_t w = 16; w <= 64 && !HasFailure(); ++w) {
            ExpectEqualWalks(rng, PickSetting(rng, w, h));
        }
    }
    testing::internal::GetCapturedStdout();
}

TEST(FastScan, ChunksAndGroupsMeetInWideFrames) {
    testing::internal::CaptureStdout();
    Rng rng(7);
    for (const int32_t w : {263, 264, 265, 272, 280, 391, 519, 520, 528, 640, 1920}) {
        for (int32_t n = 0; n < 8 && !HasFailure(); ++n) {
            ExpectEqualWalks(rng, PickSetting(rng, w, Pick(rng, 24, 50)));
        }
    }
    testing::internal::GetCapturedStdout();
}

// Both gradients at 2040 in every pixel: the largest magnitude, column sum and moments there are.
TEST(CellSums, LargestSumsFitTheirLanes) {
    MdParams md{};
    md.nMD_HogGradX[2] = md.nMD_HogGradY[2] = 8;
    md.nMD_HogBlockStride = 8;
    md.nMD_MetricMode = 2;
    CellSetup t{};
    const uint8_t aGauss[32 * 32] = {};
    CellSetupInit(&md, aGauss, &t);
    const Plane aWhite(32 * 32, 255);
    for (const KernelPath& tPath : aFastPaths) {
        if (!Runs(tPath)) continue;
        HalfBlock aTop[3], aBottom[3];
        tPath.pCellRowSums(&t, aWhite.data(), 32, 32, 8, 3, aTop, aBottom);
        for (const HalfBlock& h : {aTop[0], aTop[2], aBottom[1]}) {
            for (const CellSums& c : {h.tLeft, h.tRight}) {
                EXPECT_EQ(c.nMag, 64 * 3060) << tPath.szName;
                EXPECT_EQ(c.nMomX, 28 * 8 * 3060);
                EXPECT_EQ(c.nMomY, 28 * 8 * 3060);
                EXPECT_EQ(c.nLuma, 64 * 255);
            }
        }
    }
}

TEST(CellSums, InverseRootEqualsDigitLoopOverWholeDomain) {
    for (uint32_t n = 1; n < (1u << 20); n += kStage) {
        uint32_t aInput[kStage], aRoot[kStage];
        for (uint32_t i = 0; i < kStage; ++i) aInput[i] = n + i;
        InverseRoots(aInput, aRoot);
        for (uint32_t i = 0; i < kStage; ++i) {
            uint16_t nDigits = 0;
            inv_sqrt_hw(aInput[i], &nDigits);
            if (aInput[i] < (1u << 20)) {
                ASSERT_EQ(aRoot[i], nDigits) << aInput[i];
            }
        }
    }
}

// The comparison itself must notice a single wrong byte.
TEST(FastScan, ComparisonReportsPlantedFault) {
    testing::internal::CaptureStdout();
    Rng rng(1);
    Setting s = PickSetting(rng, 40, 40);
    const std::vector<Plane> aFrames(3, Plane(40 * 40, 9));
    const Walked a = Walk(s, aFrames, nullptr);
    testing::internal::GetCapturedStdout();
    Walked b = a;
    EXPECT_EQ(Difference(a, b), "");
    b.aFeatures[5].v[9] = static_cast<uint8_t>(b.aFeatures[5].v[9] ^ 1);
    EXPECT_NE(Difference(a, b).find("entry 5: v[9]"), std::string::npos);
}
#endif
