// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The luma threshold: the mean change of the blocks' luma, which shows how much the whole frame
// changes. The thresholds of distances rise with it. Both walks call these functions.
#pragma once

#include <cstdint>

#include "md/sim_params.h"

// Values of nMD_HogDist_AvgYDiffCalc_Method: which blocks the threshold of a block is a mean of.
enum ThresholdMethod : int32_t {
    kPerRow = 0,         // those of all rows up to its own
    kRunning = 1,        // those up to itself in raster order
    kFromLastFrame = 2,  // those of the frame before
};

// The threshold that the last frame left, for kFromLastFrame only; 0 to 8144.
extern int32_t nYDiffThreCarry;

// The threshold, 0 to 8144, from the sum of |mean luma - the reference's| over nBlocks blocks. The
// mean comes first and is an integer before the scale (sixteenths) applies.
int32_t MeanThreshold(const MdParams& md, int32_t iYDiffSum, int32_t nBlocks);

// The end of a frame's scan, with the threshold over all its blocks: kPerRow prints it,
// kFromLastFrame keeps it for the next frame.
void FinishThreshold(const MdParams& md, int32_t nBlkH, int32_t nYDiffThre);
