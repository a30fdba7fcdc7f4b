// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Box method 1, the default: the frame is cut into a fixed grid of regions, each active block
// widens the box of its region, near and well-filled regions merge, and the region with the
// greatest mean distance is reported once its score, smoothed over frames, passes a threshold.
#pragma once

#include <cstdint>

#include "md/md_result.h"

// Tuning of the method; no key reaches it. nScore is its one state between frames.
struct GridTune {
    uint8_t nDetectTh;  // the smoothed score must exceed this
    uint8_t nDistTh;    // distance that a block must exceed to enter a region
    uint8_t nScore;     // smoothed score
    uint8_t nGridCols;
    uint8_t nGridRows;
    uint8_t nMergeGap;   // largest gap in pixels, per axis, at which two regions merge
    uint8_t nMinBlocks;  // block count that a region must exceed to survive
    uint8_t nUnread;
};

static_assert(sizeof(GridTune) == 8);

// One region. Positions are those of the top-left pixels of its blocks. A pair left, right (or top,
// bottom) that is 0, 0 counts as unset: a region at the frame's edge loses position 0 again.
struct GridRegion {
    int32_t left, top, right, bottom;
    int32_t nBlkCnt;   // blocks gathered
    int32_t nHitCnt;   // blocks counted by the score pass
    int32_t nDistSum;  // sum of their distances
    int32_t nAvgDist;  // the region's score, 0 to 255
    int32_t bMerged;   // 1 when another region has absorbed this one
};

// The two records of a run: [0] for a frame of 640 x 360, [1] for every other size.
extern GridTune aGridTune[2];

void PpGridCluster(const MdPpConfig* pConfig, MdResult* pResult);

// Clears the score of both records.
void GridClusterReset();

// Merges region b into region a when their boxes are at most `nGap` pixels apart on both axes.
void GridRegionMerge(GridRegion* pA, GridRegion* pB, int32_t nGap);
