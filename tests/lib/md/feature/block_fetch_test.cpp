// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/block_fetch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

// Whole runs show what is in a window; a byte written after its end shows only here.
TEST(BlockFetch, WritesOnlyItsWindow) {
    constexpr int B = 16, W = 18, H = 17, nWin = B + 4;
    const std::vector<uint8_t> aY(W * H, 7);
    for (int i = 0; i < 3 * 3 * 2; ++i) {
        const int nMode = i / 6, x0 = i % 6 / 2, y0 = i % 2;
        std::vector<uint8_t> a(nWin * nWin + 64, 0xA5);
        uint8_t* pWin = a.data() + 32;
        if (nMode == 0) BlockFetch_Extend(aY.data(), W, H, x0 - 2, y0 - 2, nWin, pWin);
        if (nMode == 1) BlockFetch_Zero(aY.data(), W, H, x0, y0, B, pWin);
        if (nMode == 2) BlockFetch_Replicate(aY.data(), W, H, x0, y0, B, pWin);
        EXPECT_EQ(std::count(a.begin(), a.end(), 0xA5), 64) << nMode << " at " << x0 << ',' << y0;
    }
}
