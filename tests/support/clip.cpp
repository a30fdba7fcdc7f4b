#include "tests/support/clip.h"

#include <algorithm>

uint32_t Hash(uint32_t a, uint32_t b, uint32_t c) {
    uint32_t x = a * 0x9E3779B1u + b * 0x85EBCA77u + c * 0xC2B2AE3Du;
    for (int i = 0; i < 3; ++i) x = (x ^ (x >> 15)) * 0x2C1B3C6Du + 1;
    return x >> 8;
}

static std::string Frame(const Clip& c, int nWidth, int nHeight, int f) {
    std::string s(size_t((nWidth * nHeight * 3) >> 1), '\x80');
    const int nMoved = c.nSpeed * std::min(f, c.nStop);
    for (int i = 0; i < nWidth * nHeight; ++i) {
        const int x = i % nWidth, y = i / nWidth;
        int nLuma = 70 + int(Hash(uint32_t(x / 3), uint32_t(y / 3), f >= c.nCut) % 40);
        for (int k = 0; k < c.nSquares && f >= c.nFrom && f < c.nTo; ++k) {
            const int dx = (x + 99 * nWidth - 19 - 48 * k - nMoved) % nWidth;
            const int dy = (y + 99 * nHeight - 21 - c.nStepY * k - nMoved / 2) % nHeight;
            if (dx >= c.nSize || dy >= c.nSize) continue;
            const uint32_t nSeed = c.nBoil > 0 ? 7 + uint32_t(std::min(f, c.nStop) / c.nBoil) : 7;
            nLuma = int(Hash(uint32_t(dx / 4), uint32_t(dy / 4), nSeed) % 2) * c.nContrast;
        }
        if (c.nNoise > 0) nLuma += int(Hash(uint32_t(i), uint32_t(f), 3) % uint32_t(c.nNoise + 1));
        nLuma += c.nFlicker * (f % 2);
        s[size_t(i)] = char(std::clamp(nLuma, 0, 255));
    }
    return s;
}

std::string ClipBytes(const Clip& t, int nWidth, int nHeight) {
    std::string s;
    for (int f = 0; f < t.nFrames; ++f) s += Frame(t, nWidth, nHeight, f);
    return s + std::string(size_t(t.nTail), 'x');
}
