// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Temporal gate after the box methods. It suppresses boxes until area and aspect have settled over
// a window of frames. Then it opens, widens that one box, and passes the following ones unchanged
// until motion stops.
#pragma once

#include <cstdint>

#include "md/md_result.h"

constexpr int32_t kGateMaxWindow = 10;  // frames

struct GateState {
    int32_t aBboxArea[kGateMaxWindow];    // square pixels; the first nBboxPpWindow are in use
    int32_t aBboxAspect[kGateMaxWindow];  // height * 100 / width
    int32_t nBboxAreaSum;
    int32_t nBboxAspectSum;
    int32_t nBboxRun;    // frames in a row with an object while the gate waits
    int32_t nBboxFrame;  // calls so far
    int32_t bBboxLatch;  // 1 while the gate is open
};
extern GateState tGateState;

// Needs a window of at least 1. A suppressed frame keeps bMotionDetected and bValid, with nObjNum 0
// and a zero box.
void PpBboxGate(const MdPpConfig* pConfig, MdResult* pResult);

// Clears tGateState.
void BboxGateReset();
