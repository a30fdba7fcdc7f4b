// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The two tunings of method 1 and each of its comparisons at its bound and one step to either side.
#include "md/object/grid_cluster.h"

#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include "tests/support/block_scene.h"

namespace {

// A run's start, and what both tunings are.
struct Tuning {
    int32_t nWidth, nHeight;
    int32_t nDistTh, nMinBlocks;
    int32_t nScores;         // the least mean distance whose first score is enough
    int32_t nCellW, nCellH;  // of the grid's regions, pixels
    int32_t nCols, nRows;    // blocks that a region's box below is wide and high
};

class GridCluster : public testing::TestWithParam<Tuning> {
  protected:
    void SetUp() override {
        std::copy_n(aGridTune, 2, aSaved);
        for (GridTune& t : aGridTune) t.nScore = 0;
    }
    void TearDown() override { std::copy_n(aSaved, 2, aGridTune); }
    // The box of a frame with the first n blocks of the rectangle of nCols x nRows at (x, y).
    Box Run(int32_t n, int32_t x, int32_t y, int32_t nDist) {
        const Tuning& t = GetParam();
        BlockScene s(t.nWidth, t.nHeight);
        for (int32_t i = 0; i < n; ++i) s.Set(x + i % t.nCols, y + i / t.nCols, nDist);
        PpGridCluster(&s.tConfig, &s.tResult);
        EXPECT_EQ(s.tResult.bMotionDetected, s.tResult.nObjNum);
        return BoxOf(s.tResult);
    }
    // Rectangle of blocks in pixels, by its blocks' corners.
    Box BoxAt(int32_t x, int32_t y) const {
        const Tuning& t = GetParam();
        return {8 * x, 8 * (x + t.nCols - 1), 8 * y, 8 * (y + t.nRows - 1)};
    }
    GridTune aSaved[2];
};

const Tuning kFirst = {640, 360, 10, 10, 49, 160, 120, 4, 3};
const Tuning kOther = {320, 180, 4, 3, 32, 40, 30, 2, 2};

}  // namespace

// Where the size is one step off 640 x 360, the other tuning holds.
TEST(GridTune, ANewRunStartsWithTheseTunings) {
    const GridTune aStart[2] = {{16, 10, 0, 4, 3, 8, 10, 90}, {10, 4, 0, 8, 6, 8, 3, 30}};
    EXPECT_EQ(std::memcmp(aGridTune, aStart, sizeof aStart), 0);
    for (const auto& [w, h, bFirst] : {std::tuple{640, 360, true},
                                       {639, 360, false},
                                       {641, 360, false},
                                       {640, 359, false},
                                       {640, 361, false},
                                       {320, 180, false}}) {
        BlockScene s(w, h);
        s.Fill(1, 1, 2, 2, 255);  // four blocks: enough for the other tuning only
        PpGridCluster(&s.tConfig, &s.tResult);
        EXPECT_EQ(s.tResult.nObjNum, bFirst ? 0 : 1) << w << 'x' << h;
        aGridTune[0].nScore = aGridTune[1].nScore = 0;
    }
}

TEST_P(GridCluster, HoldsUpToItsBounds) {
    const Tuning& t = GetParam();
    const int32_t nBlocks = t.nCols * t.nRows;
    // One block more than the least, in its own region, one distance over the limits.
    EXPECT_EQ(Run(nBlocks, 1, 1, 255), BoxAt(1, 1));
    EXPECT_EQ(Run(t.nMinBlocks + 1, 5, 1, 255),
              (nBlocks == t.nMinBlocks + 1 ? BoxAt(5, 1) : Box{40, 64, 8, 24}));
    SetUp();
    EXPECT_EQ(Run(t.nMinBlocks, 1, 1, 255), Box{}) << "one block too few";
    SetUp();
    EXPECT_EQ(Run(nBlocks, 1, 1, t.nScores), BoxAt(1, 1));
    SetUp();
    EXPECT_EQ(Run(nBlocks, 1, 1, t.nScores - 1), Box{}) << "the score at its threshold";
    // Weak blocks do not report by themselves, and do not widen the box of others.
    for (const int32_t nDist : {t.nDistTh, t.nDistTh + 1}) {
        SetUp();
        BlockScene s(t.nWidth, t.nHeight);
        s.Fill(1, 1, t.nCols, t.nRows, 255);
        s.Set(0, 0, nDist);
        PpGridCluster(&s.tConfig, &s.tResult);
        Box tWant = BoxAt(1, 1);
        // Position 0 of a region at the frame's edge is taken for unset, and lost again.
        EXPECT_EQ(BoxOf(s.tResult), tWant) << nDist;
        s.Clear();
        SetUp();
        s.Fill(2, 2, t.nCols + 1, t.nRows + 1, 255);
        s.Set(1, 1, nDist);
        PpGridCluster(&s.tConfig, &s.tResult);
        tWant = BoxAt(2, 2);
        if (nDist > t.nDistTh) tWant.left = tWant.top = 8;
        EXPECT_EQ(BoxOf(s.tResult), tWant) << nDist;
    }
}

// A rectangle of just enough blocks slides over a region's end: as soon as one column or row is
// in the next region, neither has enough.
TEST_P(GridCluster, RegionsEndWhereTheGridSays) {
    const Tuning& t = GetParam();
    for (const bool bAlongX : {true, false}) {
        const int32_t nCell = bAlongX ? t.nCellW : t.nCellH;
        const int32_t nSpan = bAlongX ? t.nCols : t.nRows;
        for (int32_t i = 1; 8 * (i + nSpan - 1) < 2 * nCell; ++i) {
            SetUp();
            const bool bOneRegion = 8 * i / nCell == 8 * (i + nSpan - 1) / nCell;
            const int32_t x = bAlongX ? i : 1, y = bAlongX ? 1 : i;
            // 11 or 4 blocks: the last of a rectangle of 12 is left out.
            const Box tGot = Run(t.nMinBlocks + 1, x, y, 255);
            EXPECT_EQ(tGot == BoxAt(x, y), bOneRegion) << (bAlongX ? "column " : "row ") << i;
        }
    }
}

TEST_P(GridCluster, TakesTheFirstOfTheBestRegionsWithAnArea) {
    const Tuning& t = GetParam();
    const int32_t nFar = 3 * t.nCellW / 8 + 1;  // a column of the fourth region
    const auto RunBoth = [&](int32_t nFirstDist, int32_t nSecondDist) {
        SetUp();
        BlockScene s(t.nWidth, t.nHeight);
        s.Fill(1, 1, t.nCols, t.nRows, nFirstDist);
        s.Fill(nFar, 1, nFar + t.nCols - 1, t.nRows, nSecondDist);
        PpGridCluster(&s.tConfig, &s.tResult);
        return BoxOf(s.tResult);
    };
    EXPECT_EQ(RunBoth(200, 200), BoxAt(1, 1));
    EXPECT_EQ(RunBoth(200, 201), BoxAt(nFar, 1));
    EXPECT_EQ(RunBoth(201, 200), BoxAt(1, 1));
    SetUp();
    BlockScene tRow(t.nWidth, t.nHeight);
    tRow.Fill(1, 1, t.nMinBlocks + 1, 1, 255);
    PpGridCluster(&tRow.tConfig, &tRow.tResult);
    EXPECT_EQ(BoxOf(tRow.tResult), Box{}) << "a row of blocks has no area";
}

// A region side by side with a good one joins it only if it has enough blocks itself.
TEST_P(GridCluster, JoinsRegionsWithEnoughBlocks) {
    const Tuning& t = GetParam();
    const int32_t nEnd = t.nCellW / 8;  // the first column of the second region
    for (const int32_t nBlocks : {t.nMinBlocks, t.nMinBlocks + 1}) {
        SetUp();
        BlockScene s(t.nWidth, t.nHeight);
        s.Fill(nEnd - t.nCols, 1, nEnd - 1, t.nRows, 255);
        for (int32_t i = 0; i < nBlocks; ++i) s.Set(nEnd + i % t.nCols, 1 + i / t.nCols, 255);
        PpGridCluster(&s.tConfig, &s.tResult);
        Box tWant = BoxAt(nEnd - t.nCols, 1);
        if (nBlocks > t.nMinBlocks) tWant.right += 8 * t.nCols;
        EXPECT_EQ(BoxOf(s.tResult), tWant) << nBlocks;
    }
}

// A fifth frame of the same blocks: 35 of 100 parts of each frame's mean, cut after each.
TEST_P(GridCluster, ScoreFollowsTheMeanWithThirtyFivePercent) {
    const Tuning& t = GetParam();
    const GridTune& tTune = aGridTune[t.nWidth == 640 ? 0 : 1];
    for (const int32_t nScore : {35, 57, 72, 81, 87}) {
        Run(t.nCols * t.nRows, 1, 1, 100);
        EXPECT_EQ(tTune.nScore, nScore);
    }
    Run(0, 1, 1, 0);
    EXPECT_EQ(tTune.nScore, 56) << "a frame without a region";
}

// Eleven blocks make the region, and 223 of distance 1 in its box bring the mean down to 1. The
// score of earlier frames is still high.
TEST(GridTune, ARegionWithAMeanOfOneIsChosen) {
    BlockScene s(640, 360);
    s.Fill(21, 1, 38, 13, 1);
    s.Fill(21, 1, 30, 1, 11);
    s.Set(38, 13, 11);
    aGridTune[0].nScore = 200;
    PpGridCluster(&s.tConfig, &s.tResult);
    GridClusterReset();
    EXPECT_EQ(BoxOf(s.tResult), (Box{8 * 21, 8 * 38, 8 * 1, 8 * 13}));
}

INSTANTIATE_TEST_SUITE_P(Tunings, GridCluster, testing::Values(kFirst, kOther),
                         [](const auto& tInfo) { return tInfo.index == 0 ? "First" : "Other"; });

// Gap of two regions on one axis at the limit and over it; on the other they overlap.
TEST(GridRegionMerge, JoinsUpToTheGap) {
    const struct {
        int32_t left, top, right, bottom;
        bool bJoined;
    } aRows[] = {
        {72, 48, 80, 56, true},  {73, 48, 80, 56, false}, {16, 48, 32, 56, true},
        {16, 48, 31, 56, false}, {48, 80, 56, 96, true},  {48, 81, 56, 96, false},
        {48, 8, 56, 32, true},   {48, 8, 56, 31, false},  {40, 40, 64, 72, true},
    };
    for (const auto& t : aRows) {
        GridRegion a{}, b{};
        a.left = a.top = 40;
        a.right = 64;
        a.bottom = 72;
        a.nBlkCnt = 5, a.nHitCnt = 2, a.nDistSum = 7;
        b.left = t.left, b.top = t.top, b.right = t.right, b.bottom = t.bottom;
        b.nBlkCnt = 10, b.nHitCnt = 20, b.nDistSum = 30;
        GridRegionMerge(&a, &b, 8);
        EXPECT_EQ(b.bMerged, t.bJoined ? 1 : 0) << &t - aRows;
        EXPECT_EQ(a.nBlkCnt, t.bJoined ? 15 : 5);
        EXPECT_EQ(a.nHitCnt, t.bJoined ? 22 : 2);
        EXPECT_EQ(a.nDistSum, t.bJoined ? 37 : 7);
        EXPECT_EQ(a.left, t.bJoined ? std::min(40, t.left) : 40);
        EXPECT_EQ(a.right, t.bJoined ? std::max(64, t.right) : 64);
        EXPECT_EQ(a.top, t.bJoined ? std::min(40, t.top) : 40);
        EXPECT_EQ(a.bottom, t.bJoined ? std::max(72, t.bottom) : 72);
    }
}
