// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

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

// What is drawn on a video: the active blocks and a thin box, on the last of its panels, or the box
// and its centre.
enum Drawing { kBlocks, kCentre };

struct Video {
    DebugBit nBit;  // switches it on
    const char* szName;
    int32_t nPanels;  // frames side by side
    Drawing nDrawing;
    OutputVideo OutputFiles::*pFile;
    uint8_t* FrameBuffers::*pCanvas;  // appended to the file once a frame

    bool IsOn() const { return (tSimParams.tMd.nDbgEn & nBit) != 0; }
    OutputVideo& File() const { return tOutputFiles.*pFile; }
    uint8_t* Canvas() const { return tFrameBuffers.*pCanvas; }
    int32_t Width() const { return nPanels * nMdWidth; }
    int32_t LastPanel() const { return (nPanels - 1) * nMdWidth; }  // its left edge, pixels
};

constexpr Video aVideos[] = {
    // clang-format off
    {kDbgComp,       "comp",       3, kBlocks, &OutputFiles::comp,       &FrameBuffers::pCompYuv},
    {kDbgMotionArea, "motionArea", 1, kCentre, &OutputFiles::motionArea, &FrameBuffers::pCurYuv},
    {kDbgHogDist,    "hogDist",    1, kBlocks, &OutputFiles::hogDist,    &FrameBuffers::pHogDistYuv},
    // clang-format on
};

bool IsOn(DebugBit nBit) {
    return (tSimParams.tMd.nDbgEn & nBit) != 0;
}

void OpenVideo(const Video& tVideo, const char* szOutputPath) {
    OutputVideo& t = tVideo.File();
    ComposePath(t.szPath, kExitRefused, "%s/%s_%dx%d_P420.yuv", szOutputPath, tVideo.szName,
                tVideo.Width(), nMdHeight);
    RefuseToOverwrite(t.szPath, tSimParams.InputFilePath, kExitRefused);
    RefuseToOverwrite(t.szPath, tSimParams.pScaledInputPath, kExitRefused);
    if (!OutFileOpen(&t.tFile, t.szPath)) {
        EndRun(stdout, kExitRefused, "open %s file %s error\n", tVideo.szName, t.szPath);
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
    for (const Video& t : aVideos) {
        if (!t.IsOn() || t.nDrawing != kBlocks) continue;
        YuvFillCircle(t.Canvas(), t.Width(), nMdHeight, x + t.LastPanel(), y, r, rgb);
    }
}

// Centre and half size of the box, pixels; both half sizes above 0.
void OutputDrawBox(int32_t cx, int32_t cy, int32_t hw, int32_t hh) {
    for (const Video& t : aVideos) {
        if (!t.IsOn()) continue;
        const YuvRect rc{cx - hw + t.LastPanel(), cy - hh, 2 * hw, 2 * hh};
        if (t.nDrawing == kBlocks) {
            YuvDrawRect(t.Canvas(), t.Width(), nMdHeight, &rc, rgbHog1, 1);
        } else {
            const int32_t nRadius = tSimParams.tMd.nMD_HogBlockStride / 2;
            YuvFillCircle(t.Canvas(), t.Width(), nMdHeight, cx, cy, nRadius, rgbOrig0);
            YuvDrawRect(t.Canvas(), t.Width(), nMdHeight, &rc, rgbOrig1, 2);
        }
    }
}

void OutputFilesWrite() {
    const size_t nPixels = static_cast<size_t>(nMdWidth) * static_cast<size_t>(nMdHeight);
    for (const Video& t : aVideos) {
        const size_t nBytes = nPixels * 3 * static_cast<size_t>(t.nPanels) / 2;
        if (t.IsOn()) OutFileWrite(&t.File().tFile, t.Canvas(), nBytes);
    }
}

void ConvertVideo(const Video& tVideo) {
    char cmd[kCommandSize];
    const char* const szRaw = tVideo.File().szPath;
    if (!FitText(cmd,
                 "%sffmpeg %s -f rawvideo -pix_fmt yuv420p -s:v %dx%d -i %s -c:v libx264 "
                 "%s%s_%dx%d_P420.mp4",
                 CommandFolder(pToolDir, cPathSep).c_str(), szToolFlags, tVideo.Width(), nMdHeight,
                 CommandWord(szRaw).c_str(),
                 CommandFolder(tSimParams.OutputFilePath, cPathSep).c_str(), tVideo.szName,
                 tVideo.Width(), nMdHeight)) {
        MdPrint("[Warning] command for %s is too long, no mp4 of it is made\n", szRaw);
        return;
    }
    MdPrint("INFO: exec: %s\n", cmd);
    RunTool(cmd);
}

}  // namespace

bool VideosOn() {
    return std::ranges::any_of(aVideos, &Video::IsOn);
}

void OutputFilesOpen(const char* szOutputPath) {
    tOutputFiles = OutputFiles{};
    for (const Video& t : aVideos) {
        if (t.IsOn()) OpenVideo(t, szOutputPath);
    }
    if (IsOn(kDbgCountLog)) CountLogStart();
}

void OutputCopyCanvases() {
    if (IsOn(kDbgComp)) CompCanvasFill(tSimParams.tMd.RefBufIdx);
    if (IsOn(kDbgHogDist)) HogDistCanvasFill();
}

void OutputDrawBlockDots() {
    const auto ShowsBlocks = [](const Video& t) { return t.IsOn() && t.nDrawing == kBlocks; };
    if (std::ranges::none_of(aVideos, ShowsBlocks)) return;
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
    for (const Video& t : aVideos) OutFileClose(&t.File().tFile);
}

void OutputConvertMp4() {
    if (tSimParams.tMd.nEnableBatch != 0) return;
    if (pToolDir == nullptr) {
        MdPrint("[Warning] ffmpeg/ffprobe is not exist for converting output mp4\n");
        return;
    }
    MdPrint("Convert MD output YUV video to mp4 format!\n");
    for (const Video& t : aVideos) {
        if (t.IsOn()) ConvertVideo(t);
    }
}
