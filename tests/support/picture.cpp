// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/support/picture.h"

#include <algorithm>

namespace {

// Colour in thousandths, so that it needs no floating point: exact where no sum is a whole number.
std::array<char, 3> Yuv(const Rgb& c) {
    const std::array<int, 3> a = {299 * c[0] + 587 * c[1] + 114 * c[2] + 500,
                                  -169 * c[0] - 331 * c[1] + 500 * c[2] + 128500,
                                  500 * c[0] - 419 * c[1] - 81 * c[2] + 128500};
    std::array<char, 3> aYuv{};
    for (size_t i = 0; i < 3; ++i) aYuv[i] = static_cast<char>(std::min(a[i] / 1000, 255));
    return aYuv;
}

int Even(int n) {
    return n % 2 == 0 ? n : n - 1;
}

}  // namespace

char& Picture::At(int nPlane, int x, int y) {
    const int nLuma = nW * nH;
    if (nPlane == 0) return s.at(static_cast<size_t>(y * nW + x));
    return s.at(static_cast<size_t>((nPlane == 1 ? nLuma : nLuma * 5 / 4) + y * (nW / 2) + x));
}

template <typename In>
void Picture::Paint(const Rgb& rgb, In fnIn) {
    const auto aYuv = Yuv(rgb);
    for (int y = 0; y < nH; ++y) {
        for (int x = 0; x < nW; ++x) {
            if (!fnIn(x, y)) continue;
            At(0, x, y) = aYuv[0];
            if (x / 2 >= nW / 2 || y / 2 >= nH / 2) continue;
            At(1, x / 2, y / 2) = aYuv[1];
            At(2, x / 2, y / 2) = aYuv[2];
        }
    }
}

void Picture::Disc(int cx, int cy, int r, const Rgb& rgb) {
    if (r <= 0) return;
    cx = Even(cx), cy = Even(cy), r = Even(r);
    Paint(rgb, [=](int x, int y) { return (x - cx) * (x - cx) + (y - cy) * (y - cy) <= r * r; });
}

void Picture::Rect(int x0, int y0, int w, int h, const Rgb& rgb, int nLine) {
    if (w <= 0 || h <= 0) return;
    const int nBand = nLine <= 0 ? nW + nH : (nLine + 1) / 2 * 2;
    const int x1 = std::max(Even(x0), 0);
    const int y1 = std::max(Even(y0), 0);
    const int x2 = std::min(x1 + Even(w), nW);
    const int y2 = std::min(y1 + Even(h), nH);
    Paint(rgb, [=](int x, int y) {
        const int nInside = std::min({x - x1, x2 - 1 - x, y - y1, y2 - 1 - y});
        return nInside >= 0 && nInside < nBand;
    });
}

void Picture::Paste(Picture tFrom, int x0) {
    for (int nPlane = 0; nPlane < 3; ++nPlane) {
        const int d = nPlane == 0 ? 1 : 2;
        for (int y = 0; y < tFrom.nH / d; ++y) {
            for (int x = 0; x < tFrom.nW / d; ++x)
                At(nPlane, x0 / d + x, y) = tFrom.At(nPlane, x, y);
        }
    }
}

std::string Junk(size_t nBytes) {
    std::string s(nBytes, '\0');
    for (size_t i = 0; i < nBytes; ++i) s[i] = static_cast<char>(i * 37 + i / 251 * 5 + 11);
    return s;
}
