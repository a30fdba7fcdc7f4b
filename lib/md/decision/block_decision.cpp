#include "md/decision/block_decision.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "md/decision/activity_rules.h"
#include "md/print.h"

namespace {

struct Distance {
    int32_t iAccuDist;
    int32_t DistWeight2;
    int32_t iHOGDist;
};

// Ring word of the frame `nBack` frames back, 0 to 2.
size_t RingSlot(int32_t nCurFrmId, int32_t nBack) {
    return static_cast<size_t>((nCurFrmId + 3 - nBack) % 3);
}

Distance BlockDistance(const MdParams& md, const BlockFeature& tCur, const BlockFeature& tRef) {
    const int32_t hc = tCur.histNorm2;
    const int32_t hr = tRef.histNorm2;
    Distance d{};
    d.DistWeight2 =
        md.nMD_HogDist_WeightMethod == 0 ? hc + std::abs(hc - hr) : hc + std::max(hc - hr, 0);
    if ((md.nMD_MetricMode & kMetricMog) != 0) {
        for (int32_t i = 0; i < kVectorSize; ++i) {
            const int32_t nDiff = tCur.v[i] - tRef.v[i];
            d.iAccuDist += nDiff * nDiff;
        }
        d.iAccuDist >>= md.nMD_HogBlockSize != md.nMD_HogCellSize ? 6 : 4;
        // The product is 32 bits wide and wraps for large keys; a wrapped one counts as signed.
        const uint32_t nProduct = static_cast<uint32_t>(d.iAccuDist) *
                                  static_cast<uint32_t>(d.DistWeight2) *
                                  static_cast<uint32_t>(md.nMD_HogDist_Scale2);
        const int32_t m = md.nMD_HogNormalizeMode == 0 ? 4 : 12;
        d.iHOGDist = std::min(static_cast<int32_t>(nProduct) >> m, 255);
    }
    return d;
}

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
        md.CurFrmId == md.RefBufIdx ||
        (md.nMD_HogDistAvailCheck == 1 && std::abs(pCur->nAvgY - pRef->nAvgY) <= nYDiffThre);
    if (!bCorrelation && bDistNotAvail) {
        *pAvail = 0;
        *pDist = 0;
        pCentre->nState = 0;
        return;
    }

    const Distance tDistance = BlockDistance(md, *pCur, *pRef);
    *pDist = static_cast<uint8_t>(tDistance.iHOGDist);
    *pAvail = 1;
    const int32_t D = *pDist;
    // The ring keeps the computed distance, even where the block then reports 0.
    if (bCorrelation) pCentre->aDist[RingSlot(md.CurFrmId, 0)] = static_cast<uint32_t>(D);

    if (bDistNotAvail) {
        *pAvail = 0;
        *pDist = 0;
        pCentre->nState &= kStateRepeatMask;
        return;
    }

    if (bCorrelation) {
        const auto DistNow = [&md](const BlockHistory* p) {
            return p != nullptr ? static_cast<int32_t>(p->aDist[RingSlot(md.CurFrmId, 0)]) : 0;
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
            v.d[i] = static_cast<uint8_t>(pCentre->aDist[RingSlot(md.CurFrmId, i)]);
        }
        const Activity tActivity = DecideActivity(md, BlockThresholds(md, nYDiffThre), v);
        *pAvail = tActivity.nAvail;
        pCentre->nState = tActivity.nState;
    }

    if (bDetail) PrintDistance(tDistance, D);
}
