#include "md/feature/inv_sqrt.h"

#include <gtest/gtest.h>

TEST(InvSqrt, ReferenceValues) {
    struct Row {
        uint32_t nInput, m, nWord, e, nResult;
    };
    constexpr Row aRows[] = {
        {1, 0x4000, 0xFFFF, 0, 65535},   {2, 0x8000, 0xB504, 0, 46340},
        {3, 0xC000, 0x93CD, 0, 37837},   {4, 0x4000, 0xFFFF, 1, 32767},
        {5, 0x5000, 0xE4F9, 1, 29308},   {100, 0x6400, 0xCCCC, 3, 6553},
        {1000, 0xFA00, 0x8186, 4, 2072}, {65535, 0xFFFF, 0x8000, 7, 256},
        {65536, 0x4000, 0xFFFF, 8, 255}, {650251, 0x9EC0, 0xA28B, 9, 81},
    };
    for (const Row& r : aRows) {
        uint16_t nWord = 0;
        uint16_t nResult = 0;
        EXPECT_EQ(inv_sqrt_core_hw(r.m, &nWord), 1);
        EXPECT_EQ(inv_sqrt_hw(r.nInput, &nResult), 1);
        EXPECT_EQ(nWord, r.nWord) << r.nInput;
        EXPECT_EQ(nResult, r.nWord >> r.e) << r.nInput;
        EXPECT_EQ(nResult, r.nResult) << r.nInput;
    }
    uint16_t nWord = 1;
    EXPECT_EQ(inv_sqrt_core_hw(0, &nWord), 0) << "0 has no inverse";
}

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
