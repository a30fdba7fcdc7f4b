#include "md/object/bisection.h"

#include <gtest/gtest.h>

// One row of two blocks: its weighted centre lies between their columns, and the reaches to both
// sum to the stride. Strides of a run are multiples of 8, whose reaches sum to 8 at least or to 0.
TEST(BisectSlab, ReachesJoinFromASumOfFive) {
    const struct {
        int32_t nStride;
        uint8_t aDist[2];
        uint32_t nCenter, nDim;
    } aRows[] = {
        {4, {114, 237}, 3, 0},  // reaches 3 and 1
        {5, {25, 33}, 3, 3},    // 3 and 2: 2 * 3 * 2 / 5 + 1
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
    }
}
