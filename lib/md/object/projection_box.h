// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Box method 2: a refinement pass keeps the available blocks that their neighbours and their last
// three distances confirm; the kept ones are projected on 16 columns and 9 rows of the frame,
// and the filled bins around each peak select the blocks of one box. It is reported once it has
// lasted four frames without growing too fast.
#pragma once

#include <cstdint>

#include "md/md_result.h"

// Blocks of the largest grid this method has tables for: 79 x 44, a 640 x 360 frame at stride 8.
// A run that selects the method with more is refused at start.
constexpr int32_t kProjectionMaxBlocks = 3476;

constexpr uint8_t kRefineCntMask = 15;  // bits 0-3, nRefineCnt: saturates at 15, stops at 0
constexpr uint8_t kRefineActive = 16;   // bit 4, bRefineActive: confirmed in its last pass

// The case that decided about a block in the refinement. Listed blocks form the box.
enum RefineCase : uint8_t {
    kRefineNone = 0,            // not available, or distance 0
    kRefineSaturatedPatch = 1,  // listed: saturated like those above and left of it
    kRefineSaturatedEdge = 2,   // listed: the upper edge of a saturated change
    kRefineSaturated = 3,       // confirmed: saturated, nothing above, no edge at the left
    kRefineStrongEdge = 4,      // listed: the upper edge of a strong change
    kRefineStrong = 5,          // confirmed: strong, but no edge
    kRefineTooNew = 6,          // dropped: over the threshold for fewer than three frames
    kRefineSteady = 7,          // confirmed: its last three distances are alike
    kRefineJumpHeld = 8,        // confirmed: they are not, but four confirmed blocks hold it
    kRefineJumps = 9,           // dropped: they are not
    kRefineBelow = 10,          // dropped: not over the threshold
};
constexpr uint8_t kRefineLonely = 16;  // added: confirmed, but too few around to be listed

// What the method remembers for the run.
struct ProjectionState {
    int32_t nPpFrame;                            // calls so far
    uint8_t aDistRing[3][kProjectionMaxBlocks];  // row nPpFrame % 3 is this frame's
    uint8_t aBlkState[kProjectionMaxBlocks];
    uint8_t aBlkCase[kProjectionMaxBlocks];  // RefineCase of this frame, for those who ask why
    int32_t aAreaRing[3];                    // square pixels
    int32_t nAreaSum;
    int32_t nStableRun;  // frames in a row with a valid box
};
extern ProjectionState tProjectionState;

// Handed to the steps of one frame.
struct BlkCorParams {
    const BlockFeature* pCurFeat;
    const BlockFeature* pRefFeat;  // pool slot 0, not the reference of the scan
    const uint8_t* pDistMap;
    const uint8_t* pAvailBits;
    int32_t nBlkW, nBlkH;
    int32_t nWidth, nHeight, nStride;
};

struct ActiveBlk {
    uint8_t nColumn;
    uint8_t nRow;
    uint8_t nDist;
};

// Reads the feature records of the current frame and of pool slot nRefBufIdx.
void PpProjectionBox(const MdPpConfig* pConfig, MdResult* pResult);

// Clears tProjectionState.
void ProjectionBoxReset();

// Fills the list (room for every block) and its count.
void BlkRefine(const BlkCorParams* pParams, ActiveBlk* pList, int32_t* pActiveBlkNum);

// Fills tObjects[0] and nObjNum from the list, or zeroes them.
void BoxProject(const BlkCorParams* pParams, const ActiveBlk* pList, int32_t nActiveBlkNum,
                MdResult* pResult);

// 1 when the box of frame `nPpFrame` is confirmed, which may widen it; else 0.
int32_t BoxTemporalGrow(int32_t nBlkW, int32_t nBlkH, int32_t nPpFrame, MdResult* pResult);
