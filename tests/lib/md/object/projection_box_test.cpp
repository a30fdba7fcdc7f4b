// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Each comparison of method 2 at its bound and one step to either side. The rules on saturated
// distances have a table of their own in edge_rules_test.cpp.
#include "md/object/projection_box.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/block_scene.h"

namespace {

// A block with `nNear` neighbours that were confirmed in the last frame: to its right and below.
struct Refinement {
    const char* szWhat;
    int32_t v, d1, d2;  // its distance in this frame, the last, and the one before
    int32_t nNear, nCnt;
    int32_t nLuma;  // luma difference of every block
    bool bListed;
    int32_t nState;          // its new count, with kRefineActive
    int32_t nLumaShort = 0;  // what the first block's difference is less
};

constexpr int32_t kOn = kRefineActive;

void ExpectRefined(const Refinement& t, int32_t nPpFrame) {
    BlockScene s(48, 48);
    s.Set(2, 2, t.v);
    for (BlockFeature& f : s.aFeatures) f.nAvgY = static_cast<uint8_t>(t.nLuma);
    s.aFeatures[0].nAvgY = static_cast<uint8_t>(t.nLuma - t.nLumaShort);
    ProjectionState& st = tProjectionState;
    st = {};
    st.nPpFrame = nPpFrame;
    st.aDistRing[(nPpFrame + 2) % 3][s.At(2, 2)] = static_cast<uint8_t>(t.d1);
    st.aDistRing[(nPpFrame + 1) % 3][s.At(2, 2)] = static_cast<uint8_t>(t.d2);
    st.aBlkState[s.At(2, 2)] = static_cast<uint8_t>(t.nCnt);
    const size_t aNear[] = {s.At(3, 2), s.At(1, 3), s.At(2, 3), s.At(3, 3)};
    for (int32_t n = 0; n < t.nNear; ++n) st.aBlkState[aNear[n]] = kRefineActive;
    const BlkCorParams tParams{
        s.aFeatures.data(), s.aReference.data(), s.aDist.data(), s.aBits.data(), 5, 5, 48, 48, 8};
    ActiveBlk aList[25];
    int32_t nActive = 0;
    BlkRefine(&tParams, aList, &nActive);
    EXPECT_EQ(nActive, t.bListed ? 1 : 0) << t.szWhat;
    EXPECT_EQ(st.aBlkState[s.At(2, 2)], t.nState) << t.szWhat;
    if (nActive == 1) {
        EXPECT_EQ(aList[0].nColumn, 2);
        EXPECT_EQ(aList[0].nRow, 2);
        EXPECT_EQ(aList[0].nDist, t.v);
    }
    st = {};
}

}  // namespace

TEST(BlkRefine, HoldsUpToItsBounds) {
    const Refinement aRows[] = {
        {"by itself, at", 60, 60, 60, 0, 2, 0, false, 1},
        {"by itself, over: confirmed, not listed", 61, 61, 61, 0, 2, 0, false, 3 | kOn},
        {"one neighbour: not listed", 61, 61, 61, 1, 2, 0, false, 3 | kOn},
        {"two neighbours: listed", 61, 61, 61, 2, 2, 0, true, 3 | kOn},
        {"least threshold, at", 15, 15, 15, 2, 2, 0, false, 1},
        {"least threshold, over", 16, 16, 16, 2, 2, 0, true, 3 | kOn},
        {"luma of 1 keeps it", 16, 16, 16, 2, 2, 1, true, 3 | kOn},
        {"luma of 2, at", 30, 30, 30, 2, 2, 2, false, 1},
        {"luma of 2, over", 31, 31, 31, 2, 2, 2, true, 3 | kOn},
        {"mean luma below 2, cut", 16, 16, 16, 2, 2, 2, true, 3 | kOn, 1},
        {"luma of 11, at", 165, 165, 165, 2, 2, 11, false, 1},
        {"luma of 11, over", 166, 166, 166, 2, 2, 11, true, 3 | kOn},
        {"largest threshold", 169, 169, 169, 2, 2, 255, false, 1},
        {"large, whatever its past: count kept", 170, 0, 0, 2, 5, 255, true, 5 | kOn},
        {"third frame", 16, 16, 16, 2, 1, 0, false, 2},
        {"count saturates", 16, 16, 16, 2, 15, 0, true, 15 | kOn},
        {"count stops at 0", 10, 10, 10, 2, 0, 0, false, 0},
        {"steady, at", 50, 40, 45, 2, 2, 0, true, 3 | kOn},
        {"steady, over", 51, 40, 45, 2, 2, 0, false, 2},
        {"steady two frames ago, at", 40, 45, 50, 2, 2, 0, true, 3 | kOn},
        {"steady two frames ago, over", 40, 45, 51, 2, 2, 0, false, 2},
        {"last frame the largest", 40, 51, 45, 2, 2, 0, false, 2},
        {"two frames ago the least", 51, 45, 40, 2, 2, 0, false, 2},
        {"quotient cut", 51, 41, 45, 2, 2, 0, true, 3 | kOn},  // 410 / 8 = 51.25
        {"unsteady, none near", 100, 40, 40, 0, 2, 0, false, 0},
        {"unsteady, one near", 100, 40, 40, 1, 2, 0, false, 1},
        {"unsteady, three near", 100, 40, 40, 3, 9, 0, false, 2},
        {"unsteady, four near", 100, 40, 40, 4, 9, 0, true, 2 | kOn},
    };
    for (const Refinement& t : aRows) {
        for (const int32_t nPpFrame : {1, 2, 3}) ExpectRefined(t, nPpFrame);
    }
    // The first frame has no last one: flags do not count.
    ExpectRefined({"first frame", 61, 61, 61, 4, 2, 0, false, 3 | kOn}, 0);
}

// Bins are 10 wide and 16 high in this frame. Each row lists blocks; all of the peak's run of
// filled bins are in the box.
TEST(BoxProject, TakesTheFilledBinsAroundThePeak) {
    struct Row {
        const char* szWhat;
        std::vector<std::pair<uint8_t, uint8_t>> aBlocks;
        Box tWant;
    };
    const Row aRows[] = {
        {"none", {}, {}},
        {"one", {{3, 5}}, {24, 40, 40, 56}},
        {"next bins", {{3, 5}, {4, 5}, {5, 5}, {6, 6}}, {24, 64, 40, 64}},
        // Bins 0, 0, 1 and 4; the peak is 0.
        {"a gap to the right", {{0, 5}, {1, 5}, {2, 5}, {5, 5}}, {0, 32, 40, 56}},
        {"a gap to the left", {{0, 5}, {5, 5}, {6, 5}, {7, 5}}, {40, 72, 40, 56}},
        {"a gap below", {{3, 0}, {3, 1}, {3, 2}, {3, 6}}, {24, 40, 0, 32}},
        {"a gap above", {{3, 0}, {3, 6}, {3, 7}, {3, 8}}, {24, 40, 48, 80}},
        {"the first of two peaks", {{0, 0}, {1, 0}, {10, 0}, {11, 0}}, {0, 24, 0, 16}},
        {"the one first to grow", {{10, 0}, {10, 1}, {1, 1}, {0, 1}}, {80, 96, 0, 24}},
        {"the last bin", {{18, 16}}, {144, 160, 128, 144}},
        // Columns 3 and 4 are in bins 2 and 3; the run ends at 30 or 40, within column 3 or at 5.
        {"the run's last column", {{3, 5}, {3, 6}}, {24, 40, 40, 64}},
    };
    for (const Row& t : aRows) {
        BlockScene s(160, 144);
        std::vector<ActiveBlk> aList;
        for (const auto& [x, y] : t.aBlocks) aList.push_back({x, y, 200});
        const BlkCorParams tParams{nullptr, nullptr, nullptr, nullptr, 19, 17, 160, 144, 8};
        s.tResult.nObjNum = 1;  // of the last frame
        BoxProject(&tParams, aList.data(), static_cast<int32_t>(aList.size()), &s.tResult);
        EXPECT_EQ(BoxOf(s.tResult), t.tWant) << t.szWhat;
        EXPECT_EQ(s.tResult.tObjects[0].bValid, s.tResult.nObjNum) << t.szWhat;
    }
    // The frame cuts the box: at most its width and height themselves.
    for (const int32_t nSize : {151, 152, 153}) {
        BlockScene s(160, 144);
        const ActiveBlk tLast = {17, 17, 200};
        const BlkCorParams tParams{nullptr, nullptr, nullptr, nullptr, 19, 19, nSize, nSize, 8};
        BoxProject(&tParams, &tLast, 1, &s.tResult);
        const int32_t nEnd = std::min(nSize, 152);
        EXPECT_EQ(BoxOf(s.tResult), (Box{136, nEnd, 136, nEnd})) << nSize;
    }
}

TEST(BoxProject, SaysWhyThereIsNoBox) {
    // Four blocks are in column 0, five in row 16, none where the two meet.
    const std::vector<ActiveBlk> aApart = {{0, 0, 9},   {0, 4, 9},   {0, 8, 9},
                                           {0, 12, 9},  {6, 16, 9},  {9, 16, 9},
                                           {12, 16, 9}, {15, 16, 9}, {18, 16, 9}};
    const BlkCorParams tParams{nullptr, nullptr, nullptr, nullptr, 19, 17, 160, 144, 8};
    MdResult res{};
    BoxProject(&tParams, aApart.data(), 9, &res);
    EXPECT_EQ(res.nObjNum, 0);
    EXPECT_EQ(res.tBoxReason.nCode, kProjectionNoMeeting);
    EXPECT_EQ(res.tBoxReason.aValue[0], 9);
    BoxProject(&tParams, aApart.data(), 0, &res);
    EXPECT_EQ(res.tBoxReason.nCode, kProjectionNoBlock);
}

TEST(BoxTemporalGrow, HoldsUpToItsBounds) {
    const struct {
        const char* szWhat;
        int32_t nRun, nOld;  // frames with a box before this one, the area of the last
        Box tBox;
        int32_t nReason;
        Box tWant;
    } aRows[] = {
        // The grid has 19 x 13 blocks. Boxes at 0 do not grow.
        {"fourth frame", 3, 100, {0, 10, 0, 10}, kProjectionMotion, {0, 10, 0, 10}},
        {"third frame", 2, 100, {0, 10, 0, 10}, kProjectionTooNew, {0, 10, 0, 10}},
        {"area of 6", 3, 6, {0, 2, 0, 3}, kProjectionMotion, {0, 2, 0, 3}},
        {"area of 5", 3, 5, {0, 1, 0, 5}, kProjectionTooSmall, {0, 1, 0, 5}},
        {"larger by three tenths", 3, 100, {0, 10, 0, 13}, kProjectionMotion, {0, 10, 0, 13}},
        {"larger by more", 3, 100, {0, 1, 0, 131}, kProjectionGrew, {0, 1, 0, 131}},
        {"smaller", 3, 9999, {0, 10, 0, 13}, kProjectionMotion, {0, 10, 0, 13}},
        {"room on all sides", 3, 9999, {16, 40, 24, 64}, kProjectionMotion, {8, 48, 16, 72}},
        {"least left and top", 3, 9999, {8, 40, 8, 64}, kProjectionMotion, {0, 48, 0, 72}},
        {"no room left", 3, 9999, {7, 40, 8, 64}, kProjectionMotion, {7, 40, 8, 64}},
        {"no room above", 3, 9999, {8, 40, 7, 64}, kProjectionMotion, {8, 40, 7, 64}},
        {"most right", 3, 9999, {80, 143, 8, 64}, kProjectionMotion, {72, 151, 0, 72}},
        {"no room right", 3, 9999, {80, 144, 8, 64}, kProjectionMotion, {80, 144, 8, 64}},
        {"bottom, one short of the end",
         3,
         9999,
         {80, 120, 8, 102},
         kProjectionMotion,
         {72, 128, 0, 110}},
        {"bottom at the end", 3, 9999, {80, 120, 8, 103}, kProjectionMotion, {72, 128, 0, 111}},
        {"bottom cut", 3, 9999, {80, 120, 8, 104}, kProjectionMotion, {72, 128, 0, 111}},
    };
    for (const auto& t : aRows) {
        for (const int32_t nFrame : {4, 5, 6}) {
            ProjectionState& st = tProjectionState;
            st = {};
            st.nStableRun = t.nRun;
            st.nAreaSum = st.aAreaRing[(nFrame - 1) % 3] = t.nOld;
            MdResult res{};
            res.tObjects[0] = ObjectAt(t.tBox);
            res.nObjNum = 1;
            EXPECT_EQ(BoxTemporalGrow(19, 13, nFrame, &res), t.nReason == kProjectionMotion ? 1 : 0)
                << t.szWhat;
            EXPECT_EQ(res.tBoxReason.nCode, t.nReason) << t.szWhat;
            EXPECT_EQ(BoxOf(res), t.tWant) << t.szWhat;
            const int32_t nArea = (t.tBox.right - t.tBox.left) * (t.tBox.bottom - t.tBox.top);
            EXPECT_EQ(st.nAreaSum, nArea) << t.szWhat;
            EXPECT_EQ(st.nStableRun, t.nRun + 1) << t.szWhat;
        }
    }
    // The first frame has no last one: the sum is its own area.
    BlockScene s(160, 112);
    s.tResult.tObjects[0] = ObjectAt({0, 10, 0, 13});
    tProjectionState = {};
    EXPECT_EQ(BoxTemporalGrow(19, 13, 0, &s.tResult), 0);
    EXPECT_EQ(tProjectionState.nAreaSum, 130);
    // A frame without a box starts all anew.
    tProjectionState.nStableRun = 9;
    tProjectionState.nAreaSum = tProjectionState.aAreaRing[0] = 50;
    MdResult tNone{};
    EXPECT_EQ(BoxTemporalGrow(19, 13, 1, &tNone), 0);
    EXPECT_EQ(tProjectionState.nStableRun, 0);
    EXPECT_EQ(tProjectionState.nAreaSum, 0);
    EXPECT_EQ(tProjectionState.aAreaRing[0], 0);
    tProjectionState = {};
}
