// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The feature record of a block: moments of gradient (MoG), gradient magnitudes summed with their
// position as weight. It shows where the block's edges are.
#pragma once

#include <cstdint>

#include "md/block_feature.h"
#include "md/sim_params.h"

// Fills the record from a block window (block_fetch.h) and the Gaussian window (32 x 32 weights, 64
// is 1.0; not read with weighting off). Defined for a block size of 16. Writes bytes 0 to 19, 196,
// 197 and 198.
//
// Taps: the sum of the positive and that of the negated negative ones is at most 8 in each filter,
// so |gradient| <= 255 * 8 = 2040 fits 16 bits, a magnitude is at most 3060, and the largest sum, a
// block moment with weighting off, at most 3060 * 16 * 120 = 5,875,200 fits 32.
void BlockFeature_NormalHog(const MdParams* pParams, const uint8_t* pBlkBuf,
                            const uint8_t* pGaussWin, BlockFeature* pFeature);

// What the steps after the pixel sums read of the settings.
struct RecordSetup {
    bool bMoments;          // metric on; else the vector stays 0
    bool bNormalise;        // bring the vector to a length of about 256
    int32_t nShiftMetric;   // right shift of the cell moments, 0 to 15; the block's shift 2 more
    int32_t nShiftHistMag;  // 0 to 7; the vector's length is shifted right by this less 3
};
RecordSetup RecordSetupOf(const MdParams& md);

struct MogSums {
    int32_t nSumY;                         // luma of the block's 256 pixels
    int32_t nBlkMomX, nBlkMomY;            // 0 to 5,875,200
    int32_t mag_x_cell[4], mag_y_cell[4];  // 0 to 685,440
};

// What follows the pixel sums: shifts, saturation, normalisation. Shared by both walks.
void BlockFeatureRecord(const RecordSetup& t, const MogSums& tSums, BlockFeature* pFeature);
