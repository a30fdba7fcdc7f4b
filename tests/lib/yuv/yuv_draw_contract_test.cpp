// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The colour sums, built with this project's flags for a processor with a fused multiply-add:
// CMakeLists.txt gives this file the instructions, the flags have to keep them unused. Where they
// are used, colours whose sum is a whole number come out one less.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "yuv/yuv_draw.h"

#ifdef __FMA__
#define RgbToYuv RgbToYuv_Contract
#define YuvFillCircle YuvFillCircle_Contract
#define YuvDrawRect YuvDrawRect_Contract
#include "lib/yuv/yuv_draw.cpp"

TEST(YuvDrawContract, ColourSumsRoundAfterEachStep) {
    if (!__builtin_cpu_supports("fma")) GTEST_SKIP() << "no fused multiply-add here";
    // By hand: 0.587 * 114 + 0.114 * 163 + 0.5 is 86 and -0.5 * 143 + 0.5 * 10 + 128.5 is 62; the
    // other rows likewise. Rounded after each step, doubles reach these, with one rounding they
    // stay just below. V has no such colour.
    const uint8_t aRows[][5] = {{0, 114, 163, 86, 172},
                                {0, 148, 216, 112, 187},
                                {1, 239, 122, 155, 110},
                                {143, 143, 10, 128, 62},
                                {143, 143, 38, 131, 76}};
    for (const auto& r : aRows) {
        uint8_t y, u, v;
        RgbToYuv_Contract(r[0], r[1], r[2], &y, &u, &v);
        EXPECT_TRUE(y == r[3] && u == r[4])
            << +r[0] << ',' << +r[1] << ',' << +r[2] << " gave " << +y << ',' << +u;
    }
}
#endif
