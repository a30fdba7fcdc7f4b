#include "md/decision/block_decision.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "md/print.h"

namespace {

// Active by a branch that sets no flags; becomes 1 before the decision returns.
constexpr uint8_t kAvailUnflagged = 2;

struct NeighbourCounts {
    int32_t nActBlkCnt;       // bActive among all nine
    int32_t nActBlkCntLater;  // bActive among those not yet decided in this frame, the centre too
    int32_t nHighActBlkCnt;   // bHighActive among all nine
};

struct Thresholds {
    int32_t nBlkDistTh;
    int32_t nBlkDistThNn;    // for a block with no active neighbour
    int32_t nBlkDistThHigh;  // from here on a block is highly active
};

struct Distance {
    int32_t iAccuDist;
    int32_t DistWeight2;
    int32_t iHOGDist;
};

// What the rules of the temporal and spatial decision read of the block's surroundings.
struct Surroundings {
    NeighbourCounts tCounts;
    uint32_t dUp, dLeft, dUpLeft, dUpRight;  // distances of this frame, 0 for an absent block
    bool bAllNeighborsAvail;
};

// The outcome of the rules: the avail byte and the repeat counter.
struct Verdict {
    uint8_t nAvail;
    int32_t cnt;
};

int32_t CountUp(int32_t cnt) {
    return std::min(cnt + 1, 15);
}

// Ring word of the frame `nBack` frames back, 0 to 2.
size_t RingSlot(int32_t nCurFrmId, int32_t nBack) {
    return static_cast<size_t>((nCurFrmId + 3 - nBack) % 3);
}

Thresholds BlockThresholds(const MdParams& md, int32_t nYDiffThre) {
    Thresholds t;
    t.nBlkDistTh = std::min(
        std::max(md.nMD_HogDist_Th, (nYDiffThre * md.nMD_HogDist_Th_AvgYDiffAdj_Scale) >> 3), 255);
    t.nBlkDistThNn = std::min((t.nBlkDistTh * md.nMD_HogDist_Th_nnAdj_Scale) >> 2, 255);
    t.nBlkDistThHigh =
        std::min((t.nBlkDistTh * (md.nMD_HogDist_Th_highActiveAdj_scale + 4)) >> 2, 255);
    return t;
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

// Rule 6, low-delay branch: a block that has just risen from quiet frames, cnt 1 or 2.
uint8_t LowDelayAvail(const MdParams& md, const Thresholds& th, const NeighbourCounts& counts,
                      int32_t cnt, const uint8_t d[3]) {
    const int32_t nBlkDistThLow = (th.nBlkDistThNn * 2) >> md.nMD_HogDist_Th_LowDelay_shift;
    const bool bNear = counts.nActBlkCnt >= md.nMD_HogDist_Th_LowDelay_nn_count;
    const bool bNearLater = counts.nActBlkCntLater >= md.nMD_HogDist_Th_LowDelay_prev_nn_count;
    bool bActive = false;
    if (cnt == 1) {
        bActive = bNear && d[0] > nBlkDistThLow && d[1] < th.nBlkDistTh && d[2] < th.nBlkDistTh;
    } else {
        bActive = (bNearLater || bNear) && d[0] > nBlkDistThLow && d[1] > nBlkDistThLow &&
                  d[2] < th.nBlkDistTh;
    }
    return bActive ? kAvailUnflagged : 0;
}

// Rule 6: the block is over its threshold.
Verdict OverThreshold(const MdParams& md, const Thresholds& th, const NeighbourCounts& counts,
                      const BlockHistory& tCentre, int32_t cnt) {
    cnt = CountUp(cnt);
    uint8_t d[3];
    for (int32_t i = 0; i < 3; ++i) {
        d[i] = static_cast<uint8_t>(tCentre.aDist[RingSlot(md.CurFrmId, i)]);
    }
    if (md.nMD_LowDelayEn != 0 && cnt <= 2) {
        return {LowDelayAvail(md, th, counts, cnt, d), cnt};
    }
    if (cnt < md.nMD_ActBlkRepeatFrmCntTh) return {0, cnt};

    const uint32_t dMax = std::max({d[0], d[1], d[2]});
    const uint32_t dMin = std::min({d[0], d[1], d[2]});
    const uint32_t nRatio = static_cast<uint32_t>(md.nMD_ActBlk_MinMaxRatio_Scale + 16);
    if (dMax <= (dMin * nRatio) >> 4) return {1, cnt};
    // The distance jumps: pull the counter back, less so the more neighbours are active.
    const int32_t nPull = 3 - std::min(counts.nActBlkCnt, 2);
    const uint8_t nAvail = counts.nActBlkCnt >= 4 ? 1 : 0;
    return {nAvail, std::max(md.nMD_ActBlkRepeatFrmCntTh - nPull, 0)};
}

// The temporal and spatial decision: the first rule that matches applies.
Verdict DecideBlock(const MdParams& md, const Thresholds& th, const Surroundings& s,
                    const BlockHistory& tCentre, int32_t D) {
    const int32_t cnt = static_cast<int32_t>(tCentre.nState & kStateRepeatMask);
    const NeighbourCounts& counts = s.tCounts;
    if (s.bAllNeighborsAvail) {
        const bool bSaturatedPatch = D == 255 && s.dUpLeft == 255 && s.dUp == 255 && s.dLeft == 255;
        const bool bSaturatedEdge =
            D == 255 && s.dUpLeft == 0 && s.dUp == 0 && s.dUpRight == 0 && s.dLeft >= 180;
        const bool bStrongEdge =
            D >= 170 && s.dUpLeft <= 2 && s.dUp <= 2 && s.dUpRight <= 2 && s.dLeft >= 200;
        if (bSaturatedPatch || bSaturatedEdge || bStrongEdge) {
            return {kAvailUnflagged, CountUp(cnt)};
        }
    }
    if (counts.nHighActBlkCnt > 0 && D > (th.nBlkDistTh >> 4)) return {1, cnt};
    const bool bOver = (counts.nActBlkCnt == 0 && D > th.nBlkDistThNn) ||
                       (counts.nActBlkCnt > 0 && D > th.nBlkDistTh);
    if (!bOver) return {0, std::max(cnt - 1, 0)};
    return OverThreshold(md, th, counts, tCentre, cnt);
}

uint8_t CloseDecision(const MdParams& md, const Thresholds& th, const NeighbourCounts& counts,
                      Verdict tVerdict, int32_t D, BlockHistory* pCentre) {
    pCentre->nState = static_cast<uint32_t>(tVerdict.cnt) & kStateRepeatMask;
    if (tVerdict.nAvail == 1) {
        pCentre->nState |= kStateActive;
        if (D >= th.nBlkDistThHigh) pCentre->nState |= kStateHighActive;
        // An isolated block leaves the map; its flags stay and count for its neighbours.
        if (counts.nHighActBlkCnt == 0 && counts.nActBlkCnt < md.nMD_ActNeighborBlkCntTh) return 0;
    }
    return tVerdict.nAvail;
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
    const auto Count = [&counts](const BlockHistory* p, bool bLater) {
        if (p == nullptr) return;
        const int32_t nActive = (p->nState & kStateActive) != 0 ? 1 : 0;
        counts.nActBlkCnt += nActive;
        counts.nActBlkCntLater += bLater ? nActive : 0;
        counts.nHighActBlkCnt += (p->nState & kStateHighActive) != 0 ? 1 : 0;
    };
    for (const BlockHistory* p : {pUp, pLeft, pUpLeft, pUpRight}) Count(p, false);
    for (const BlockHistory* p :
         {pDown, pRight, pDownRight, pDownLeft, static_cast<const BlockHistory*>(pCentre)}) {
        Count(p, true);
    }

    if (bDetail) {
        MdPrint("BlockHogDistance_NormalHog: ");
        MdPrint(
            "  nMD_HogNormalizeMode=%d, iCurBlkVar=%d, iRefBlkVar=%d, iCurBlkY=%d, "
            "iRefBlkY=%d, nYDiffThre=%d\n",
            md.nMD_HogNormalizeMode, pCur->histNorm0, pRef->histNorm0, pCur->nAvgY, pRef->nAvgY,
            nYDiffThre);
    }

    const bool bDistNotAvail =
        md.CurFrmId == md.RefBufIdx ||
        (md.nMD_HogDistAvailCheck == 1 && std::abs(pCur->nAvgY - pRef->nAvgY) <= nYDiffThre);
    if (!bCorrelation && bDistNotAvail) {
        *pAvail = 0;
        *pDist = 0;
        pCentre->nState = 0;
        return;
    }

    const Thresholds th = BlockThresholds(md, nYDiffThre);
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
            return p != nullptr ? p->aDist[RingSlot(md.CurFrmId, 0)] : 0;
        };
        const Surroundings s{counts,           DistNow(pUp),      DistNow(pLeft),
                             DistNow(pUpLeft), DistNow(pUpRight), bAllNeighborsAvail != 0};
        const Verdict tVerdict = DecideBlock(md, th, s, *pCentre, D);
        *pAvail = CloseDecision(md, th, counts, tVerdict, D, pCentre);
    }
    if (*pAvail == kAvailUnflagged) *pAvail = 1;

    if (bDetail) {
        MdPrint("  iAccuDist=%d, DistWeight2=%d, iHOGDist=%d.\n", tDistance.iAccuDist,
                tDistance.DistWeight2, D);
        MdPrint("  Histogram of cur blk: ");
        MdPrint("\n");
        MdPrint("  Histogram of ref blk: ");
        MdPrint("\n");
    }
}
