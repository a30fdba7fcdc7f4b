// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The row walk: what the block walk (block_walk.h) computes, a block row at a time. Runs use it by
// default; the block walk is its definition.
//
// Distances need only two rows of feature records, and a row's luma threshold only the rows up to
// it. So records and distances of a whole row come first, by three row kernels (row_kernels.h), and
// its decisions follow in raster order (row_decision.h).
#pragma once

#include <cstdint>

#include "md/decision/row_kernels.h"
#include "md/md_result.h"
#include "md/sim_params.h"

struct RowWalk;

// Allocates what a run needs; without memory the run ends with status 1. `pGaussWin`: 32 x 32
// weights.
RowWalk* RowWalkCreate(const RowKernels& tKernels, const MdParams* pParams, int32_t nWidth,
                       int32_t nHeight, const uint8_t* pGaussWin);
void RowWalkRelease(RowWalk* pWalk);  // null is passed over

// Bytes that the maps need beyond their blocks: rows are written sixteen blocks at a time.
constexpr int32_t kMapSlack = 16;

// Scans one frame; see FrameBlockScan_NormalHog. Slots number the feature ring, 0 to 14; they may
// be one slot. `pY` is readable for kLumaSlack bytes after its end, as a frame with its chroma is.
// With kPerRow prints its line; reads and writes nYDiffThreCarry. It prints no detail
// lines: a run that wants them takes the block walk.
void RowWalkFrame(RowWalk* pWalk, const MdParams* pParams, const uint8_t* pY, int32_t nCurSlot,
                  int32_t nRefSlot, uint8_t* pAvailMap, uint8_t* pDistMap);

// Writes the 200-byte records of a slot, which dumps and box method 2 read.
void RowWalkExpand(const RowWalk* pWalk, int32_t nSlot, BlockFeature* pFeatures);
