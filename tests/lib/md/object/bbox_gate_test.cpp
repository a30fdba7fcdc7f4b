// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The gate's comparisons at their bounds and one step to either side, over frames made by hand.
#include "md/object/bbox_gate.h"

#include <gtest/gtest.h>

#include "tests/support/block_scene.h"

namespace {

// One frame with a box of nWide x nHigh and its half sizes.
struct Frame {
    int32_t nWide, nHigh, xDim, yDim;
};

// The number of the frame that opens the gate, from 1; 0 when none does.
int32_t OpensAt(int32_t nWindow, double dArea, double dAspect, const std::vector<Frame>& aFrames) {
    tGateState = {};
    MdPpConfig tConfig{};
    tConfig.nBboxPpWindow = nWindow;
    tConfig.dAreaConvergeThresh = dArea;
    tConfig.dAspectConvergeThresh = dAspect;
    int32_t nOpen = 0, n = 0;
    testing::internal::CaptureStdout();
    for (const Frame& t : aFrames) {
        ++n;
        MdResult res{};
        res.nBlkW = res.nBlkH = 200;
        res.nObjNum = res.tObjects[0].bValid = t.nWide > 0 ? 1 : 0;
        res.bMotionDetected = res.nObjNum;
        res.tObjects[0].right = static_cast<uint16_t>(t.nWide);
        res.tObjects[0].bottom = static_cast<uint16_t>(t.nHigh);
        res.tObjects[0].xDim = t.xDim;
        res.tObjects[0].yDim = t.yDim;
        PpBboxGate(&tConfig, &res);
        if (tGateState.bBboxLatch != 0 && nOpen == 0) nOpen = n;
        // A frame that is held back keeps its flags, and no box.
        EXPECT_EQ(res.nObjNum, nOpen != 0 && t.nWide > 0 ? 1 : 0) << n;
        EXPECT_EQ(res.tObjects[0].bValid, t.nWide > 0 ? 1 : 0) << n;
        EXPECT_EQ(res.tObjects[0].right > 0, nOpen != 0 && t.nWide > 0) << n;
        EXPECT_TRUE(nOpen != 0 || (res.tObjects[0].xDim == 0 && res.tObjects[0].yDim == 0)) << n;
    }
    testing::internal::GetCapturedStdout();
    tGateState = {};
    return nOpen;
}

}  // namespace

TEST(BboxGate, HoldsUpToItsBounds) {
    const Frame tBox = {20, 30, 10, 15}, tNone = {0, 0, 0, 0};
    const struct {
        const char* szWhat;
        int32_t nWindow;
        double dArea, dAspect;
        std::vector<Frame> aFrames;
        int32_t nOpens;
    } aRows[] = {
        {"first frame has nothing to compare with", 1, 255, 255, {tBox}, 0},
        {"window of 1", 1, 1, 1, {tBox, tBox}, 2},
        {"window of 3: not before", 3, 255, 255, {tBox, tBox, tBox, tBox}, 3},
        {"window of 3: sums grow by a half", 3, 1.5, 1.5, {tBox, tBox, tBox}, 3},
        {"area by less", 3, 1.49, 1.5, {tBox, tBox, tBox, tBox}, 4},
        {"aspect by less", 3, 1.5, 1.49, {tBox, tBox, tBox, tBox}, 4},
        {"a frame without a box starts anew",
         3,
         255,
         255,
         {tBox, tBox, tNone, tBox, tBox, tBox},
         6},
        {"area of 2", 1, 1, 1, {{1, 2, 9, 9}, {1, 2, 9, 9}}, 2},
        {"area of 1", 1, 1, 1, {{1, 1, 9, 9}, {1, 1, 9, 9}, {1, 1, 9, 9}}, 0},
        {"areas of 2 twice", 2, 9, 9, {{1, 2, 9, 9}, {1, 2, 9, 9}}, 2},
        {"areas of 2 and 1", 2, 9, 9, {{1, 2, 9, 9}, {1, 1, 9, 9}, {1, 2, 9, 9}, {1, 1, 9, 9}}, 0},
        {"area larger by a quarter", 1, 1.25, 255, {{10, 10, 9, 9}, {25, 5, 9, 9}}, 2},
        {"area larger by more", 1, 1.25, 255, {{10, 10, 9, 9}, {63, 2, 9, 9}}, 0},
        {"aspect larger by a quarter", 1, 255, 1.25, {{9, 9, 20, 20}, {9, 9, 20, 25}}, 2},
        {"aspect larger by more", 1, 255, 1.25, {{9, 9, 50, 50}, {9, 9, 50, 63}}, 0},
        {"height in percent of width, cut", 1, 255, 1.01, {{9, 9, 30, 30}, {9, 9, 60, 61}}, 2},
        // Without a half size the ring keeps its value.
        {"no width", 1, 255, 1.25, {{9, 9, 20, 20}, {9, 9, 0, 99}}, 2},
        {"no height", 1, 255, 0.5, {{9, 9, 20, 20}, {9, 9, 20, 0}}, 0},
        {"width of 1", 1, 255, 1.25, {{9, 9, 20, 20}, {9, 9, 1, 2}}, 0},
        {"height of 1", 1, 255, 0.01, {{9, 9, 20, 20}, {9, 9, 100, 1}}, 2},
    };
    for (const auto& t : aRows) {
        EXPECT_EQ(OpensAt(t.nWindow, t.dArea, t.dAspect, t.aFrames), t.nOpens) << t.szWhat;
    }
}

// The box that opens the gate grows by a fifth of its half sizes, at least 8 across and 16 down,
// and stays within the grid, whose pixels end at 8 * 20 + 7. Later ones pass unchanged until motion
// stops.
TEST(BboxGate, GrowsTheBoxThatOpensIt) {
    const struct {
        int32_t xDim, yDim;
        Box tBox, tWant;
    } aRows[] = {
        {39, 79, {40, 100, 40, 100}, {32, 108, 24, 116}},
        {44, 84, {40, 100, 40, 100}, {32, 108, 24, 116}},
        {45, 85, {40, 100, 40, 100}, {31, 109, 23, 117}},
        {1, 1, {8, 159, 16, 151}, {0, 167, 0, 167}},
        {1, 1, {9, 158, 17, 150}, {1, 166, 1, 166}},
        {1, 1, {7, 160, 15, 152}, {0, 167, 0, 167}},
    };
    MdPpConfig tConfig{};
    tConfig.nBboxPpWindow = 1;
    tConfig.dAreaConvergeThresh = tConfig.dAspectConvergeThresh = 1;
    testing::internal::CaptureStdout();
    for (const auto& t : aRows) {
        tGateState = {};
        for (int32_t n = 0; n < 6; ++n) {
            MdResult res{};
            res.nBlkW = res.nBlkH = 20;
            res.nObjNum = 1;
            res.bMotionDetected = n != 3 ? 1 : 0;  // the fourth frame: motion stops
            res.tObjects[0] = ObjectAt(t.tBox);
            res.tObjects[0].xDim = t.xDim;
            res.tObjects[0].yDim = t.yDim;
            PpBboxGate(&tConfig, &res);
            // Waits, grows, passes twice; then waits again, but for no longer than one frame: the
            // rings still hold the box that opened it.
            const Box aWant[] = {{}, t.tWant, t.tBox, t.tBox, t.tWant, t.tBox};
            EXPECT_EQ(BoxOf(res), aWant[n]) << t.xDim << ',' << t.yDim << " frame " << n;
        }
    }
    testing::internal::GetCapturedStdout();
    tGateState = {};
}
