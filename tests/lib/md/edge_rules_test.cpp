// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The rules on saturated distances, which the block decision and box method 2 have in common.
#include <gtest/gtest.h>

#include "md/decision/activity_rules.h"
#include "md/object/projection_box.h"

namespace {

struct Row {
    const char* szWhat;
    uint8_t D, dUpLeft, dUp, dUpRight, dLeft;
    bool bActive;
};

// A block in the middle of the lower row of three; nothing else speaks for it.
bool Refined(const Row& t) {
    const uint8_t aDist[] = {t.dUpLeft, t.dUp, t.dUpRight, t.dLeft, t.D, 0};
    const uint8_t nAvailBits = 1 << 4;
    const BlockFeature aFeatures[6] = {};
    const BlkCorParams tParams{aFeatures, aFeatures, aDist, &nAvailBits, 3, 2, 32, 24, 8};
    ActiveBlk aList[6];
    int32_t nActive = 0;
    tProjectionState = {};
    BlkRefine(&tParams, aList, &nActive);
    return nActive == 1;
}

}  // namespace

// Each row but the whole ones is one step off in the value named.
TEST(EdgeRules, HoldUpToTheirBounds) {
    const Row aRows[] = {
        {"patch", 255, 255, 255, 0, 255, true},
        {"patch, block", 254, 255, 255, 0, 255, false},
        {"patch, up left", 255, 254, 255, 0, 255, false},
        {"patch, up", 255, 255, 254, 0, 255, false},
        {"patch, left", 255, 255, 255, 0, 254, false},
        {"full edge", 255, 0, 0, 0, 180, true},
        {"full edge, block", 254, 0, 0, 0, 180, false},
        {"full edge, up left", 255, 1, 0, 0, 180, false},
        {"full edge, up", 255, 0, 1, 0, 180, false},
        {"full edge, up right", 255, 0, 0, 1, 180, false},
        {"full edge, left", 255, 0, 0, 0, 179, false},
        {"strong edge", 170, 2, 2, 2, 200, true},
        {"strong edge, block", 169, 2, 2, 2, 200, false},
        {"strong edge, up left", 170, 3, 2, 2, 200, false},
        {"strong edge, up", 170, 2, 3, 2, 200, false},
        {"strong edge, up right", 170, 2, 2, 3, 200, false},
        {"strong edge, left", 170, 2, 2, 2, 199, false},
    };
    for (const Row& t : aRows) {
        // No distance exceeds these thresholds, so that no other rule fires.
        const Thresholds th{255, 255, 255};
        BlockView v{{}, t.dUp, t.dLeft, t.dUpLeft, t.dUpRight, true, {t.D, 0, 0}, 0};
        EXPECT_EQ(DecideActivity(MdParams{}, th, v).nAvail, t.bActive) << t.szWhat;
        v.bAllNeighborsAvail = false;
        EXPECT_EQ(DecideActivity(MdParams{}, th, v).nAvail, 0) << t.szWhat << " on the border";
        EXPECT_EQ(Refined(t), t.bActive) << t.szWhat << " in method 2";
    }
}
