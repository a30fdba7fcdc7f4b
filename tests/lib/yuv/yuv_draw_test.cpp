// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "yuv/yuv_draw.h"

#include <gtest/gtest.h>

#include "tests/support/picture.h"

namespace {

constexpr size_t kGuard = 96;  // bytes before and after the frame

struct Shape {
    enum { kDisc, kRect } nKind;
    int x, y, w, h;  // of a disc: centre and radius
    int nLine;
};

std::ostream& operator<<(std::ostream& t, const Shape& s) {
    return t << (s.nKind == Shape::kDisc ? "disc " : "rectangle ") << s.x << ',' << s.y << ' '
             << s.w << 'x' << s.h << " line " << s.nLine;
}

// Compares with the shape painted pixel by pixel. At an odd size the chroma planes' own content is
// left out, since no picture of whole samples gives it; every byte around them counts.
void ExpectAsPainted(const Shape& s, int W, int H) {
    static const std::string sJunk = Junk(4096);
    const size_t nFrame = static_cast<size_t>(W * H * 3 / 2);
    const std::string sBefore = sJunk.substr(0, kGuard + nFrame + kGuard);
    std::string sGot = sBefore;
    auto* p = reinterpret_cast<uint8_t*>(sGot.data() + kGuard);
    const YuvRect rc{s.x, s.y, s.w, s.h};
    const uint8_t aRgb[3] = {128, 128, 255};
    if (s.nKind == Shape::kDisc) YuvFillCircle(p, W, H, s.x, s.y, s.w, aRgb);
    if (s.nKind == Shape::kRect) YuvDrawRect(p, W, H, &rc, aRgb, s.nLine);
    Picture tTwin(W, H, sBefore.substr(kGuard, nFrame));
    if (s.nKind == Shape::kDisc) tTwin.Disc(s.x, s.y, s.w, {128, 128, 255});
    if (s.nKind == Shape::kRect) tTwin.Rect(s.x, s.y, s.w, s.h, {128, 128, 255}, s.nLine);
    std::string sWant = std::string(sBefore).replace(kGuard, nFrame, tTwin.s);
    for (const int nStart : {W * H, W * H * 5 / 4}) {
        const size_t nAt = kGuard + static_cast<size_t>(nStart);
        const size_t nSize = static_cast<size_t>((W / 2) * (H / 2));
        if (W % 2 != 0 || H % 2 != 0) sWant.replace(nAt, nSize, sGot, nAt, nSize);
    }
    ASSERT_TRUE(sGot == sWant) << s << " in " << W << 'x' << H;
}

}  // namespace

TEST(RgbToYuv, ChannelsInOrderAndClamped) {
    const uint8_t aRows[][6] = {{255, 255, 255, 255, 128, 128}, {0, 0, 0, 0, 128, 128},
                                {255, 0, 0, 76, 85, 255},       {0, 255, 0, 150, 44, 21},
                                {0, 0, 255, 29, 255, 107},      {128, 128, 255, 142, 192, 118},
                                {1, 0, 0, 0, 128, 129},         {10, 0, 0, 3, 126, 133}};
    for (const auto& r : aRows) {
        uint8_t y, u, v;
        RgbToYuv(r[0], r[1], r[2], &y, &u, &v);
        EXPECT_TRUE(y == r[3] && u == r[4] && v == r[5]) << +r[0] << ',' << +r[1] << ',' << +r[2];
    }
}

TEST(YuvDraw, EveryPositionSizeAndLineAsPainted) {
    const std::pair<int, int> aBoxes[] = {{0, 4}, {4, -1}, {1, 1},  {2, 2},  {3, 5},
                                          {8, 6}, {6, 9},  {40, 4}, {5, 40}, {40, 40}};
    for (const auto& [W, H] : {std::pair{16, 12}, {18, 10}, {2, 2}, {17, 13}, {15, 12}, {16, 11}}) {
        for (int y = -9; y < H + 9; ++y) {
            for (int x = -9; x < W + 9; ++x) {
                for (const int r : {-3, 0, 1, 2, 3, 4, 5, 8, 30}) {
                    ExpectAsPainted({Shape::kDisc, x, y, r, 0, 0}, W, H);
                }
                for (const auto& [w, h] : aBoxes) {
                    for (const int nLine : {-1, 0, 1, 2, 3, 6, 13}) {
                        ExpectAsPainted({Shape::kRect, x, y, w, h, nLine}, W, H);
                    }
                }
                if (HasFatalFailure()) return;
            }
        }
    }
}
