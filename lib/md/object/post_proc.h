// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// One frame of object extraction: packs the avail map, runs the selected box method, logs the
// outcome, and calls the temporal gate when it is enabled.
#pragma once

#include "md/md_result.h"

// Packs pAvailMap into pAvailBits, eight blocks a byte, bit 0 first; spare bits are 0.
void MdPackAvailBits();

// Fills bMotionDetected, nObjNum, tObjects and the reasons from the maps. Prints two lines every
// frame: the result before the gate and the box after it.
void MdPostProc(const MdPpConfig* pConfig, MdResult* pResult);

// Zeroes bMotionDetected, nObjNum, all object slots and the reasons.
void MdClearObjects(MdResult* pResult);
