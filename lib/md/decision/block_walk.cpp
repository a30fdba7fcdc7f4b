// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/decision/block_walk.h"

#include <cstdlib>

#include "md/block_grid.h"
#include "md/decision/block_decision.h"
#include "md/decision/luma_threshold.h"
#include "md/feature/block_fetch.h"
#include "md/feature/mog_feature.h"

namespace {

constexpr int32_t kMaxWindow = 32 + 4;  // pixels; largest block size with its border

void FetchBlock(const MdParams& md, const uint8_t* pY, int32_t nWidth, int32_t nHeight, int32_t x0,
                int32_t y0, uint8_t* pBlkBuf) {
    const int32_t B = md.nMD_HogBlockSize;
    switch (md.nMD_Padding_Method) {
        case kPadNeighbours:
            BlockFetch_Extend(pY, nWidth, nHeight, x0 - 2, y0 - 2, B + 4, pBlkBuf);
            break;
        case kPadZeros:
            BlockFetch_Zero(pY, nWidth, nHeight, x0, y0, B, pBlkBuf);
            break;
        default:
            BlockFetch_Replicate(pY, nWidth, nHeight, x0, y0, B, pBlkBuf);
            break;
    }
}

}  // namespace

void FrameBlockScan_NormalHog(const MdParams* pParams, const uint8_t* pY, int32_t nWidth,
                              int32_t nHeight, const uint8_t* pGaussWin, BlockFeature* pCurFeat,
                              const BlockFeature* pRefFeat, uint8_t* pAvailMap, uint8_t* pDistMap,
                              BlockHistory** ppHistory) {
    const MdParams& md = *pParams;
    const int32_t S = md.nMD_HogBlockStride;
    const int32_t nMethod = md.nMD_HogDist_AvgYDiffCalc_Method;
    const int32_t nBlkW = BlockCount(nWidth, md);
    const int32_t nBlkH = BlockCount(nHeight, md);
    uint8_t aBlkBuf[kMaxWindow * kMaxWindow];
    int32_t iYDiffSum = 0;
    int32_t nYDiffThre = 0;
    const auto Decide = [&](int32_t x, int32_t y, int32_t nThreshold) {
        BlockDecide_NormalHog(pParams, nWidth, nHeight, x, y, pCurFeat, pRefFeat, nThreshold,
                              pAvailMap, pDistMap, ppHistory);
    };

    for (int32_t y = 0; y < nBlkH; ++y) {
        if (nMethod == kPerRow && y > 0) nYDiffThre = MeanThreshold(md, iYDiffSum, y * nBlkW);
        for (int32_t x = 0; x < nBlkW; ++x) {
            const int32_t i = y * nBlkW + x;
            FetchBlock(md, pY, nWidth, nHeight, x * S, y * S, aBlkBuf);
            BlockFeature_NormalHog(pParams, aBlkBuf, pGaussWin, &pCurFeat[i]);
            iYDiffSum += std::abs(pCurFeat[i].nAvgY - pRefFeat[i].nAvgY);
            switch (nMethod) {
                case kPerRow:
                    if (y > 0) Decide(x, y - 1, nYDiffThre);
                    break;
                case kRunning:
                    Decide(x, y, MeanThreshold(md, iYDiffSum, i + 1));
                    break;
                default:
                    Decide(x, y, nYDiffThreCarry);
                    break;
            }
        }
    }

    nYDiffThre = MeanThreshold(md, iYDiffSum, nBlkH * nBlkW);
    FinishThreshold(md, nBlkH, nYDiffThre);
    if (nMethod == kPerRow) {
        for (int32_t x = 0; x < nBlkW; ++x) Decide(x, nBlkH - 1, nYDiffThre);
    }
}

void BlockDecide_NormalHog(const MdParams* pParams, int32_t nWidth, int32_t nHeight, int32_t x,
                           int32_t y, const BlockFeature* pCurFeat, const BlockFeature* pRefFeat,
                           int32_t nYDiffThre, uint8_t* pAvailMap, uint8_t* pDistMap,
                           BlockHistory** ppHistory) {
    const int32_t nBlkW = BlockCount(nWidth, *pParams);
    const int32_t nBlkH = BlockCount(nHeight, *pParams);
    const int32_t i = y * nBlkW + x;
    const auto Record = [&](int32_t dx, int32_t dy) -> BlockHistory* {
        const bool bInside = x + dx >= 0 && x + dx < nBlkW && y + dy >= 0 && y + dy < nBlkH;
        return bInside ? ppHistory[i + dy * nBlkW + dx] : nullptr;
    };
    BlockHogDistance_NormalHog(pParams, &pCurFeat[i], &pRefFeat[i], nYDiffThre, &pAvailMap[i],
                               &pDistMap[i], ppHistory[i], Record(0, -1),  // up
                               Record(-1, 0),                              // left
                               Record(-1, -1),                             // up-left
                               Record(1, -1),                              // up-right
                               Record(0, 1),                               // down
                               Record(1, 0),                               // right
                               Record(1, 1),                               // down-right
                               Record(-1, 1),                              // down-left
                               HasAllNeighbours(x, y, nBlkW, nBlkH) ? 1 : 0);
}
