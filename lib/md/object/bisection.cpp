// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/object/bisection.h"

#include <algorithm>

#include "md/object/avail_bits.h"
#include "md/print.h"

namespace {

constexpr int32_t kMinDim = 2;           // pixels; a thinner node is no object
constexpr uint32_t kWholeFrame = 10000;  // larger than any frame; clamped to the grid

// Both halves joined: the harmonic mean of the two reaches, plus 1. Products wrap in 32 bits.
uint32_t JoinReaches(uint32_t a, uint32_t b) {
    const int32_t nSum = static_cast<int32_t>(a + b);
    if (nSum < 5) return 0;
    return static_cast<uint32_t>(static_cast<int32_t>(a * b * 2) / nSum + 1);
}

}  // namespace

void SlabCenter(int32_t nThreshold, uint32_t nLo, uint32_t nHi, uint32_t* pArea, uint32_t* pCenter,
                int32_t nStride, int32_t nBlkW, int32_t nBlkH, const uint8_t* pDistMap,
                const uint8_t* pAvailBits, Axis nAxis) {
    const int32_t s = nStride;
    const int32_t nLast = (nAxis == kAxisX ? nBlkW : nBlkH) - 1;
    const int32_t nFrom = std::clamp((static_cast<int32_t>(nLo) + s - 1) / s, 0, nLast);
    const int32_t nTo = std::clamp(static_cast<int32_t>(nHi) / s, 0, nLast);
    const int32_t nRowFrom = nAxis == kAxisX ? 0 : nFrom;
    const int32_t nRowTo = nAxis == kAxisX ? nBlkH - 1 : nTo;
    const int32_t nColFrom = nAxis == kAxisX ? nFrom : 0;
    const int32_t nColTo = nAxis == kAxisX ? nTo : nBlkW - 1;

    uint32_t nArea = 0;
    uint32_t nMoment = 0;  // position times distance; wraps modulo 2^32
    for (int32_t row = nRowFrom; row <= nRowTo; ++row) {
        const int32_t nStart = row * nBlkW;
        ForEachAvailable(pAvailBits, nStart + nColFrom, nStart + nColTo + 1, [&](int32_t i) {
            if (pDistMap[i] < nThreshold) return;
            const int32_t nPosition = (nAxis == kAxisX ? i - nStart : row) * s;
            nArea += pDistMap[i];
            nMoment += static_cast<uint32_t>(nPosition) * pDistMap[i];
        });
    }
    *pArea = nArea;
    *pCenter = nArea > 0 ? (nMoment + nArea / 2) / nArea : nLo;
}

void BisectSlab(int32_t nThreshold, uint32_t nLo, uint32_t nHi, uint32_t* pCenter, uint32_t* pDim,
                int32_t nStride, int32_t nBlkW, int32_t nBlkH, const uint8_t* pDistMap,
                const uint8_t* pAvailBits, SlabNode* pNodes, uint32_t nNode, int32_t nDepthLimit,
                Axis nAxis, int32_t nDepth) {
    uint32_t Area = 0, Center = 0;
    SlabCenter(nThreshold, nLo, nHi, &Area, &Center, nStride, nBlkW, nBlkH, pDistMap, pAvailBits,
               nAxis);
    const auto Half = [&](uint32_t lo, uint32_t hi, uint32_t* pC, uint32_t* pD, uint32_t nChild) {
        BisectSlab(nThreshold, lo, hi, pC, pD, nStride, nBlkW, nBlkH, pDistMap, pAvailBits, pNodes,
                   nChild, nDepthLimit, nAxis, nDepth + 1);
    };
    uint32_t Center0 = Center, Dim0 = Center - nHi;
    if (Center < nHi) Half(nLo, Center, &Center0, &Dim0, 2 * nNode + 1);
    uint32_t Center1 = Center, Dim1 = nLo - Center;
    if (Center > nLo) Half(Center, nHi, &Center1, &Dim1, 2 * nNode + 2);
    *pCenter = Center;
    *pDim = JoinReaches(Dim0 + (Center - Center0), Dim1 + (Center1 - Center));
    if (nDepth <= nDepthLimit) {
        pNodes[nNode] = {1, static_cast<uint16_t>(Area), static_cast<uint16_t>(Center),
                         static_cast<uint16_t>(*pDim)};
    }
}

BoxReason NodeDesense(SlabNode* pNode, Axis nAxis) {
    const int32_t k = nAxis == kAxisX ? 256 : 128;
    if (pNode->Dim < kMinDim) {
        pNode->bValid = 0;
        MdPrint("LOG: Dimension desense! %d\n", pNode->Dim);
        return {kBisectionThin, {nAxis, pNode->Dim, kMinDim}};
    }
    if (pNode->Area * 256 < pNode->Dim * 2 * k) {
        pNode->bValid = 0;
        MdPrint("LOG: Area desense! Area:%d, Dim:%d\n", pNode->Area, pNode->Dim);
        return {kBisectionLight, {nAxis, pNode->Area, pNode->Dim, pNode->Dim * 2 * k / 256}};
    }
    return {kBisectionMotion, {}};
}

void BisectAxes(const MdPpConfig* pConfig, MdResult* pResult) {
    const int32_t nStride = pResult->nStride;
    const auto Bisect = [&](SlabNode* pNode, Axis nAxis) {
        uint32_t Center = 0, Dim = 0;
        BisectSlab(pConfig->nHogDistTh, 0, kWholeFrame, &Center, &Dim, nStride, pResult->nBlkW,
                   pResult->nBlkH, pResult->pDistMap, pResult->pAvailBits, pNode, 0, 0, nAxis, 0);
    };
    SlabNode tX{}, tY{};
    Bisect(&tX, kAxisX);
    Bisect(&tY, kAxisY);
    const BoxReason tReasonX = NodeDesense(&tX, kAxisX);
    const BoxReason tReasonY = NodeDesense(&tY, kAxisY);
    pResult->tBoxReason = tX.bValid == 0 ? tReasonX : tReasonY;
    pResult->nObjNum = 0;
    if (tY.bValid != 0 && tX.bValid != 0) {
        MdObject& tObject = pResult->tObjects[0];
        tObject.xCenter = tX.Center + nStride;
        tObject.xDim = tX.Dim;
        tObject.yCenter = tY.Center + nStride;
        tObject.yDim = tY.Dim;
        pResult->nObjNum = 1;
    }
}

void PpBisection(const MdPpConfig* pConfig, MdResult* pResult) {
    BisectAxes(pConfig, pResult);
    if (pResult->nObjNum > 0) pResult->bMotionDetected = 1;
    for (int32_t i = 0; i < pResult->nObjNum; ++i) {
        MdObject& o = pResult->tObjects[i];
        o.bValid = 1;
        o.left = static_cast<uint16_t>(std::max(o.xCenter - o.xDim, 0));
        o.right = static_cast<uint16_t>(std::min(o.xCenter + o.xDim, pConfig->nWidth - 1));
        o.top = static_cast<uint16_t>(std::max(o.yCenter - o.yDim, 0));
        o.bottom = static_cast<uint16_t>(std::min(o.yCenter + o.yDim, pConfig->nHeight - 1));
        MdPrint("obj RECT[l,r, t, b]: (%d-%d: %d,%d,%d,%d)\n", pResult->nObjNum, i, o.left, o.right,
                o.top, o.bottom);
    }
}
