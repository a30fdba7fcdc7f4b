// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/gaussian_window.h"

#include <gtest/gtest.h>

#include <vector>

// With sigma 1: 64 at the centre, 64 exp(-1/2) = 38.8 beside it, 64 exp(-1) = 23.5 across. Runs
// have blocks of 16 only.
TEST(GaussianWindow, OddSizeHasOneCentreEvenSizeFour) {
    const std::vector<std::vector<uint8_t>> aWindows[] = {
        {{24, 39, 24}, {39, 64, 39}, {24, 39, 24}},
        {{24, 39, 39, 24}, {39, 64, 64, 39}, {39, 64, 64, 39}, {24, 39, 39, 24}}};
    for (const auto& aWant : aWindows) {
        uint8_t a[32 * 32] = {};
        GaussianWindowInit(1.0, static_cast<int>(aWant.size()), 64, a);
        for (size_t i = 0; i < 32 * 32; ++i) {
            const size_t r = i / 32, c = i % 32, n = aWant.size();
            EXPECT_EQ(a[i], r < n && c < n ? aWant[r][c] : 0) << r << ',' << c;
        }
    }
}
