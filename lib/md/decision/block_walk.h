// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The block walk: the grid of one frame block by block in raster order; window, feature record,
// running luma difference, decision. It is the definition of what a frame's scan computes, and
// nothing in it is written for speed: row_walk.h does that.
//
// With kPerRow the decisions run one block row after the features, because the luma
// threshold of a row is a mean over all rows up to it.
#pragma once

#include <cstdint>

#include "md/block_feature.h"
#include "md/block_history.h"
#include "md/sim_params.h"

// Scans one frame. `pY`: luma plane, row pitch nWidth. `pGaussWin`: 32 x 32 weights. Per-block
// tables in raster order: `pCurFeat` is written, `pRefFeat` read (both may be one array), maps and
// history records written. kPerRow prints its last threshold once a frame.
void FrameBlockScan_NormalHog(const MdParams* pParams, const uint8_t* pY, int32_t nWidth,
                              int32_t nHeight, const uint8_t* pGaussWin, BlockFeature* pCurFeat,
                              const BlockFeature* pRefFeat, uint8_t* pAvailMap, uint8_t* pDistMap,
                              BlockHistory** ppHistory);

// Decides block (x, y): finds its neighbours' records and calls the decision.
void BlockDecide_NormalHog(const MdParams* pParams, int32_t nWidth, int32_t nHeight, int32_t x,
                           int32_t y, const BlockFeature* pCurFeat, const BlockFeature* pRefFeat,
                           int32_t nYDiffThre, uint8_t* pAvailMap, uint8_t* pDistMap,
                           BlockHistory** ppHistory);
