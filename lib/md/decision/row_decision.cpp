// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/decision/row_decision.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "md/decision/activity_rules.h"
#include "md/decision/distance.h"
#include "md/decision/luma_threshold.h"

namespace {

using Bytes = uint8_t __attribute__((vector_size(kGroup)));

constexpr uint8_t kFlags = kStateActive | kStateHighActive;

Bytes LoadBytes(const uint8_t* p) {
    Bytes v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

void StoreBytes(uint8_t* p, Bytes v) {
    std::memcpy(p, &v, sizeof v);
}

// Bit i of the result is that of lane i, which is 0 or 255.
uint32_t BitsOf(Bytes v) {
    uint64_t n[2];
    std::memcpy(n, &v, sizeof v);
    uint32_t nBits = 0;
    for (int i = 0; i < 2; ++i) {
        if constexpr (std::endian::native == std::endian::big) n[i] = __builtin_bswap64(n[i]);
        // The product's highest byte is the sum of all eight, each with another bit.
        const uint64_t nSum = (n[i] & 0x8040201008040201) * 0x0101010101010101;
        nBits |= static_cast<uint32_t>(nSum >> 56) << 8 * i;
    }
    return nBits;
}

// Lanes (255 or 0) of the blocks whose distance does not count.
Bytes NotAvailable(const MdParams& md, const DecisionRow& row, int32_t x, int32_t nYDiffThre) {
    const uint8_t nNone = IsOwnReference(md) ? 255 : 0;
    Bytes v = Bytes{} + nNone;
    if (md.nMD_HogDistAvailCheck == kAvailCheckLuma) {
        const Bytes nThre = Bytes{} + static_cast<uint8_t>(std::min(nYDiffThre, 255));
        v |= (Bytes)(LoadBytes(row.pYDiff + x) <= nThre);
    }
    return v;
}

// The flags found on the blocks x to x + 15 and around each, with their left neighbours and
// without.
struct GroupFlags {
    Bytes nAll, nButLeft;
};

GroupFlags FlagsAround(const DecisionRow& row, int32_t x) {
    const uint8_t* pState = row.pState + x;
    Bytes v = LoadBytes(pState) | LoadBytes(pState + 1);
    for (const uint8_t* p : {pState - row.nStatePitch, pState + row.nStatePitch}) {
        v |= LoadBytes(p - 1) | LoadBytes(p) | LoadBytes(p + 1);
    }
    return {(v | LoadBytes(pState - 1)) & kFlags, v & kFlags};
}

// Neighbour counts of the blocks x to x + 15, each without its left neighbour: that one is decided
// just before it; the others do not change while the group is decided.
struct GroupCounts {
    Bytes nAct, nActLater, nHighAct;
};

GroupCounts CountGroup(const DecisionRow& row, int32_t x) {
    GroupCounts c{};
    for (int32_t dy = -1; dy <= 1; ++dy) {
        for (int32_t dx = -1; dx <= 1; ++dx) {
            if (dy == 0 && dx == -1) continue;
            const Bytes nState = LoadBytes(row.pState + x + dx + dy * row.nStatePitch);
            const Bytes nActive = (nState / kStateActive) & 1;
            c.nAct += nActive;
            // Later are the row below, the right neighbour and the block itself.
            if (dy >= 0) c.nActLater += nActive;
            c.nHighAct += (nState / kStateHighActive) & 1;
        }
    }
    return c;
}

NeighbourCounts CountsOf(const GroupCounts& c, int32_t i, uint8_t nLeftState) {
    return {
        .nActBlkCnt = c.nAct[i] + ((nLeftState & kStateActive) != 0 ? 1 : 0),
        .nActBlkCntLater = c.nActLater[i],
        .nHighActBlkCnt = c.nHighAct[i] + ((nLeftState & kStateHighActive) != 0 ? 1 : 0),
    };
}

// Decides block x by the rules. `nState` is its state before.
void DecideBlock(const MdParams& md, const DecisionRow& row, const Thresholds& th,
                 const NeighbourCounts& tCounts, int32_t x, uint8_t nState) {
    const uint8_t* pNow = row.apDist[0] + x;
    const uint8_t* pAbove = row.pDistAbove + x;
    const BlockView v{
        .tCounts = tCounts,
        .dUp = pAbove[0],
        .dLeft = pNow[-1],
        .dUpLeft = pAbove[-1],
        .dUpRight = pAbove[1],
        .bAllNeighborsAvail = row.bInner && 0 < x && x < row.nBlkW - 1,
        .d = {*pNow, row.apDist[1][x], row.apDist[2][x]},
        .nState = nState,
    };
    const Activity a = DecideActivity(md, th, v);
    row.pAvailMap[x] = a.nAvail;
    row.pState[x] = static_cast<uint8_t>(a.nState);
}

// What sixteen limits are under the flags around their blocks.
Bytes LimitsUnder(const QuietLimits& t, Bytes nFlags) {
    const Bytes nFlagged =
        (nFlags & kStateHighActive) != 0 ? Bytes{} + t.nHigh : Bytes{} + t.nActive;
    return nFlags != 0 ? nFlagged : Bytes{} + t.nUnflagged;
}

// What a row decides by.
struct RowBounds {
    Thresholds th;
    QuietLimits tQuiet;
    CarriedRange tCarried;
};

// Lanes (255 or 0) of the blocks that a highly active neighbour carries, whatever becomes of their
// left one.
Bytes CarriedLanes(const CarriedRange& t, Bytes nFlagsButLeft, Bytes nDist) {
    return (Bytes)((nFlagsButLeft & kStateHighActive) != 0) & (Bytes)(nDist >= t.nFirst) &
           (Bytes)(nDist <= t.nLast);
}

void DecideGroup(const MdParams& md, const DecisionRow& row, const RowBounds& t, int32_t nYDiffThre,
                 int32_t x) {
    uint8_t* pState = row.pState + x;
    const Bytes nDist = LoadBytes(row.apDist[0] + x);
    const Bytes nState = LoadBytes(pState);
    const Bytes bAvail = ~NotAvailable(md, row, x, nYDiffThre);
    const GroupFlags tFlags = FlagsAround(row, x);
    uint32_t nLoud = BitsOf((Bytes)(nDist > LimitsUnder(t.tQuiet, tFlags.nAll)) & bAvail);
    const Bytes nRepeat = nState & kStateRepeatMask;
    const Bytes nQuietState = nRepeat - ((Bytes)(nRepeat != 0) & bAvail & 1);
    StoreBytes(row.pDistMap + x, nDist & bAvail);
    if (nLoud == 0) {
        StoreBytes(row.pAvailMap + x, Bytes{});
        StoreBytes(pState, nQuietState);
        return;
    }
    // Counts come from the states before this frame, so before these are settled.
    const GroupCounts tCounts = CountGroup(row, x);
    const Bytes bCarried = CarriedLanes(t.tCarried, tFlags.nButLeft, nDist) & bAvail;
    const Bytes bHigh = (Bytes)(nDist >= static_cast<uint8_t>(t.th.nBlkDistThHigh));
    const Bytes nCarriedState = nRepeat | kStateActive | (bHigh & kStateHighActive);
    StoreBytes(row.pAvailMap + x, bCarried & 1);
    StoreBytes(pState, (bCarried & nCarriedState) | (~bCarried & nQuietState));
    // Up to the lowest limit a block is quiet beside any flag.
    const uint32_t nCarried = BitsOf(bCarried);
    const uint32_t nFollows = BitsOf((Bytes)(nDist > t.tQuiet.nHigh) & bAvail) & ~nCarried;
    nLoud = (nLoud | nCarried << 1) & nFollows;
    while (nLoud != 0) {
        const int32_t i = std::countr_zero(nLoud);
        nLoud &= nLoud - 1;
        DecideBlock(md, row, t.th, CountsOf(tCounts, i, pState[i - 1]), x + i, nState[i]);
        if ((pState[i] & kFlags) != 0) nLoud |= (2u << i) & nFollows;
    }
}

// Without correlation a block is active unless its distance does not count.
void DecideGroupAlone(const MdParams& md, const DecisionRow& row, int32_t nYDiffThre, int32_t x) {
    const Bytes bAvail = ~NotAvailable(md, row, x, nYDiffThre);
    StoreBytes(row.pAvailMap + x, bAvail & 1);
    StoreBytes(row.pDistMap + x, LoadBytes(row.apDist[0] + x) & bAvail);
}

}  // namespace

void DecideRow(const MdParams& md, const DecisionRow& row, int32_t nYDiffThre) {
    const Thresholds th = BlockThresholds(md, nYDiffThre);
    const RowBounds t{th, QuietLimitsOf(th), CarriedRangeOf(th)};
    for (int32_t x = 0; x < row.nBlkW; x += kGroup) {
        if (md.nMD_NeighborCorrelation != 0) {
            DecideGroup(md, row, t, nYDiffThre, x);
        } else {
            DecideGroupAlone(md, row, nYDiffThre, x);
        }
    }
}

void DecideRowRunning(const MdParams& md, const DecisionRow& row, int32_t iYDiffSum,
                      int32_t nBefore) {
    for (int32_t x = 0; x < row.nBlkW; ++x) {
        iYDiffSum += row.pYDiff[x];
        const int32_t nYDiffThre = MeanThreshold(md, iYDiffSum, nBefore + x + 1);
        uint8_t* pState = row.pState + x;
        const bool bAvail = !IsOwnReference(md) && !IsLumaStill(md, row.pYDiff[x], nYDiffThre);
        row.pAvailMap[x] = bAvail ? 1 : 0;
        row.pDistMap[x] = bAvail ? row.apDist[0][x] : uint8_t{0};
        if (md.nMD_NeighborCorrelation == 0) continue;
        if (bAvail) {
            const NeighbourCounts tCounts = CountsOf(CountGroup(row, x), 0, pState[-1]);
            DecideBlock(md, row, BlockThresholds(md, nYDiffThre), tCounts, x, *pState);
        } else {
            *pState &= kStateRepeatMask;
        }
    }
}
