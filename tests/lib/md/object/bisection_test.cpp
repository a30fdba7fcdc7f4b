// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/object/bisection.h"

#include <gtest/gtest.h>

#include "tests/support/block_scene.h"

namespace {

struct Slab {
    uint32_t nArea, nCenter;

    bool operator==(const Slab&) const = default;
};

// The slab of pixels nLo to nHi on one axis, distances from 10 on.
Slab SlabOf(const BlockScene& s, uint32_t nLo, uint32_t nHi, Axis nAxis) {
    Slab t{};
    SlabCenter(10, nLo, nHi, &t.nArea, &t.nCenter, s.tResult.nStride, s.tResult.nBlkW,
               s.tResult.nBlkH, s.aDist.data(), s.aBits.data(), nAxis);
    return t;
}

std::ostream& operator<<(std::ostream& tOut, const Slab& t) {
    return tOut << "area " << t.nArea << " centre " << t.nCenter;
}

}  // namespace

// One row of two blocks: its weighted centre is between their columns, and the reaches to both
// sum to the stride. Strides of a run are multiples of 8, whose reaches sum to 8 at least or to 0.
TEST(BisectSlab, JoinsReachesFromASumOfFive) {
    const struct {
        int32_t nStride;
        uint8_t aDist[2];
        uint32_t nCenter, nDim;
    } aRows[] = {
        {4, {114, 237}, 3, 0},  // reaches 3 and 1
        {5, {25, 33}, 3, 3},    // 3 and 2: 2 * 3 * 2 / 5 + 1
        {8, {60, 60}, 4, 5},    // 4 and 4: 4 * 4 * 2 / 8 + 1
        {8, {60, 20}, 2, 4},    // 2 and 6: 2 * 6 * 2 / 8 + 1
    };
    for (const auto& t : aRows) {
        const uint8_t nAvailBits = 3;
        SlabNode tNode{};
        uint32_t nCenter = 0, nDim = 77;
        BisectSlab(0, 0, 10000, &nCenter, &nDim, t.nStride, 2, 1, t.aDist, &nAvailBits, &tNode, 0,
                   0, kAxisX, 0);
        EXPECT_EQ(nCenter, t.nCenter) << "stride " << t.nStride;
        EXPECT_EQ(nDim, t.nDim) << "stride " << t.nStride;
        EXPECT_EQ(tNode.Dim, t.nDim) << "stride " << t.nStride;
        EXPECT_EQ(tNode.Center, t.nCenter) << "stride " << t.nStride;
        EXPECT_EQ(tNode.Area, t.aDist[0] + t.aDist[1]) << "stride " << t.nStride;
        EXPECT_EQ(tNode.bValid, 1);
    }
}

// Blocks at pixels 16 and 40 of either axis: the slab takes those whose position is in it, both
// ends included, and the centre is their weighted mean, rounded.
TEST(SlabCenter, TakesTheBlocksWithinItsEnds) {
    const struct {
        uint32_t nLo, nHi;
        int32_t d16, d40;
        Slab tWant;
    } aRows[] = {
        {0, 10000, 20, 20, {40, 28}},   {16, 40, 20, 20, {40, 28}},  {17, 40, 20, 20, {20, 40}},
        {16, 39, 20, 20, {20, 16}},     {17, 39, 20, 20, {0, 17}},   {9, 47, 20, 20, {40, 28}},
        {0, 10000, 10, 10, {20, 28}},   {0, 10000, 9, 10, {10, 40}}, {0, 10000, 9, 9, {0, 0}},
        {0, 10000, 31, 17, {48, 25}},    // 24.5
        {0, 10000, 33, 15, {48, 24}},    // 23.5
        {0, 10000, 100, 97, {197, 28}},  // 27.8
        {0, 10000, 100, 93, {193, 28}},  // 27.56
        {0, 10000, 100, 91, {191, 27}},  // 27.43
    };
    for (const auto& t : aRows) {
        for (const Axis nAxis : {kAxisX, kAxisY}) {
            BlockScene s(96, 96);
            const bool bX = nAxis == kAxisX;
            s.Set(bX ? 2 : 7, bX ? 7 : 2, t.d16);
            s.Set(bX ? 5 : 7, bX ? 7 : 5, t.d40);
            EXPECT_EQ(SlabOf(s, t.nLo, t.nHi, nAxis), t.tWant) << &t - aRows << " axis " << nAxis;
        }
    }
    BlockScene s(96, 96);
    s.Fill(0, 0, 10, 10, 255);
    EXPECT_EQ(SlabOf(s, 200, 300, kAxisX), (Slab{11 * 255, 80})) << "held to the last column";
    EXPECT_EQ(SlabOf(s, 0, 0, kAxisY), (Slab{11 * 255, 0})) << "the first row";
}

// The area must reach twice the dimension on the x axis, once on the y axis.
TEST(NodeDesense, ClearsThinAndLightNodes) {
    const struct {
        Axis nAxis;
        uint16_t Area, Dim;
        const char* szLog;
    } aRows[] = {
        {kAxisX, 60000, 1, "LOG: Dimension desense! 1\n"},
        {kAxisY, 60000, 1, "LOG: Dimension desense! 1\n"},
        {kAxisX, 4, 2, ""},
        {kAxisX, 3, 2, "LOG: Area desense! Area:3, Dim:2\n"},
        {kAxisY, 2, 2, ""},
        {kAxisY, 1, 2, "LOG: Area desense! Area:1, Dim:2\n"},
        {kAxisX, 400, 200, ""},
        {kAxisX, 399, 200, "LOG: Area desense! Area:399, Dim:200\n"},
        {kAxisY, 200, 200, ""},
        {kAxisY, 199, 200, "LOG: Area desense! Area:199, Dim:200\n"},
    };
    for (const auto& t : aRows) {
        SlabNode tNode{1, t.Area, 0, t.Dim};
        testing::internal::CaptureStdout();
        NodeDesense(&tNode, t.nAxis);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), t.szLog);
        EXPECT_EQ(tNode.bValid, *t.szLog == '\0' ? 1 : 0) << t.szLog;
    }
}

// Two blocks whose centre is half-way, so that both reaches are 8 on each axis: half size 9, from a
// centre one stride further. The frame cuts the box.
TEST(PpBisection, BoxEndsWithTheFrame) {
    const struct {
        int32_t x, y, nWidth, nHeight;
        Box tWant;
    } aRows[] = {
        {3, 3, 96, 80, {31, 49, 31, 49}},
        {3, 3, 50, 50, {31, 49, 31, 49}},
        {3, 3, 49, 48, {31, 48, 31, 47}},
        {0, 0, 96, 80, {7, 25, 7, 25}},
    };
    for (const auto& t : aRows) {
        BlockScene s(96, 80);
        s.Set(t.x, t.y, 100);
        s.Set(t.x + 2, t.y + 2, 100);
        s.tConfig.nWidth = t.nWidth;
        s.tConfig.nHeight = t.nHeight;
        testing::internal::CaptureStdout();
        PpBisection(&s.tConfig, &s.tResult);
        testing::internal::GetCapturedStdout();
        EXPECT_EQ(BoxOf(s.tResult), t.tWant) << &t - aRows;
    }
}
