// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/object/grid_cluster.h"

#include <algorithm>
#include <cstddef>

#include "md/object/avail_bits.h"

GridTune aGridTune[2] = {
    {16, 10, 0, 4, 3, 8, 10, 90},
    {10, 4, 0, 8, 6, 8, 3, 30},
};

namespace {

constexpr int32_t kMaxRegions = 8 * 6;

struct RegionTable {
    GridRegion aRegions[kMaxRegions] = {};
    int32_t nCount = 0;

    GridRegion& operator[](int32_t i) { return aRegions[static_cast<size_t>(i)]; }
};

void GatherRegions(const MdPpConfig& cfg, const MdResult& res, const GridTune& tune,
                   RegionTable& regions) {
    const int32_t cellW = cfg.nWidth / tune.nGridCols;
    const int32_t cellH = cfg.nHeight / tune.nGridRows;
    int32_t nRow = 0;  // of block j; follows j, which only rises, without a division
    int32_t nRowStart = 0;
    ForEachAvailable(res.pAvailBits, 0, res.nBlkW * res.nBlkH, [&](int32_t j) {
        if (res.pDistMap[j] <= tune.nDistTh) return;
        for (; j >= nRowStart + res.nBlkW; nRowStart += res.nBlkW) ++nRow;
        const int32_t x = (j - nRowStart) * cfg.nStride;
        const int32_t y = nRow * cfg.nStride;
        GridRegion& r = regions[(y / cellH) * tune.nGridCols + x / cellW];
        if (r.left == 0 && r.right == 0) r.left = r.right = x;
        if (r.top == 0 && r.bottom == 0) r.top = r.bottom = y;
        ++r.nBlkCnt;
        r.left = std::min(r.left, x);
        r.right = std::max(r.right, x);
        r.top = std::min(r.top, y);
        r.bottom = std::max(r.bottom, y);
    });
}

// Counts include what earlier merges have added. A region absorbed by one before it is zeroed when
// its turn comes; one absorbed by a later region keeps its data and still scores.
void MergeRegions(const GridTune& tune, RegionTable& regions) {
    for (int32_t i = 0; i < regions.nCount; ++i) {
        if (regions[i].nBlkCnt > tune.nMinBlocks && regions[i].bMerged == 0) {
            for (int32_t j = 0; j < regions.nCount; ++j) {
                if (regions[j].nBlkCnt > tune.nMinBlocks && j != i) {
                    GridRegionMerge(&regions[i], &regions[j], tune.nMergeGap);
                }
            }
        } else {
            regions[i] = GridRegion{};
        }
    }
}

// Mean distance of all active blocks inside the region's box, both ends included.
void ScoreRegion(const MdPpConfig& cfg, const MdResult& res, GridRegion& r) {
    for (int32_t row = r.top / cfg.nStride; row <= r.bottom / cfg.nStride; ++row) {
        const int32_t nFirst = row * res.nBlkW + r.left / cfg.nStride;
        const int32_t nEnd = row * res.nBlkW + r.right / cfg.nStride + 1;
        ForEachAvailable(res.pAvailBits, nFirst, nEnd, [&](int32_t j) {
            r.nHitCnt += res.pDistMap[j] > 0 ? 1 : 0;
            r.nDistSum += res.pDistMap[j];
        });
    }
    r.nAvgDist = r.nDistSum / r.nHitCnt;  // not 0: the last block gathered is in the box
}

// Index of the region with the greatest score, the first of equals; 0 when none scores.
int32_t BestRegion(const MdPpConfig& cfg, const MdResult& res, RegionTable& regions) {
    int32_t nBest = 0;
    int32_t nIndex = 0;
    for (int32_t i = 0; i < regions.nCount; ++i) {
        if (regions[i].nBlkCnt <= 0) continue;
        ScoreRegion(cfg, res, regions[i]);
        if (regions[i].nAvgDist > nBest) {
            nBest = regions[i].nAvgDist;
            nIndex = i;
        }
    }
    return nIndex;
}

}  // namespace

void PpGridCluster(const MdPpConfig* pConfig, MdResult* pResult) {
    GridTune& tune = aGridTune[pConfig->nWidth == 640 && pConfig->nHeight == 360 ? 0 : 1];
    RegionTable regions;
    regions.nCount = tune.nGridCols * tune.nGridRows;
    GatherRegions(*pConfig, *pResult, tune, regions);
    MergeRegions(tune, regions);
    const GridRegion& r = regions[BestRegion(*pConfig, *pResult, regions)];

    // With no region left, the empty region 0 lets the score decay.
    tune.nScore = static_cast<uint8_t>((tune.nScore * 65 + r.nAvgDist * 35) / 100);
    const int32_t nArea = (r.right - r.left) * (r.bottom - r.top);
    pResult->tBoxReason = {kGridMotion, {r.nAvgDist, tune.nScore, tune.nDetectTh}};
    if (nArea <= 0 || tune.nScore <= tune.nDetectTh) {
        BoxReason& tReason = pResult->tBoxReason;
        tReason.nCode = nArea <= 0 ? kGridOneLine : kGridLowScore;
        if (r.nBlkCnt == 0)
            tReason = {kGridNoGroup, {0, tune.nScore, tune.nDetectTh, tune.nMinBlocks}};
        return;
    }
    pResult->bMotionDetected = 1;
    pResult->nObjNum = 1;
    MdObject& tObject = pResult->tObjects[0];
    tObject.bValid = 1;
    tObject.left = static_cast<uint16_t>(r.left);
    tObject.right = static_cast<uint16_t>(r.right);
    tObject.top = static_cast<uint16_t>(r.top);
    tObject.bottom = static_cast<uint16_t>(r.bottom);
}

void GridClusterReset() {
    for (GridTune& t : aGridTune) t.nScore = 0;
}

void GridRegionMerge(GridRegion* pA, GridRegion* pB, int32_t nGap) {
    GridRegion& a = *pA;
    GridRegion& b = *pB;
    // Gap along one axis between two spans; negative where they overlap.
    const auto Gap = [](int32_t nLow1, int32_t nHigh1, int32_t nLow2, int32_t nHigh2) {
        return nLow1 > nLow2 ? nLow1 - nHigh2 : nLow2 - nHigh1;
    };
    if (Gap(a.left, a.right, b.left, b.right) > nGap) return;
    if (Gap(a.top, a.bottom, b.top, b.bottom) > nGap) return;
    a.left = std::min(a.left, b.left);
    a.top = std::min(a.top, b.top);
    a.right = std::max(a.right, b.right);
    a.bottom = std::max(a.bottom, b.bottom);
    b.bMerged = 1;
    a.nHitCnt += b.nHitCnt;
    a.nDistSum += b.nDistSum;
    a.nBlkCnt += b.nBlkCnt;
}
