// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The row walk and its kernels against the block walk: every map, every record, over all small
// sizes, border modes, tap patterns and kinds of picture.
#include "md/decision/row_walk.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "md/decision/block_walk.h"
#include "md/decision/distance.h"
#include "md/decision/luma_threshold.h"
#include "tests/support/walks.h"

namespace {

using Rng = std::mt19937;

int32_t Pick(Rng& rng, int32_t nLow, int32_t nHigh) {
    return std::uniform_int_distribution<int32_t>(nLow, nHigh)(rng);
}

Setting PickRandom(Rng& rng, int32_t nWidth, int32_t nHeight) {
    const Picker tPicker = [&](int32_t a, int32_t b) { return Pick(rng, a, b); };
    return PickSetting(tPicker, nWidth, nHeight);
}

// Flat, full, alternating, ramps, noise, two that leave most blocks quiet, and squares of noise
// that come and go.
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
        case 7:
            return static_cast<uint8_t>((x / 24 + y / 24 + f / 2) % 3 == 0 ? rng()
                                                                           : 100 + rng() % 2);
        default:
            return static_cast<uint8_t>(rng());
    }
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
    for (const RowKernels& tPath : OfferedKernels()) {
        EXPECT_EQ(Difference(tPlain, Walk(s, aFrames, &tPath)), "")
            << tPath.szName << " " << s.Text();
    }
}

}  // namespace

TEST(RowWalk, EverySmallSizeEqualsPlainWalk) {
    testing::internal::CaptureStdout();  // the method 0 lines
    Rng rng(20261122);
    for (int32_t h = 16; h <= 64 && !HasFailure(); ++h) {
        for (int32_t w = 16; w <= 64 && !HasFailure(); ++w) {
            ExpectEqualWalks(rng, PickRandom(rng, w, h));
        }
    }
    testing::internal::GetCapturedStdout();
}

TEST(RowWalk, ChunksAndGroupsMeetInWideFrames) {
    testing::internal::CaptureStdout();
    Rng rng(7);
    for (const int32_t w : {263, 264, 265, 272, 280, 391, 519, 520, 528, 640, 1920}) {
        for (int32_t n = 0; n < 8 && !HasFailure(); ++n) {
            ExpectEqualWalks(rng, PickRandom(rng, w, Pick(rng, 24, 50)));
        }
    }
    testing::internal::GetCapturedStdout();
}

// Only the decisions, where distances meet every bound of the rules: the test's own kernels hand
// them out, and the records beside them give the block walk the same.
namespace given {

Plane aDist, aYDiff;
size_t nNext;

void NoSums(const CellSetup&, const LumaPlane&, int32_t, int32_t, const HalfRow*, const HalfRow*) {}

void NoRecords(const RecordSetup&, const HalfRow&, const HalfRow&, int32_t, const RecordRow&) {}

void Distances(const DistanceSetup&, const RecordRow&, const RecordRow&, int32_t n, uint8_t* pDist,
               uint8_t* pYDiff) {
    std::memcpy(pDist, &aDist[nNext], static_cast<size_t>(n));
    std::memcpy(pYDiff, &aYDiff[nNext], static_cast<size_t>(n));
    nNext += static_cast<size_t>(n);
}

// For each distance, 0 to 255, a record that is that far from one of zeros.
std::vector<BlockFeature> RecordsByDistance() {
    const DistanceSetup tSetup{
        .bMoments = true, .bWeightOneSided = false, .nAccuShift = 4, .nScale = 16, .nDistShift = 4};
    const BlockFeature tZeros{};
    std::vector<BlockFeature> aRecords(256);
    for (int32_t a = 0; a <= 64; ++a) {
        for (int32_t b = 0; b <= a; ++b) {
            BlockFeature t{};
            t.histNorm2 = 1;
            t.v[0] = static_cast<uint8_t>(a);
            t.v[1] = static_cast<uint8_t>(b);
            const Distance d = DistanceOf(tSetup, t.v, t.histNorm2, tZeros.v, t.histNorm2);
            aRecords[static_cast<size_t>(d.iHOGDist)] = t;
        }
    }
    return aRecords;
}

}  // namespace given

TEST(RowWalk, DecidesAsThePlainRulesOnEveryBound) {
    Rng rng(5);
    const RowKernels tPath{"given", given::NoSums, given::NoRecords, given::Distances};
    const std::vector<int32_t> aBounds = {0,   1,   2,   3,   9,   10,  11,  20,  169, 170,
                                          171, 179, 180, 181, 199, 200, 201, 254, 255};
    const std::vector<BlockFeature> aRecords = given::RecordsByDistance();
    for (int nRun = 0; nRun < 3000; ++nRun) {
        const int32_t nBlkW = Pick(rng, 1, 40), nBlkH = Pick(rng, 1, 6);
        const int32_t w = 8 + 8 * nBlkW, h = 8 + 8 * nBlkH;
        Setting s = PickRandom(rng, w, h);
        MdParams& md = s.md;
        md.nMD_HogBlockStride = 8;
        md.nMD_MetricMode = 2;
        md.nMD_NeighborCorrelation = md.nMD_RefFrmIdx = 1;
        md.nMD_HogNormalizeMode = 0;
        md.nMD_HogCellSize = md.nMD_HogDist_Scale2 = 16;
        md.nMD_HogDist_AvgYDiffCalc_Method = 2;
        md.nMD_HogDist_Th_AvgYDiffAdj_Scale = Pick(rng, 0, 3) == 0 ? 8 : 0;
        const size_t n = static_cast<size_t>(nBlkW) * static_cast<size_t>(nBlkH);
        std::vector<BlockHistory> aHistory(n);
        std::vector<BlockHistory*> apHistory;
        apHistory.reserve(n);
        for (BlockHistory& t : aHistory) apHistory.push_back(&t);
        RowWalk* pScan = RowWalkCreate(tPath, &md, w, h, s.aGauss);
        const int32_t nQuiet = Pick(rng, 0, 3);  // of four blocks
        nYDiffThreCarry = 0;
        for (md.CurFrmId = 0; md.CurFrmId < 8; ++md.CurFrmId) {
            md.RefBufIdx = md.CurFrmId == 0 ? 0 : (md.CurFrmId + 1) % 2;
            given::nNext = 0;
            given::aDist.assign(n, 0);
            given::aYDiff.assign(n, 0);
            std::vector<BlockFeature> aCur(n), aRef(n);
            for (size_t i = 0; i < n; ++i) {
                const auto nBound = static_cast<size_t>(Pick(rng, 0, 18));
                if (Pick(rng, 0, 3) >= nQuiet) given::aDist[i] = uint8_t(aBounds[nBound]);
                given::aYDiff[i] = static_cast<uint8_t>(Pick(rng, 0, 3));
                aCur[i] = aRecords[given::aDist[i]];
                aCur[i].nAvgY = given::aYDiff[i];
                aRef[i].histNorm2 = 1;
            }
            Plane aAvail(n), aDist(n), aFastAvail(n + kMapSlack), aFastDist(n + kMapSlack);
            for (int32_t i = 0; i < nBlkW * nBlkH; ++i) {
                BlockDecide_NormalHog(&md, w, h, i % nBlkW, i / nBlkW, aCur.data(), aRef.data(),
                                      nYDiffThreCarry, aAvail.data(), aDist.data(),
                                      apHistory.data());
            }
            RowWalkFrame(pScan, &md, nullptr, 0, 0, aFastAvail.data(), aFastDist.data());
            aFastAvail.resize(n);
            aFastDist.resize(n);
            ASSERT_EQ(aAvail, aFastAvail) << nRun << " frame " << md.CurFrmId << s.Text();
            ASSERT_EQ(aDist, aFastDist) << nRun << " frame " << md.CurFrmId << s.Text();
        }
        RowWalkRelease(pScan);
    }
}

// The comparison itself must notice a single wrong byte.
TEST(RowWalk, ComparisonReportsPlantedFault) {
    testing::internal::CaptureStdout();
    Rng rng(1);
    Setting s = PickRandom(rng, 40, 40);
    const std::vector<Plane> aFrames(3, Plane(40 * 40, 9));
    const Walked a = Walk(s, aFrames, nullptr);
    testing::internal::GetCapturedStdout();
    Walked b = a;
    EXPECT_EQ(Difference(a, b), "");
    b.aFeatures[5].v[9] = static_cast<uint8_t>(b.aFeatures[5].v[9] ^ 1);
    EXPECT_NE(Difference(a, b).find("entry 5: v[9]"), std::string::npos);
}
