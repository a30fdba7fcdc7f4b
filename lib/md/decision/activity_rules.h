// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The temporal and spatial rules of a block's decision. They know nothing of where distances and
// states are kept; every scan gathers what they read and calls them.
#pragma once

#include <cstdint>

#include "md/decision/activity_outcome.h"
#include "md/sim_params.h"

struct Thresholds {
    int32_t nBlkDistTh;      // 0 to 255, as all three
    int32_t nBlkDistThNn;    // for a block with no active neighbour
    int32_t nBlkDistThHigh;  // from here on a block is highly active
};

// The thresholds under the luma threshold nYDiffThre, 0 to 8144: they rise with the frame's change.
Thresholds BlockThresholds(const MdParams& md, int32_t nYDiffThre);

struct NeighbourCounts {
    int32_t nActBlkCnt;       // bActive among all nine
    int32_t nActBlkCntLater;  // bActive among those not yet decided in this frame, the centre too
    int32_t nHighActBlkCnt;   // bHighActive among all nine
};

// A block and its surroundings. Neighbours outside the grid count as 0 in everything.
struct BlockView {
    NeighbourCounts tCounts;
    int32_t dUp, dLeft, dUpLeft, dUpRight;  // distances of this frame
    bool bAllNeighborsAvail;                // the block is not on the grid's border
    uint8_t d[3];     // the block's distances: this frame, the one before, the one before that
    uint32_t nState;  // its state word
};

struct Activity {
    uint8_t nAvail;  // 0 or 1
    ActivityOutcome nOutcome;
    uint32_t nState;  // the new state word
};

Activity DecideActivity(const MdParams& md, const Thresholds& th, const BlockView& v);

// Distances up to which DecideActivity ends with avail 0, no flags and one repeat less (a counter
// of 0 stays), whatever else the view holds. They depend on the flags of the block and its eight
// neighbours.
struct QuietLimits {
    uint8_t nUnflagged;  // no flag among the nine
    uint8_t nActive;     // some flag
    uint8_t nHigh;       // some kStateHighActive
};
QuietLimits QuietLimitsOf(const Thresholds& th);

// Distances, both ends included, with which DecideActivity ends with avail 1, the active flag, from
// nBlkDistThHigh on the other flag too, and the counter as it was, if any of the nine blocks has
// kStateHighActive; whatever else the view holds.
struct CarriedRange {
    uint8_t nFirst, nLast;
};
CarriedRange CarriedRangeOf(const Thresholds& th);
