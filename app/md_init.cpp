#include "app/md_init.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "app/frame_scan.h"
#include "md/block_grid.h"
#include "md/feature/gaussian_window.h"
#include "md/object/post_proc.h"
#include "md/object/projection_box.h"
#include "md/output/dumps.h"
#include "md/print.h"
#include "md/run_state.h"

namespace {

constexpr int32_t kGeometryStep = 8;  // cell size and stride are multiples of this
constexpr int32_t kBlockSize = 16;    // the one block size of this chip
constexpr int32_t kGaussPeak = 64;    // weight that stands for 1.0
constexpr int32_t kMaxTapSum = 8;     // of a filter's positive or negated negative taps

void RefuseUnalignedGeometry() {
    const MdParams& md = tSimParams.tMd;
    const auto Refuse = [](const char* szKey, int32_t nValue) {
        if (nValue % kGeometryStep != 0) {
            EndRun(stdout, kExitRefused, "NormalHogParam error: %s(%d) should be multiple of %d\n",
                   szKey, nValue, kGeometryStep);
        }
    };
    Refuse("MD_HogCellSize", md.nMD_HogCellSize);
    Refuse("MD_HogBlockStride", md.nMD_HogBlockStride);
}

// MD_KERNELS=plain in the environment forces every plain definition, MD_TEXT=plain that of the text
// output alone.
bool PlainTextForced() {
    const auto IsPlain = [](const char* szValue) {
        return szValue != nullptr && std::strcmp(szValue, "plain") == 0;
    };
    return IsPlain(std::getenv("MD_KERNELS")) || IsPlain(std::getenv("MD_TEXT"));
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
    if (md.nMD_PostProcMethod == 2 && nBlocks > kProjectionMaxBlocks) {
        EndRun(stdout, kExitRefused,
               "ERROR: MD_PostProcMethod 2 is limited to %d blocks, the working frame has %d\n",
               kProjectionMaxBlocks, nBlocks);
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

template <typename T>
void Allocate(T** ppMemory, size_t nBytes, const char* szWhat) {
    *ppMemory = static_cast<T*>(std::malloc(nBytes));
    RequireMemory(*ppMemory != nullptr, szWhat);
}

void AllocateFrames() {
    const size_t nPixels = static_cast<size_t>(nMdWidth) * static_cast<size_t>(nMdHeight);
    const size_t nFrame = (nPixels * 3) / 2;
    FrameBuffers& fb = tFrameBuffers;
    Allocate(&fb.pCurYuv, nFrame, "the current frame");
    for (uint8_t*& pFrame : fb.ppPrevYBuffer) Allocate(&pFrame, nFrame, "the frame pool");
    // Of an odd size the planes do not cover their frame, so the canvases start as zeros to be the
    // same on every run, and comp's is as long as one frame of that width.
    if ((tSimParams.tMd.nDbgEn & kDbgComp) != 0) {
        fb.pCompYuv = static_cast<uint8_t*>(std::calloc((nPixels * 9) / 2, 1));
        RequireMemory(fb.pCompYuv != nullptr, "the comp canvas");
    }
    if ((tSimParams.tMd.nDbgEn & kDbgHogDist) != 0) {
        fb.pHogDistYuv = static_cast<uint8_t*>(std::calloc(nFrame, 1));
        RequireMemory(fb.pHogDistYuv != nullptr, "the hogDist canvas");
    }
}

}  // namespace

int32_t MdInit() {
    const MdParams& md = tSimParams.tMd;
    tFrameBuffers = FrameBuffers{};
    tMdResult = MdResult{};
    RefuseUnalignedGeometry();
    RefuseUnsupportedRun();
    tMdResult.nBlkW = BlockCount(nMdWidth, md);
    tMdResult.nBlkH = BlockCount(nMdHeight, md);
    const double dSigma = 0.1875 * static_cast<double>(md.nMD_HogBlockSize);
    GaussianWindowInit(dSigma, md.nMD_HogBlockSize, kGaussPeak, &tMdResult.aGaussWin[0][0]);
    RefuseHeavyFilters();
    AllocateFrames();
    FrameScanInit();
    bTextPlain = PlainTextForced();
    DumpsOpen();
    return MdFillPpConfig();
}

int32_t MdFillPpConfig() {
    const MdParams& md = tSimParams.tMd;
    tMdPpConfig = {
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
