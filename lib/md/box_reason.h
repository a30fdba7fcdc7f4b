// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Why a frame has a box or none, and why the gate holds it: what the deciding code knew, for those
// who ask. Nothing of a run reads it.
#pragma once

#include <cstdint>

// What a box method found. The values of each code are listed after it, in the order of aValue.
enum BoxReasonCode : int32_t {
    kBoxNone = 0,  // no method ran
    // Method 0.
    kCentroidMotion = 10,   // blocks counted
    kCentroidTooFew = 11,   // blocks counted
    kCentroidOneLine = 12,  // blocks counted, all in one row or column
    // Method 1.
    kGridMotion = 20,    // mean distance of the best group, smoothed score, its limit
    kGridLowScore = 21,  // the same
    kGridNoGroup = 22,   // 0, smoothed score, its limit, blocks that a group must exceed
    kGridOneLine = 23,   // mean distance, smoothed score, its limit
    // Method 2.
    kProjectionMotion = 30,     // frames a box has lasted, frames needed, area sum, the one before
    kProjectionNoBlock = 31,    // no block was confirmed
    kProjectionNoMeeting = 32,  // blocks listed, none where fullest column and row meet
    kProjectionTooNew = 33,     // frames a box has lasted, frames needed
    kProjectionGrew = 34,       // the same two, area sum, the one before
    kProjectionTooSmall = 35,   // the same two, area sum, area sum needed
    // Method 3.
    kBisectionMotion = 40,
    kBisectionThin = 41,   // axis (1 across, 0 down), dimension, dimension needed
    kBisectionLight = 42,  // axis, sum of distances (its low 16 bits), dimension, sum needed
};

// What the gate did with the box.
enum GateReasonCode : int32_t {
    kGateOff = 0,
    kGateClosed = 1,       // no box to hold
    kGateHoldsNew = 2,     // frames in a row with a box, the window
    kGateHoldsSmall = 3,   // area sum, area sum needed
    kGateHoldsArea = 4,    // area sum before, area sum now
    kGateHoldsAspect = 5,  // aspect sum before, aspect sum now
    kGateOpens = 6,
    kGateOpen = 7,
    kGateCloses = 8,
};

struct BoxReason {
    int32_t nCode;
    int32_t aValue[4];  // those of the code, else 0
};
