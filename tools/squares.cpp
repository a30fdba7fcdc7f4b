// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/squares.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "tools/hash.h"

namespace {

struct Name {
    const char* szName;
    int SquaresClip::*pMember;
};

constexpr Name aNames[] = {
    {"squares", &SquaresClip::nSquares},   {"size", &SquaresClip::nSize},
    {"stepy", &SquaresClip::nStepY},       {"speed", &SquaresClip::nSpeed},
    {"boil", &SquaresClip::nBoil},         {"stop", &SquaresClip::nStop},
    {"from", &SquaresClip::nFrom},         {"to", &SquaresClip::nTo},
    {"contrast", &SquaresClip::nContrast}, {"noise", &SquaresClip::nNoise},
    {"flicker", &SquaresClip::nFlicker},   {"cut", &SquaresClip::nCut},
    {"tail", &SquaresClip::nTail},
};

uint32_t Unsigned(int n) {
    return static_cast<uint32_t>(n);
}

int Noise(int a, int b, uint32_t nSeed, int nCount) {
    return static_cast<int>((Hash(Unsigned(a), Unsigned(b), nSeed) >> 8) % Unsigned(nCount));
}

}  // namespace

bool SquaresSet(SquaresClip* pClip, const std::string& sText) {
    const size_t nEquals = std::min(sText.find('='), sText.size());
    const char* pEnd = sText.data() + sText.size();
    for (const Name& t : aNames) {
        if (sText.substr(0, nEquals) != t.szName || nEquals == sText.size()) continue;
        const auto r = std::from_chars(sText.data() + nEquals + 1, pEnd, pClip->*t.pMember);
        return r.ec == std::errc{} && r.ptr == pEnd;
    }
    return false;
}

std::string SquaresFrame(const SquaresClip& t, int nWidth, int nHeight, int f) {
    std::string s(static_cast<size_t>((nWidth * nHeight * 3) >> 1), '\x80');
    const int nMoved = t.nSpeed * std::min(f, t.nStop);
    for (int i = 0; i < nWidth * nHeight; ++i) {
        const int x = i % nWidth, y = i / nWidth;
        int nLuma = 70 + Noise(x / 3, y / 3, f >= t.nCut ? 1 : 0, 40);
        for (int k = 0; k < t.nSquares && f >= t.nFrom && f < t.nTo; ++k) {
            const int dx = (x + 99 * nWidth - 19 - 48 * k - nMoved) % nWidth;
            const int dy = (y + 99 * nHeight - 21 - t.nStepY * k - nMoved / 2) % nHeight;
            if (dx >= t.nSize || dy >= t.nSize) continue;
            const int nSeed = t.nBoil > 0 ? 7 + std::min(f, t.nStop) / t.nBoil : 7;
            nLuma = Noise(dx / 4, dy / 4, Unsigned(nSeed), 2) * t.nContrast;
        }
        if (t.nNoise > 0) nLuma += Noise(i, f, 3, t.nNoise + 1);
        nLuma += t.nFlicker * (f % 2);
        s[static_cast<size_t>(i)] = static_cast<char>(std::clamp(nLuma, 0, 255));
    }
    return s;
}

std::string SquaresBytes(const SquaresClip& t, int nWidth, int nHeight) {
    std::string s;
    for (int f = 0; f < t.nFrames; ++f) s += SquaresFrame(t, nWidth, nHeight, f);
    return s + std::string(static_cast<size_t>(t.nTail), 'x');
}
