// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/decision/activity_rules.h"

#include <algorithm>

#include "md/block_history.h"

namespace {

// Active by a branch that sets no flags: reaches the map as 1.
constexpr uint8_t kAvailUnflagged = 2;

// The least distance that the rules on saturated distances ask of a block.
constexpr int32_t kEdgeDist = 170;

// What the rules give: the avail byte, which of them decided, and the repeat counter.
struct Verdict {
    uint8_t nAvail;
    ActivityOutcome nOutcome;
    int32_t cnt;
};

int32_t CountUp(int32_t cnt) {
    return std::min(cnt + 1, 15);
}

// Rule 6, low-delay branch: a block that has just risen from quiet frames, cnt 1 or 2.
Verdict LowDelay(const MdParams& md, const Thresholds& th, const NeighbourCounts& counts,
                 int32_t cnt, const uint8_t d[3]) {
    const int32_t nBlkDistThLow = (th.nBlkDistThNn * 2) >> md.nMD_HogDist_Th_LowDelay_shift;
    const bool bNear = counts.nActBlkCnt >= md.nMD_HogDist_Th_LowDelay_nn_count;
    const bool bNearLater = counts.nActBlkCntLater >= md.nMD_HogDist_Th_LowDelay_prev_nn_count;
    if (cnt == 1) {
        return bNear && d[0] > nBlkDistThLow && d[1] < th.nBlkDistTh && d[2] < th.nBlkDistTh
                   ? Verdict{kAvailUnflagged, kLowDelayFirst, cnt}
                   : Verdict{0, kTooNewFirst, cnt};
    }
    return (bNearLater || bNear) && d[0] > nBlkDistThLow && d[1] > nBlkDistThLow &&
                   d[2] < th.nBlkDistTh
               ? Verdict{kAvailUnflagged, kLowDelaySecond, cnt}
               : Verdict{0, kTooNewSecond, cnt};
}

// Rule 6: the block is over its threshold.
Verdict OverThreshold(const MdParams& md, const Thresholds& th, const NeighbourCounts& counts,
                      const uint8_t d[3], int32_t cnt) {
    cnt = CountUp(cnt);
    if (md.nMD_LowDelayEn != 0 && cnt <= 2) return LowDelay(md, th, counts, cnt, d);
    if (cnt < md.nMD_ActBlkRepeatFrmCntTh) return {0, kTooNew, cnt};

    const uint32_t dMax = std::max({d[0], d[1], d[2]});
    const uint32_t dMin = std::min({d[0], d[1], d[2]});
    const uint32_t nRatio = static_cast<uint32_t>(md.nMD_ActBlk_MinMaxRatio_Scale + 16);
    if (dMax <= (dMin * nRatio) >> 4) return {1, kSteady, cnt};
    // The distance jumps: pull the counter back, less so the more neighbours are active.
    const int32_t nPull = 3 - std::min(counts.nActBlkCnt, 2);
    const int32_t nPulled = std::max(md.nMD_ActBlkRepeatFrmCntTh - nPull, 0);
    return counts.nActBlkCnt >= 4 ? Verdict{1, kJumpHeld, nPulled} : Verdict{0, kJumps, nPulled};
}

// The first rule that matches applies.
Verdict ApplyRules(const MdParams& md, const Thresholds& th, const BlockView& v) {
    const int32_t cnt = static_cast<int32_t>(v.nState & kStateRepeatMask);
    const int32_t D = v.d[0];
    const NeighbourCounts& counts = v.tCounts;
    if (v.bAllNeighborsAvail) {
        const bool bSaturatedPatch = D == 255 && v.dUpLeft == 255 && v.dUp == 255 && v.dLeft == 255;
        const bool bSaturatedEdge =
            D == 255 && v.dUpLeft == 0 && v.dUp == 0 && v.dUpRight == 0 && v.dLeft >= 180;
        const bool bStrongEdge =
            D >= kEdgeDist && v.dUpLeft <= 2 && v.dUp <= 2 && v.dUpRight <= 2 && v.dLeft >= 200;
        if (bSaturatedPatch || bSaturatedEdge || bStrongEdge) {
            const ActivityOutcome nEdge = bSaturatedEdge ? kSaturatedEdge : kStrongEdge;
            return {kAvailUnflagged, bSaturatedPatch ? kSaturatedPatch : nEdge, CountUp(cnt)};
        }
    }
    if (counts.nHighActBlkCnt > 0 && D > (th.nBlkDistTh >> 4)) return {1, kCarried, cnt};
    const bool bOver = (counts.nActBlkCnt == 0 && D > th.nBlkDistThNn) ||
                       (counts.nActBlkCnt > 0 && D > th.nBlkDistTh);
    if (!bOver) {
        const ActivityOutcome nBelow = counts.nActBlkCnt > 0 ? kBelow : kBelowAlone;
        return {0, D == 0 ? kNoChange : nBelow, std::max(cnt - 1, 0)};
    }
    return OverThreshold(md, th, counts, v.d, cnt);
}

}  // namespace

Thresholds BlockThresholds(const MdParams& md, int32_t nYDiffThre) {
    Thresholds t;
    t.nBlkDistTh = std::min(
        std::max(md.nMD_HogDist_Th, (nYDiffThre * md.nMD_HogDist_Th_AvgYDiffAdj_Scale) >> 3), 255);
    t.nBlkDistThNn = std::min((t.nBlkDistTh * md.nMD_HogDist_Th_nnAdj_Scale) >> 2, 255);
    t.nBlkDistThHigh =
        std::min((t.nBlkDistTh * (md.nMD_HogDist_Th_highActiveAdj_scale + 4)) >> 2, 255);
    return t;
}

Activity DecideActivity(const MdParams& md, const Thresholds& th, const BlockView& v) {
    const Verdict tVerdict = ApplyRules(md, th, v);
    const NeighbourCounts& counts = v.tCounts;
    Activity a{tVerdict.nAvail, tVerdict.nOutcome,
               static_cast<uint32_t>(tVerdict.cnt) & kStateRepeatMask};
    if (tVerdict.nAvail == 1) {
        a.nState |= kStateActive;
        if (v.d[0] >= th.nBlkDistThHigh) a.nState |= kStateHighActive;
        // An isolated block leaves the map; its flags stay and count for its neighbours.
        if (counts.nHighActBlkCnt == 0 && counts.nActBlkCnt < md.nMD_ActNeighborBlkCntTh) {
            a.nAvail = 0;
            a.nOutcome = tVerdict.nOutcome == kSteady ? kSteadyIsolated : kJumpHeldIsolated;
        }
    }
    if (a.nAvail == kAvailUnflagged) a.nAvail = 1;
    return a;
}

// The proof, rule by rule of ApplyRules, for a distance D up to the limit. The rules on saturated
// distances ask for kEdgeDist at least, and every limit is below it. The rule on highly active
// neighbours asks for D > nBlkDistTh >> 4, and where there is one nHigh is not above that. "Over
// the threshold" asks for D > nBlkDistThNn without active neighbours, for D > nBlkDistTh with some:
// nUnflagged is not above the first, the two others are above neither, so they hold even for a view
// that counts fewer flags. What is left is one repeat less; avail 0 sets no flag.
QuietLimits QuietLimitsOf(const Thresholds& th) {
    const auto Limit = [&](int32_t nBound) {
        return static_cast<uint8_t>(std::min({th.nBlkDistThNn, nBound, kEdgeDist - 1}));
    };
    return {Limit(255), Limit(th.nBlkDistTh), Limit(th.nBlkDistTh >> 4)};
}

// Below kEdgeDist no rule comes before the one on highly active neighbours, and that asks for no
// more. The last test, on isolated blocks, passes them over.
CarriedRange CarriedRangeOf(const Thresholds& th) {
    return {static_cast<uint8_t>((th.nBlkDistTh >> 4) + 1), kEdgeDist - 1};
}
