// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The vector form of the inverse square root against the digit loop, over the whole domain. Its
// arithmetic is rounded alike on every processor, so one vector width speaks for all.
#if defined(__SSSE3__) || defined(__aarch64__)
#include <gtest/gtest.h>

#include "md/feature/block_records.inc"
#include "md/feature/inv_sqrt.h"

TEST(InverseRoots, EqualTheDigitLoopOverTheWholeDomain) {
    for (int32_t n = 1; n < 1 << 20; n += kBlocksAVector) {
        I32xN nInput;
        for (int32_t i = 0; i < kBlocksAVector; ++i) nInput[i] = n + i;
        const I32xN nRoots = InverseRoots(nInput);
        for (int32_t i = 0; i < kBlocksAVector && n + i < 1 << 20; ++i) {
            uint16_t nDigits = 0;
            inv_sqrt_hw(static_cast<uint32_t>(n + i), &nDigits);
            ASSERT_EQ(nRoots[i], nDigits) << n + i;
        }
    }
}
#endif
