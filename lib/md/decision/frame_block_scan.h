// Walks the block grid of one frame in raster order: window, feature record, running luma
// difference, decision. With threshold method 0 the decisions run one block row behind, because the
// luma threshold of a row is a mean over all rows up to it.
#pragma once

#include <cstdint>

#include "md/block_feature.h"
#include "md/block_history.h"
#include "md/sim_params.h"

// Luma threshold of the last frame, for threshold method 2 alone.
extern int32_t nYDiffThreCarry;

// Values of nMD_HogDist_AvgYDiffCalc_Method: when the luma threshold is formed.
enum ThresholdMethod : int32_t { kPerRow = 0, kRunning = 1, kFromLastFrame = 2 };

// Blocks along one axis of the frame.
int32_t BlockCount(int32_t nPixels, const MdParams& md);

// Luma threshold over the first nBlocks blocks. The mean comes first and is an integer before the
// scale (sixteenths) applies.
int32_t MeanThreshold(const MdParams& md, int32_t iYDiffSum, int32_t nBlocks);

// The end of a frame's scan: method 0 prints the threshold over all blocks, method 2 keeps it.
void FinishThreshold(const MdParams& md, int32_t nBlkH, int32_t nYDiffThre);

// Scans one frame. `pY`: luma plane, row pitch nWidth. `pGaussWin`: 32 x 32 weights. Per-block
// tables in raster order: `pCurFeat` is written, `pRefFeat` read (both may be one array), maps and
// history records written. Method 0 prints its last threshold once a frame.
void FrameBlockScan_NormalHog(const MdParams* pParams, const uint8_t* pY, int32_t nWidth,
                              int32_t nHeight, const uint8_t* pGaussWin, BlockFeature* pCurFeat,
                              const BlockFeature* pRefFeat, uint8_t* pAvailMap, uint8_t* pDistMap,
                              BlockHistory** ppHistory);

// Decides block (x, y): finds its neighbours' records and calls the decision.
void BlockDecide_NormalHog(const MdParams* pParams, int32_t nWidth, int32_t nHeight, int32_t x,
                           int32_t y, const BlockFeature* pCurFeat, const BlockFeature* pRefFeat,
                           int32_t nYDiffThre, uint8_t* pAvailMap, uint8_t* pDistMap,
                           BlockHistory** ppHistory);
