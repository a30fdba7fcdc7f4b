// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/inv_sqrt.h"

#include <gtest/gtest.h>

// The digits give the floor of 2^23 / sqrt(m), one less where that is 2^16, for every input.
TEST(InvSqrt, WholeDomainIsTheFloor) {
    for (uint32_t n = 0; n < (1U << 20); ++n) {
        uint64_t m = n;
        int e = 7;
        while (m != 0 && m < 16384) m *= 4, --e;
        while (m >= 65536) m /= 4, ++e;
        // The largest word whose square times m is at most 2^46, digit by digit from the top.
        uint64_t q = 0;
        for (uint64_t b = 1 << 15; b != 0; b >>= 1) {
            if ((q + b) * (q + b) * m <= uint64_t{1} << 46) q += b;
        }
        uint16_t nResult = 0;
        inv_sqrt_hw(n, &nResult);
        ASSERT_EQ(nResult, n == 0 ? 0 : q >> e) << n;
    }
}
