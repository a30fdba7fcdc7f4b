// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A 4:2:0 picture painted pixel by pixel: the slow, obvious twin of the plane operations. A pixel
// is asked whether it is in a shape, nothing is clipped or stepped.
#pragma once

#include <array>
#include <cstdint>
#include <string>

using Rgb = std::array<uint8_t, 3>;

struct Picture {
    Picture(int nWidth, int nHeight, const std::string& sFrame)
        : nW(nWidth), nH(nHeight), s(sFrame) {}

    // Sample of plane 0 (Y), 1 (U) or 2 (V) at that plane's own column and row.
    char& At(int nPlane, int x, int y);
    // Paints the luma pixels for which fnIn(x, y) holds, and each chroma sample over one of them.
    template <typename In>
    void Paint(const Rgb& rgb, In fnIn);
    void Disc(int cx, int cy, int r, const Rgb& rgb);
    void Rect(int x, int y, int w, int h, const Rgb& rgb, int nLine);
    // Puts a whole picture at column x of this one, which is as high. Both columns are even.
    void Paste(Picture tFrom, int x);

    int nW, nH;
    std::string s;
};

// Bytes that differ from their neighbours in every plane.
std::string Junk(size_t nBytes);
