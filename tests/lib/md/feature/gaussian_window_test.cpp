#include "md/feature/gaussian_window.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Table = std::vector<std::vector<int>>;

constexpr uint8_t kJunk = 0xA5;

// Checks the window of the size that aWant has, and that the rest of the table is left alone.
int SumOfWindow(double dSigma, const Table& aWant) {
    std::vector<uint8_t> a(32 * 32, kJunk);
    GaussianWindowInit(dSigma, static_cast<int>(aWant.size()), 64, a.data());
    int nSum = 0;
    for (size_t r = 0; r < 32; ++r) {
        for (size_t c = 0; c < 32; ++c) {
            const bool bIn = r < aWant.size() && c < aWant.size();
            EXPECT_EQ(a[32 * r + c], bIn ? aWant[r][c] : kJunk) << r << ',' << c;
            nSum += bIn ? a[32 * r + c] : 0;
        }
    }
    return nSum;
}

}  // namespace

TEST(GaussianWindow, BlockOf16AsTabled) {
    const Table aQuadrant = {{0, 1, 1, 2, 3, 3, 4, 4},       {1, 1, 2, 4, 5, 7, 8, 9},
                             {1, 2, 4, 7, 10, 13, 15, 16},   {2, 4, 7, 11, 16, 21, 25, 26},
                             {3, 5, 10, 16, 24, 31, 37, 39}, {3, 7, 13, 21, 31, 41, 48, 51},
                             {4, 8, 15, 25, 37, 48, 57, 61}, {4, 9, 16, 26, 39, 51, 61, 64}};
    Table aWindow(16, std::vector<int>(16));
    for (size_t i = 0; i < 256; ++i) {
        const size_t r = i / 16;
        const size_t c = i % 16;
        aWindow[r][c] = aQuadrant[r < 8 ? r : 15 - r][c < 8 ? c : 15 - c];
    }
    EXPECT_EQ(SumOfWindow(3.0, aWindow), 4560);
}

// With sigma 1: 64 at the centre, 64 exp(-1/2) = 38.8 beside it, 64 exp(-1) = 23.5 across.
TEST(GaussianWindow, OddSizeHasOneCentreEvenSizeFour) {
    SumOfWindow(1.0, {{24, 39, 24}, {39, 64, 39}, {24, 39, 24}});
    SumOfWindow(1.0, {{24, 39, 39, 24}, {39, 64, 64, 39}, {39, 64, 64, 39}, {24, 39, 39, 24}});
}
