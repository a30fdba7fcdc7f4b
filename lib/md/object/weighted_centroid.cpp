// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/object/weighted_centroid.h"

#include <algorithm>

#include "md/object/avail_bits.h"

namespace {

struct Gathered {
    uint16_t nCount = 0;
    uint32_t sumW = 0;              // at most 255 * 32265 blocks
    uint32_t sumXW = 0, sumYW = 0;  // position times distance; wrap modulo 2^32
    uint16_t minX;                  // of the top-left corners of blocks, pixels
    uint16_t maxX = 0;
    uint16_t minY;
    uint16_t maxY = 0;
};

Gathered GatherBlocks(const MdPpConfig& cfg, const MdResult& res) {
    Gathered g;
    g.minX = static_cast<uint16_t>(cfg.nWidth);
    g.minY = static_cast<uint16_t>(cfg.nHeight);
    ForEachAvailable(res.pAvailBits, 0, res.nBlkW * res.nBlkH, [&](int32_t j) {
        const int32_t v = res.pDistMap[j];
        if (v <= cfg.nHogDistTh) return;
        const int32_t x = (j % res.nBlkW) * cfg.nStride;
        const int32_t y = (j / res.nBlkW) * cfg.nStride;
        ++g.nCount;
        g.sumW += static_cast<uint32_t>(v);
        g.sumXW += static_cast<uint32_t>(x) * static_cast<uint32_t>(v);
        g.sumYW += static_cast<uint32_t>(y) * static_cast<uint32_t>(v);
        if (x < g.minX) g.minX = static_cast<uint16_t>(x);
        if (x > g.maxX) g.maxX = static_cast<uint16_t>(x);
        if (y < g.minY) g.minY = static_cast<uint16_t>(y);
        if (y > g.maxY) g.maxY = static_cast<uint16_t>(y);
    });
    return g;
}

// Shorter reach from the centre to the extremes, at least `h`, cut to 16 bits.
int32_t HalfSize(uint32_t nCentre, uint16_t nMin, uint16_t nMax, uint32_t h) {
    const uint32_t nReach = std::min(nMax - nCentre, nCentre - nMin);
    return static_cast<uint16_t>(std::max(nReach, h));
}

uint16_t LowEdge(int32_t nEdge) {
    return static_cast<uint16_t>(std::max(nEdge, 0));
}

uint16_t HighEdge(int32_t nEdge, int32_t nSize) {
    return static_cast<uint16_t>(std::min(nEdge, nSize - 1));
}

}  // namespace

void PpWeightedCentroid(const MdPpConfig* pConfig, MdResult* pResult) {
    const MdPpConfig& cfg = *pConfig;
    const Gathered g = GatherBlocks(cfg, *pResult);
    if (g.minX >= g.maxX || g.minY >= g.maxY || g.nCount < cfg.nBlkCntTh || g.sumW == 0) {
        pResult->tBoxReason = {g.nCount < cfg.nBlkCntTh ? kCentroidTooFew : kCentroidOneLine,
                               {g.nCount}};
        return;
    }
    pResult->tBoxReason = {kCentroidMotion, {g.nCount}};

    const int32_t h = pResult->nStride >> 1;  // from a block's position to the centre of its stride
    const uint32_t xC = g.sumXW / g.sumW;
    const uint32_t yC = g.sumYW / g.sumW;
    MdObject& tObject = pResult->tObjects[0];
    tObject.xDim = HalfSize(xC, g.minX, g.maxX, static_cast<uint32_t>(h));
    tObject.yDim = HalfSize(yC, g.minY, g.maxY, static_cast<uint32_t>(h));
    pResult->bMotionDetected = 1;
    pResult->nObjNum = 1;
    tObject.bValid = 1;
    tObject.xCenter = static_cast<int32_t>(xC) + h;
    tObject.yCenter = static_cast<int32_t>(yC) + h;
    tObject.left = LowEdge(tObject.xCenter - tObject.xDim - h);
    tObject.right = HighEdge(tObject.xCenter + tObject.xDim + h, cfg.nWidth);
    tObject.top = LowEdge(tObject.yCenter - tObject.yDim - h);
    tObject.bottom = HighEdge(tObject.yCenter + tObject.yDim + h, cfg.nHeight);
}
