#include "md/feature/block_fetch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

// Every block position of small frames, stride or not: each window pixel is one frame pixel, found
// by clamping its coordinates, or 0.
TEST(BlockFetch, EveryWindowPixelByClamping) {
    constexpr size_t kGuard = 8;
    for (const auto& [B, W, H] : {std::array{16, 16, 16},
                                  {16, 17, 16},
                                  {16, 16, 18},
                                  {16, 18, 17},
                                  {16, 21, 23},
                                  {16, 40, 19},
                                  {8, 8, 8},
                                  {8, 13, 11},
                                  {7, 9, 10}}) {
        std::vector<uint8_t> aY(static_cast<size_t>(W * H));
        for (size_t i = 0; i < aY.size(); ++i) aY[i] = static_cast<uint8_t>(i * 73 % 255 + 1);
        const int nWin = B + 4;
        const size_t nBytes = static_cast<size_t>(nWin * nWin);
        for (int y0 = 0; y0 + B <= H; ++y0) {
            for (int x0 = 0; x0 + B <= W; ++x0) {
                for (int nMode = 0; nMode < 3; ++nMode) {
                    std::vector<uint8_t> aGot(nBytes + 2 * kGuard, 0xA5);
                    std::vector<uint8_t> aWant = aGot;
                    uint8_t* pWin = aGot.data() + kGuard;
                    if (nMode == 0) BlockFetch_Extend(aY.data(), W, H, x0 - 2, y0 - 2, nWin, pWin);
                    if (nMode == 1) BlockFetch_Zero(aY.data(), W, H, x0, y0, B, pWin);
                    if (nMode == 2) BlockFetch_Replicate(aY.data(), W, H, x0, y0, B, pWin);
                    for (int r = 0; r < nWin; ++r) {
                        for (int c = 0; c < nWin; ++c) {
                            const int x = x0 + c - 2;
                            const int y = y0 + r - 2;
                            const bool bOwn = x >= x0 && x < x0 + B && y >= y0 && y < y0 + B;
                            const int cx = nMode == 0 ? std::clamp(x, 0, W - 1)
                                                      : std::clamp(x, x0, x0 + B - 1);
                            const int cy = nMode == 0 ? std::clamp(y, 0, H - 1)
                                                      : std::clamp(y, y0, y0 + B - 1);
                            aWant[kGuard + static_cast<size_t>(r * nWin + c)] =
                                nMode == 1 && !bOwn ? uint8_t{0}
                                                    : aY[static_cast<size_t>(cy * W + cx)];
                        }
                    }
                    ASSERT_TRUE(aGot == aWant) << "mode " << nMode << " block " << x0 << ',' << y0
                                               << " of " << W << 'x' << H << ", size " << B;
                }
            }
        }
    }
}
