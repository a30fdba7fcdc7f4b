#include "md/output/videos.h"

#include <algorithm>

#include "md/compose_path.h"
#include "md/output/object_report.h"
#include "md/platform/platform.h"
#include "md/platform/run_tool.h"
#include "md/print.h"
#include "md/run_state.h"
#include "yuv/yuv_copy.h"
#include "yuv/yuv_draw.h"

namespace {

constexpr RgbColour rgbHog1 = {255, 255, 255};   // box on comp and hogDist
constexpr RgbColour rgbOrig0 = {128, 128, 255};  // centre dot on motionArea
constexpr RgbColour rgbOrig1 = {0, 255, 0};      // box on motionArea

bool VideoOn(DebugBit nBit) {
    return (tSimParams.tMd.nDbgEn & nBit) != 0;
}

void OpenVideo(OutputVideo* pVideo, const char* szName, const char* szOutputPath, int32_t nWidth) {
    ComposePath(pVideo->szPath, kExitRefused, "%s/%s_%dx%d_P420.yuv", szOutputPath, szName, nWidth,
                nMdHeight);
    RefuseToOverwrite(pVideo->szPath, tSimParams.InputFilePath, kExitRefused);
    RefuseToOverwrite(pVideo->szPath, tSimParams.pScaledInputPath, kExitRefused);
    if (!OutFileOpen(&pVideo->tFile, pVideo->szPath)) {
        EndRun(stdout, kExitRefused, "open %s file %s error\n", szName, pVideo->szPath);
    }
}

void CompCanvasFill(int32_t iRefIdx) {
    const int32_t W = nMdWidth;
    const int32_t H = nMdHeight;
    const YuvRect rcSrcY{0, 0, W, H};
    const YuvRect rcComp_left{0, 0, W, H};
    const YuvRect rcComp_mid{W, 0, W, H};
    const YuvRect rcComp_right{2 * W, 0, W, H};
    const FrameBuffers& fb = tFrameBuffers;
    const bool bPool = tSimParams.tMd.CurFrmId != 0 && tSimParams.tMd.nMD_RefFrmIdx != 0;
    const uint8_t* pLeft = bPool ? fb.ppPrevYBuffer[iRefIdx] : fb.pCurYuv;
    YuvCpyRoi(pLeft, W, H, &rcSrcY, fb.pCompYuv, 3 * W, H, &rcComp_left);
    YuvCpyRoi(fb.pCurYuv, W, H, &rcSrcY, fb.pCompYuv, 3 * W, H, &rcComp_mid);
    YuvCpyRoi(fb.pCurYuv, W, H, &rcSrcY, fb.pCompYuv, 3 * W, H, &rcComp_right);
}

void HogDistCanvasFill() {
    const YuvRect rc{0, 0, nMdWidth, nMdHeight};
    YuvCpyRoi(tFrameBuffers.pCurYuv, nMdWidth, nMdHeight, &rc, tFrameBuffers.pHogDistYuv, nMdWidth,
              nMdHeight, &rc);
}

void OutputDrawBlockDot(int32_t x, int32_t y, uint8_t nLevel) {
    const MdParams& md = tSimParams.tMd;
    const int32_t r = std::min(md.nMD_HogBlockStride, md.nMD_HogBlockSize) >> 2;
    const RgbColour rgb = {nLevel, 0, 0};
    if (nLevel < md.nMD_HogDist_Th) return;
    if (VideoOn(kDbgComp)) {
        YuvFillCircle(tFrameBuffers.pCompYuv, 3 * nMdWidth, nMdHeight, x + 2 * nMdWidth, y, r, rgb);
    }
    if (VideoOn(kDbgHogDist)) {
        YuvFillCircle(tFrameBuffers.pHogDistYuv, nMdWidth, nMdHeight, x, y, r, rgb);
    }
}

// Centre and half size of the box, pixels; both half sizes above 0.
void OutputDrawBox(int32_t cx, int32_t cy, int32_t hw, int32_t hh) {
    const int32_t W = nMdWidth;
    const int32_t H = nMdHeight;
    if (VideoOn(kDbgComp)) {
        const YuvRect rcHog{cx - hw + 2 * W, cy - hh, 2 * hw, 2 * hh};
        YuvDrawRect(tFrameBuffers.pCompYuv, 3 * W, H, &rcHog, rgbHog1, 1);
    }
    if (VideoOn(kDbgHogDist)) {
        const YuvRect rcHog{cx - hw, cy - hh, 2 * hw, 2 * hh};
        YuvDrawRect(tFrameBuffers.pHogDistYuv, W, H, &rcHog, rgbHog1, 1);
    }
    if (VideoOn(kDbgMotionArea)) {
        const int32_t nRadius = tSimParams.tMd.nMD_HogBlockStride / 2;
        YuvFillCircle(tFrameBuffers.pCurYuv, W, H, cx, cy, nRadius, rgbOrig0);
        const YuvRect rcOrig{cx - hw, cy - hh, 2 * hw, 2 * hh};
        YuvDrawRect(tFrameBuffers.pCurYuv, W, H, &rcOrig, rgbOrig1, 2);
    }
}

void OutputFilesWrite() {
    const size_t nPixels = static_cast<size_t>(nMdWidth) * static_cast<size_t>(nMdHeight);
    const auto Append = [](OutputVideo* pVideo, const uint8_t* pYuv, size_t nBytes) {
        OutFileWrite(&pVideo->tFile, pYuv, nBytes);
    };
    if (VideoOn(kDbgComp)) Append(&tOutputFiles.comp, tFrameBuffers.pCompYuv, nPixels * 9 / 2);
    if (VideoOn(kDbgMotionArea)) {
        Append(&tOutputFiles.motionArea, tFrameBuffers.pCurYuv, nPixels * 3 / 2);
    }
    if (VideoOn(kDbgHogDist)) {
        Append(&tOutputFiles.hogDist, tFrameBuffers.pHogDistYuv, nPixels * 3 / 2);
    }
}

void ConvertVideo(const OutputVideo& tVideo, const char* szName, int32_t nWidth) {
    char cmd[kCommandSize];
    const int32_t nHeight = nMdHeight;
    const char* szOutputPath = tSimParams.OutputFilePath;
    if (!FitText(cmd,
                 "%sffmpeg %s -f rawvideo -pix_fmt yuv420p -s:v %dx%d -i %s -c:v libx264 "
                 "%s%s_%dx%d_P420.mp4",
                 CommandFolder(pToolDir, cPathSep).c_str(), szToolFlags, nWidth, nHeight,
                 CommandWord(tVideo.szPath).c_str(), CommandFolder(szOutputPath, cPathSep).c_str(),
                 szName, nWidth, nHeight)) {
        MdPrint("[Warning] command for %s is too long, no mp4 of it is made\n", tVideo.szPath);
        return;
    }
    MdPrint("INFO: exec: %s\n", cmd);
    RunTool(cmd);
}

}  // namespace

bool VideosOn() {
    return VideoOn(kDbgComp) || VideoOn(kDbgMotionArea) || VideoOn(kDbgHogDist);
}

void OutputFilesOpen(const char* szOutputPath) {
    tOutputFiles = OutputFiles{};
    if (VideoOn(kDbgComp)) OpenVideo(&tOutputFiles.comp, "comp", szOutputPath, 3 * nMdWidth);
    if (VideoOn(kDbgMotionArea)) {
        OpenVideo(&tOutputFiles.motionArea, "motionArea", szOutputPath, nMdWidth);
    }
    if (VideoOn(kDbgHogDist)) OpenVideo(&tOutputFiles.hogDist, "hogDist", szOutputPath, nMdWidth);
    if (VideoOn(kDbgCountLog)) CountLogStart();
}

void OutputCopyCanvases() {
    if (VideoOn(kDbgComp)) CompCanvasFill(tSimParams.tMd.RefBufIdx);
    if (VideoOn(kDbgHogDist)) HogDistCanvasFill();
}

void OutputDrawBlockDots() {
    if (!VideoOn(kDbgComp) && !VideoOn(kDbgHogDist)) return;
    const int32_t S = tMdResult.nStride;
    for (int32_t by = 0, i = 0; by < tMdResult.nBlkH; ++by) {
        for (int32_t bx = 0; bx < tMdResult.nBlkW; ++bx, ++i) {
            const uint8_t d = tMdResult.pDistMap[i];
            if (d != 0) OutputDrawBlockDot(bx * S + S / 2, by * S + S / 2, d);
        }
    }
}

void OutputBoxAndWrite() {
    const MdObject& o = tMdResult.tObjects[0];
    const int32_t cx = (o.right + o.left) / 2;
    const int32_t cy = (o.bottom + o.top) / 2;
    const int32_t hw = (o.right - o.left) / 2;
    const int32_t hh = (o.bottom - o.top) / 2;
    if (hw > 0 && hh > 0) OutputDrawBox(cx, cy, hw, hh);
    OutputFilesWrite();
}

void OutputFilesClose() {
    OutFileClose(&tOutputFiles.comp.tFile);
    OutFileClose(&tOutputFiles.motionArea.tFile);
    OutFileClose(&tOutputFiles.hogDist.tFile);
}

void OutputConvertMp4() {
    if (tSimParams.tMd.nEnableBatch != 0) return;
    if (pToolDir == nullptr) {
        MdPrint("[Warning] ffmpeg/ffprobe is not exist for converting output mp4\n");
        return;
    }
    MdPrint("Convert MD output YUV video to mp4 format!\n");
    if (VideoOn(kDbgComp)) ConvertVideo(tOutputFiles.comp, "comp", 3 * nMdWidth);
    if (VideoOn(kDbgMotionArea)) ConvertVideo(tOutputFiles.motionArea, "motionArea", nMdWidth);
    if (VideoOn(kDbgHogDist)) ConvertVideo(tOutputFiles.hogDist, "hogDist", nMdWidth);
}
