// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "app/md_init.h"

#include <algorithm>
#include <cstdlib>

#include "app/frame_scan.h"
#include "md/block_grid.h"
#include "md/feature/gaussian_window.h"
#include "md/memory.h"
#include "md/object/box_methods.h"
#include "md/object/post_proc.h"
#include "md/output/dumps.h"
#include "md/print.h"
#include "md/run_state.h"

namespace {

constexpr int32_t kGeometryStep = 8;  // cell size and stride are multiples of this
constexpr int32_t kBlockSize = 16;    // the one block size of this chip
constexpr int32_t kGaussPeak = 64;    // weight that means 1.0
constexpr int32_t kMaxTapSum = 8;     // of a filter's positive or negated negative taps

void RefuseUnaligned(const char* szKey, int32_t nValue) {
    if (nValue % kGeometryStep == 0) return;
    EndRun(stdout, kExitRefused, "NormalHogParam error: %s(%d) should be multiple of %d\n", szKey,
           nValue, kGeometryStep);
}

// The canvas of three panels must fit a signed 32-bit size; then every other size of a run does.
bool CanvasFits() {
    const int64_t nFrame = (int64_t{nMdWidth} * nMdHeight * 3) / 2;
    return 3 * nFrame <= INT32_MAX;
}

void RefuseUnsupportedRun() {
    const MdParams& md = tSimParams.tMd;
    if (md.nMD_HogBlockSize != kBlockSize) {
        EndRun(stdout, kExitRefused, "ERROR: MD_HogBlockSize(%d) should be %d on this chip\n",
               md.nMD_HogBlockSize, kBlockSize);
    }
    if (nMdWidth < kBlockSize || nMdHeight < kBlockSize) {
        EndRun(stdout, kExitRefused,
               "ERROR: working frame %dx%d is smaller than one block of %dx%d\n", nMdWidth,
               nMdHeight, kBlockSize, kBlockSize);
    }
    if (!CanvasFits()) {
        EndRun(stdout, kExitRefused,
               "ERROR: working frame %dx%d is too large: three of them should fit %d bytes\n",
               nMdWidth, nMdHeight, INT32_MAX);
    }
    const int32_t nBlocks = BlockCount(nMdWidth, md) * BlockCount(nMdHeight, md);
    const int32_t nMaxBlocks = BoxMethodOf(md.nMD_PostProcMethod).nMaxBlocks;
    if (nBlocks > nMaxBlocks) {
        EndRun(stdout, kExitRefused,
               "ERROR: MD_PostProcMethod %d is limited to %d blocks, the working frame has %d\n",
               md.nMD_PostProcMethod, nMaxBlocks, nBlocks);
    }
    if (md.nMD_Bbox_PP_Enable != 0 && md.nMD_Bbox_PP_Window == 0) {
        EndRun(stdout, kExitRefused,
               "ERROR: MD_Bbox_PP_Window(0) should be at least 1 with MD_Bbox_PP_Enable\n");
    }
}

// Both sides of each filter by themselves: 255 * 8 keeps a gradient within 11 bits.
void RefuseHeavyFilters() {
    for (const int32_t* pTaps : {tSimParams.tMd.nMD_HogGradX, tSimParams.tMd.nMD_HogGradY}) {
        int64_t nPositive = 0;
        int64_t nNegative = 0;
        for (int32_t k = 0; k < kGradientTaps; ++k) {
            nPositive += std::max(pTaps[k], 0);
            nNegative -= std::min(pTaps[k], 0);
        }
        if (nPositive > kMaxTapSum || nNegative > kMaxTapSum) {
            EndRun(stdout, kExitRefused,
                   "Parameter error: To ensure 11 bit is enough for ABS(xGrad) and ABS(yGrad), sum "
                   "of positive/negative numbers in MD_HogGradX/MD_HogGradY should be no more than "
                   "2^3.\n");
        }
    }
}

void AllocateFrames() {
    const size_t nPixels = static_cast<size_t>(nMdWidth) * static_cast<size_t>(nMdHeight);
    const size_t nFrame = (nPixels * 3) / 2;
    FrameBuffers& fb = tFrameBuffers;
    fb.pCurYuv = Allocate<uint8_t>(nFrame, "the current frame");
    for (uint8_t*& pFrame : fb.ppPrevYBuffer) pFrame = Allocate<uint8_t>(nFrame, "the frame pool");
    // At odd sizes the planes do not fill the buffer: it starts as zeros so that those bytes do not
    // vary. The canvas of comp is as long as one frame of three times the width.
    if ((tSimParams.tMd.nDbgEn & kDbgComp) != 0) {
        fb.pCompYuv = AllocateZeroed<uint8_t>((nPixels * 9) / 2, "the comp canvas");
    }
    if ((tSimParams.tMd.nDbgEn & kDbgHogDist) != 0) {
        fb.pHogDistYuv = AllocateZeroed<uint8_t>(nFrame, "the hogDist canvas");
    }
}

}  // namespace

int32_t MdInit() {
    const MdParams& md = tSimParams.tMd;
    tFrameBuffers = FrameBuffers{};
    tMdResult = MdResult{};
    RefuseUnaligned("MD_HogCellSize", md.nMD_HogCellSize);
    RefuseUnaligned("MD_HogBlockStride", md.nMD_HogBlockStride);
    RefuseUnsupportedRun();
    tMdResult.nBlkW = BlockCount(nMdWidth, md);
    tMdResult.nBlkH = BlockCount(nMdHeight, md);
    const double dSigma = 0.1875 * static_cast<double>(md.nMD_HogBlockSize);
    GaussianWindowInit(dSigma, md.nMD_HogBlockSize, kGaussPeak, &tMdResult.aGaussWin[0][0]);
    RefuseHeavyFilters();
    AllocateFrames();
    FrameScanInit();
    DumpsOpen();
    return MdFillPpConfig();
}

int32_t MdFillPpConfig() {
    const MdParams& md = tSimParams.tMd;
    tMdPpConfig = PpConfigOf(md);
    tMdResult.nStride = md.nMD_HogBlockStride;
    MdClearObjects(&tMdResult);
    return 1;
}

int32_t MdDeinit() {
    FrameScanRelease();
    tMdResult = MdResult{};
    std::free(tFrameBuffers.pCurYuv);
    std::free(tFrameBuffers.pCompYuv);
    std::free(tFrameBuffers.pHogDistYuv);
    for (uint8_t* pFrame : tFrameBuffers.ppPrevYBuffer) std::free(pFrame);
    tFrameBuffers = FrameBuffers{};
    DumpsClose();
    tOutputFiles = OutputFiles{};
    return 1;
}
