// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The records that the stages of a frame share: the boxes found, the block maps, and the
// snapshot of settings that object extraction reads.
#pragma once

#include <cstdint>

#include "md/block_feature.h"
#include "md/block_history.h"
#include "md/box_reason.h"
#include "md/sim_params.h"

constexpr int kPoolSlots = 15;   // slots of the feature pool and of the frame pool
constexpr int kMaxObjects = 4;   // slots of tObjects; the methods of this chip fill one
constexpr int kGaussPitch = 32;  // row pitch of the Gaussian window, for every block size

// One reported object, in pixels of the working frame. The box is inside the frame, except that
// right and bottom of method 2 may be the frame's width and height.
struct MdObject {
    uint8_t bValid;  // 1 when a method filled this slot
    uint16_t left;   // edges
    uint16_t right;
    uint16_t top;
    uint16_t bottom;
    int32_t xCenter;  // centre and half size; methods 1 and 2 leave these four at 0
    int32_t xDim;
    int32_t yCenter;
    int32_t yDim;
};

// Results of the current frame and the block buffers of the run. All per-block tables run in
// raster order, index = row * nBlkW + column.
struct MdResult {
    int32_t nBlkW;                                // block columns, at least 1
    int32_t nBlkH;                                // block rows, at least 1
    uint8_t aGaussWin[kGaussPitch][kGaussPitch];  // weights 0 to 64; 64 means 1.0
    // Feature records of the last frames. Null unless a dump or box method that is on asks for
    // records (its row in the table says so) or the block walk runs. Read them by CurrentRecords
    // and SlotRecords below.
    BlockFeature* pFeaturePool[kPoolSlots];
    BlockFeature* pCurFeat;    // the current frame's slot of the pool; owns nothing
    uint8_t* pDistMap;         // hogDist map, 0 to 255 a block
    uint8_t* pAvailMap;        // avail map, 0 or 1 a block after the scan
    uint8_t* pAvailBits;       // avail bitmap: block i is bit i & 7 of byte i >> 3
    BlockHistory** ppHistory;  // one record a block; null unless the block walk runs
    int32_t bMotionDetected;   // 1 when the frame reports motion
    int32_t nStride;           // nMD_HogBlockStride
    MdObject tObjects[kMaxObjects];
    uint8_t nObjNum;         // 0 or 1
    MdObject tMethodObject;  // tObjects[0] before the gate; bValid 0 when nObjNum was 0
    BoxReason tBoxReason;    // by BoxReasonCode
    BoxReason tGateReason;   // by GateReasonCode
};

// The feature records of the current frame, and those of a slot of the pool. A reader whose row in
// its table does not ask for them ends the process here, with a message for its developer.
const BlockFeature* CurrentRecords(const MdResult& res);
const BlockFeature* SlotRecords(const MdResult& res, int32_t nSlot);

// Geometry and thresholds for object extraction, filled once at start and never refreshed.
struct MdPpConfig {
    int32_t nWidth;  // working frame, pixels
    int32_t nHeight;
    int32_t nBlkSize;         // 16 on this chip; no method reads it
    int32_t nStride;          // 8 to 64, a multiple of 8
    int32_t nRefBufIdx;       // RefBufIdx at the moment of the snapshot: 0
    int32_t nPostProcMethod;  // PostProcMethod
    int32_t nHogDistTh;       // 0 to 255
    int32_t bBboxPpEnable;    // 0 or 1
    int32_t nBlkCntTh;        // at least 1
    int32_t nBboxPpWindow;    // frames, 0 to 10; at least 1 when the gate is enabled
    double dAreaConvergeThresh;
    double dAspectConvergeThresh;
};

// The snapshot of these settings.
inline MdPpConfig PpConfigOf(const MdParams& md) {
    return {
        .nWidth = md.nMD_ScaledW,
        .nHeight = md.nMD_ScaledH,
        .nBlkSize = md.nMD_HogBlockSize,
        .nStride = md.nMD_HogBlockStride,
        .nRefBufIdx = md.RefBufIdx,
        .nPostProcMethod = md.nMD_PostProcMethod,
        .nHogDistTh = md.nMD_HogDist_Th,
        .bBboxPpEnable = md.nMD_Bbox_PP_Enable,
        .nBlkCntTh = md.nMD_BlkCnt_Th,
        .nBboxPpWindow = md.nMD_Bbox_PP_Window,
        .dAreaConvergeThresh = md.dMD_PP_Area_Converge_Thresh,
        .dAspectConvergeThresh = md.dMD_PP_Aspect_Converge_Thresh,
    };
}
