// The fast walk over a frame's blocks: the bytes of FrameBlockScan_NormalHog, a block row at a
// time.
//
// Distances need only two feature records, and a row's luma threshold only the rows up to it, so
// features and distances of a whole row come first and its decisions follow in raster order. Most
// blocks of most frames are quiet: no distance over the threshold, no flag on the block or around
// it. Sixteen of those are settled at once; every other block goes through the same rules as on the
// plain path. History lives in byte planes with a border of zeros, which is what an absent
// neighbour counts as.
#pragma once

#include <cstdint>

#include "md/feature/kernel_path.h"
#include "md/md_result.h"
#include "md/sim_params.h"

struct FastScan;

// Allocates what a run needs; null when there is no memory. `pGaussWin`: 32 x 32 weights.
FastScan* FastScanCreate(const KernelPath& tKernels, const MdParams* pParams, int32_t nWidth,
                         int32_t nHeight, const uint8_t* pGaussWin);
void FastScanRelease(FastScan* pScan);  // null is passed over

// Bytes that the maps need beyond their blocks: rows are written sixteen blocks at a time.
constexpr int32_t kMapSlack = 16;

// Scans one frame; see FrameBlockScan_NormalHog. Slots number the feature ring, 0 to 14; they may
// be one slot. `pY` is readable for kLumaSlack bytes behind its end, as a frame with its chroma is.
// Prints the method 0 line; reads and writes nYDiffThreCarry. Detail lines are the plain walk's
// alone.
void FrameBlockScan_Fast(FastScan* pScan, const MdParams* pParams, const uint8_t* pY,
                         int32_t nCurSlot, int32_t nRefSlot, uint8_t* pAvailMap, uint8_t* pDistMap);

// Writes the 200-byte records of a slot, which dumps and box method 2 read.
void FastScanExpand(const FastScan* pScan, int32_t nSlot, BlockFeature* pFeatures);
