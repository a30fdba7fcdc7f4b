// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What decided about a block.
#pragma once

#include <cstdint>

// "Active" is what the avail map shows. The first three are found before the rules are asked, the
// rules give the others. MD shows none of them; they are for those who ask why.
enum ActivityOutcome : uint8_t {
    kNoReference = 0,        // not active: the frame is its own reference
    kLumaUnchanged = 1,      // not active: the mean luma has moved too little
    kAllCount = 2,           // active: neighbours and past are switched off
    kNoChange = 3,           // not active: distance 0
    kBelow = 4,              // not active: not over the threshold with active neighbours
    kBelowAlone = 5,         // not active: not over the threshold without any
    kSaturatedPatch = 6,     // active: all of it changed
    kSaturatedEdge = 7,      // active: the upper edge of a saturated change
    kStrongEdge = 8,         // active: the upper edge of a strong change
    kCarried = 9,            // active: beside a highly active block
    kLowDelayFirst = 10,     // active in its first frame over the threshold
    kTooNewFirst = 11,       // not active: the low-delay branch does not take that frame
    kLowDelaySecond = 12,    // active in its second frame
    kTooNewSecond = 13,      // not active: nor that one
    kTooNew = 14,            // not active: the repeat counter is under its threshold
    kSteady = 15,            // active: seen long enough, and its distances are alike
    kSteadyIsolated = 16,    // not active: the same, but isolated; keeps its flag
    kJumpHeld = 17,          // active: its distances jump, but four active blocks hold it
    kJumpHeldIsolated = 18,  // not active: the same, but isolated; keeps its flag
    kJumps = 19,             // not active: its distances jump
};
constexpr int kOutcomeCount = 20;

// What the avail map shows of a block with that outcome.
constexpr bool IsActive(ActivityOutcome nOutcome) {
    constexpr uint32_t kActive = 1u << kAllCount | 1u << kSaturatedPatch | 1u << kSaturatedEdge |
                                 1u << kStrongEdge | 1u << kCarried | 1u << kLowDelayFirst |
                                 1u << kLowDelaySecond | 1u << kSteady | 1u << kJumpHeld;
    return (kActive >> nOutcome & 1) != 0;
}
