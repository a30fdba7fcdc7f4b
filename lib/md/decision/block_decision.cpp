// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/decision/block_decision.h"

#include <cstdlib>

#include "md/decision/activity_rules.h"
#include "md/decision/distance.h"
#include "md/print.h"

namespace {

// A null record is a block outside the grid. Later blocks have not been decided in this frame.
void CountBlock(const BlockHistory* pBlock, bool bLater, NeighbourCounts* pCounts) {
    if (pBlock == nullptr) return;
    const int32_t nActive = (pBlock->nState & kStateActive) != 0 ? 1 : 0;
    pCounts->nActBlkCnt += nActive;
    pCounts->nActBlkCntLater += bLater ? nActive : 0;
    pCounts->nHighActBlkCnt += (pBlock->nState & kStateHighActive) != 0 ? 1 : 0;
}

void PrintRecords(const MdParams& md, const BlockFeature& tCur, const BlockFeature& tRef,
                  int32_t nYDiffThre) {
    MdPrint("BlockHogDistance_NormalHog: ");
    MdPrint(
        "  nMD_HogNormalizeMode=%d, iCurBlkVar=%d, iRefBlkVar=%d, iCurBlkY=%d, "
        "iRefBlkY=%d, nYDiffThre=%d\n",
        md.nMD_HogNormalizeMode, tCur.histNorm0, tRef.histNorm0, tCur.nAvgY, tRef.nAvgY,
        nYDiffThre);
}

void PrintDistance(const Distance& tDistance, int32_t D) {
    MdPrint("  iAccuDist=%d, DistWeight2=%d, iHOGDist=%d.\n", tDistance.iAccuDist,
            tDistance.DistWeight2, D);
    MdPrint("  Histogram of cur blk: ");
    MdPrint("\n");
    MdPrint("  Histogram of ref blk: ");
    MdPrint("\n");
}

}  // namespace

void BlockHogDistance_NormalHog(const MdParams* pParams, const BlockFeature* pCur,
                                const BlockFeature* pRef, int32_t nYDiffThre, uint8_t* pAvail,
                                uint8_t* pDist, BlockHistory* pCentre, const BlockHistory* pUp,
                                const BlockHistory* pLeft, const BlockHistory* pUpLeft,
                                const BlockHistory* pUpRight, const BlockHistory* pDown,
                                const BlockHistory* pRight, const BlockHistory* pDownRight,
                                const BlockHistory* pDownLeft, int32_t bAllNeighborsAvail) {
    const MdParams& md = *pParams;
    const bool bDetail = (md.nDbgEn & kDbgDetail) != 0;
    const bool bCorrelation = md.nMD_NeighborCorrelation != 0;

    NeighbourCounts counts{};
    for (const BlockHistory* p : {pUp, pLeft, pUpLeft, pUpRight}) CountBlock(p, false, &counts);
    for (const BlockHistory* p : {pDown, pRight, pDownRight, pDownLeft}) {
        CountBlock(p, true, &counts);
    }
    CountBlock(pCentre, true, &counts);
    if (bDetail) PrintRecords(md, *pCur, *pRef, nYDiffThre);

    const bool bDistNotAvail =
        IsOwnReference(md) || IsLumaStill(md, std::abs(pCur->nAvgY - pRef->nAvgY), nYDiffThre);
    if (!bCorrelation && bDistNotAvail) {
        *pAvail = 0;
        *pDist = 0;
        pCentre->nState = 0;
        return;
    }

    const Distance tDistance =
        DistanceOf(DistanceSetupOf(md), pCur->v, pCur->histNorm2, pRef->v, pRef->histNorm2);
    *pDist = static_cast<uint8_t>(tDistance.iHOGDist);
    *pAvail = 1;
    const int32_t D = *pDist;
    // The ring keeps the computed distance, even where the block then reports 0.
    if (bCorrelation) pCentre->aDist[HistorySlot(md.CurFrmId, 0)] = static_cast<uint32_t>(D);

    if (bDistNotAvail) {
        *pAvail = 0;
        *pDist = 0;
        pCentre->nState &= kStateRepeatMask;
        return;
    }

    if (bCorrelation) {
        const auto DistNow = [&md](const BlockHistory* p) {
            return p != nullptr ? static_cast<int32_t>(p->aDist[HistorySlot(md.CurFrmId, 0)]) : 0;
        };
        BlockView v{counts,
                    DistNow(pUp),
                    DistNow(pLeft),
                    DistNow(pUpLeft),
                    DistNow(pUpRight),
                    bAllNeighborsAvail != 0,
                    {},
                    pCentre->nState};
        for (int32_t i = 0; i < 3; ++i) {
            v.d[i] = static_cast<uint8_t>(pCentre->aDist[HistorySlot(md.CurFrmId, i)]);
        }
        const Activity tActivity = DecideActivity(md, BlockThresholds(md, nYDiffThre), v);
        *pAvail = tActivity.nAvail;
        pCentre->nState = tActivity.nState;
    }

    if (bDetail) PrintDistance(tDistance, D);
}
