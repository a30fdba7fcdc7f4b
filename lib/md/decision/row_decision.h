// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Decides the blocks of a row: the bytes that BlockHogDistance_NormalHog gives block by block in
// raster order, but sixteen blocks at a time.
//
// Most blocks of most frames are quiet: their distance is not above the limit under which no rule
// does anything but take one repeat off (QuietLimits). Most of the others are carried by a highly
// active neighbour (CarriedRange). Both are settled for a whole group at once. What is left goes
// through the same rules as on the block walk, from left to right. A block that sets a flag changes
// what its right neighbour sees, so that one follows unless it is settled either way.
#pragma once

#include <cstddef>
#include <cstdint>

#include "md/block_history.h"
#include "md/sim_params.h"

constexpr int32_t kGroup = 16;  // blocks settled at once

// One byte a block, with a border of zeros, which is what an absent neighbour counts as: a row
// above and below, kGroup columns before each row and at least one after it.
struct BytePlane {
    uint8_t* pBytes;
    ptrdiff_t nPitch;

    uint8_t* At(int32_t x, int32_t y) { return pBytes + (y + 1) * nPitch + kGroup + x; }
};

// One row of decisions. All pointers are to its block 0. Distances and states are in BytePlanes.
// All is read and written kGroup blocks at a time; what comes after the row's end has distance 0
// and state 0, and keeps them.
struct DecisionRow {
    int32_t nBlkW;
    bool bInner;                           // there are rows above and below
    const uint8_t* apDist[kHistoryDepth];  // distances of this frame, the last, the one before
    const uint8_t* pDistAbove;             // of the row above in this frame
    const uint8_t* pYDiff;                 // |mean luma - the reference's|
    uint8_t* pState;                       // nState of BlockHistory
    ptrdiff_t nStatePitch;
    uint8_t* pAvailMap;
    uint8_t* pDistMap;
};

// All blocks under one luma threshold.
void DecideRow(const MdParams& md, const DecisionRow& row, int32_t nYDiffThre);

// Every block under the threshold of the blocks up to it. `iYDiffSum` is the sum of the differences
// of the nBefore blocks of the rows above.
void DecideRowRunning(const MdParams& md, const DecisionRow& row, int32_t iYDiffSum,
                      int32_t nBefore);
