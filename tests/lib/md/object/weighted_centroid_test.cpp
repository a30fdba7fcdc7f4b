// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Each comparison of method 0 at its bound and one step to either side. By hand: two blocks of
// equal distance have their centre half-way, its half size is the reach from there, and with a
// stride of 8 the box is 4 wider on each side.
#include "md/object/weighted_centroid.h"

#include <gtest/gtest.h>

#include "tests/support/block_scene.h"

namespace {

struct Block {
    int32_t x, y, d;
};

struct Row {
    const char* szWhat;
    int32_t nStride, nBlkCntTh;
    std::vector<Block> aBlocks;
    Box tWant;
    int32_t xDim = 0, yDim = 0;
};

}  // namespace

TEST(WeightedCentroid, HoldsUpToItsBounds) {
    const Row aRows[] = {
        // The threshold on distances is 10, the frame is 160 x 112.
        {"two blocks", 8, 2, {{2, 3, 20}, {6, 7, 20}}, {16, 56, 24, 64}, 16, 16},
        {"distance over", 8, 2, {{2, 3, 11}, {6, 7, 11}}, {16, 56, 24, 64}, 16, 16},
        {"distance at", 8, 2, {{2, 3, 11}, {6, 7, 10}}, {}},
        {"distance of the third at",
         8,
         2,
         {{2, 3, 20}, {6, 7, 20}, {9, 9, 10}},
         {16, 56, 24, 64},
         16,
         16},
        {"count at", 8, 3, {{2, 3, 20}, {6, 7, 20}, {4, 5, 20}}, {16, 56, 24, 64}, 16, 16},
        {"count below", 8, 3, {{2, 3, 20}, {6, 7, 20}}, {}},
        {"one column", 8, 1, {{2, 3, 20}, {2, 7, 20}}, {}},
        {"one row", 8, 1, {{2, 3, 20}, {6, 3, 20}}, {}},
        {"two columns and rows", 8, 1, {{2, 3, 20}, {3, 4, 20}}, {16, 32, 24, 40}, 4, 4},
        // Three of four parts are at the right block: the centre is 28, reaches are 12 and 4.
        {"shorter reach right", 8, 1, {{2, 3, 15}, {4, 5, 45}}, {24, 40, 32, 48}, 4, 4},
        {"shorter reach left", 8, 1, {{2, 3, 45}, {4, 5, 15}}, {16, 32, 24, 40}, 4, 4},
        {"reach over half a stride", 8, 1, {{2, 3, 33}, {5, 6, 15}}, {16, 38, 24, 46}, 7, 7},
        {"reach below half a stride", 8, 1, {{2, 3, 61}, {4, 5, 14}}, {14, 30, 22, 38}, 4, 4},
        {"stride of 16", 16, 1, {{1, 1, 20}, {3, 3, 20}}, {16, 64, 16, 64}, 16, 16},
        {"left and top at 0", 8, 1, {{0, 0, 40}, {4, 4, 40}}, {0, 40, 0, 40}, 16, 16},
        {"left and top below 0", 8, 1, {{0, 0, 250}, {2, 2, 12}}, {0, 12, 0, 12}, 4, 4},
        {"right and bottom cut", 8, 1, {{12, 6, 12}, {18, 12, 250}}, {137, 153, 89, 105}, 4, 4},
    };
    for (const Row& t : aRows) {
        BlockScene s(160, 112, t.nStride);
        s.tConfig.nBlkCntTh = t.nBlkCntTh;
        for (const Block& b : t.aBlocks) s.Set(b.x, b.y, b.d);
        PpWeightedCentroid(&s.tConfig, &s.tResult);
        EXPECT_EQ(BoxOf(s.tResult), t.tWant) << t.szWhat;
        EXPECT_EQ(s.tResult.tObjects[0].xDim, t.xDim) << t.szWhat;
        EXPECT_EQ(s.tResult.tObjects[0].yDim, t.yDim) << t.szWhat;
        EXPECT_EQ(s.tResult.bMotionDetected, t.tWant == Box{} ? 0 : 1) << t.szWhat;
    }
}

// The box ends with the frame: two blocks of a stride of 24 whose right edge would be at 97 of a
// frame that is `nWidth` wide.
TEST(WeightedCentroid, BoxEndsWithTheFrame) {
    for (const int32_t nWidth : {96, 97, 98, 99}) {
        BlockScene s(nWidth, nWidth, 8);
        s.Set(0, 0, 30);
        s.Set(10, 10, 30);  // centre 40, reach 40: edges 44 - 40 - 4 and 44 + 40 + 4
        PpWeightedCentroid(&s.tConfig, &s.tResult);
        EXPECT_EQ(BoxOf(s.tResult), (Box{0, 88, 0, 88}));
        s.tConfig.nWidth = s.tConfig.nHeight = nWidth - 9;  // 87 to 90: the last column is 86 to 89
        PpWeightedCentroid(&s.tConfig, &s.tResult);
        const int32_t nLast = std::min(nWidth - 10, 88);
        EXPECT_EQ(BoxOf(s.tResult), (Box{0, nLast, 0, nLast})) << nWidth;
    }
}
