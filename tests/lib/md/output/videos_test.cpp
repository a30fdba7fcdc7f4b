// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/output/videos.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <tuple>

#include "md/run_state.h"
#include "tests/support/picture.h"
#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

constexpr int W = 64;
constexpr int H = 48;
constexpr int kFrames = 7;
constexpr size_t kFrame = W * H * 3 / 2;

// The clip, with chroma that differs from sample to sample; a folder with it and the settings.
struct Scene {
    explicit Scene(const std::string& sSettings) {
        for (size_t n = 0; n < kFrames; ++n) {
            sClip.replace(n * kFrame + W * H, W * H / 2, Junk(W * H / 2));
        }
        WriteAll(tFolder / "in.yuv", sClip);
        WriteAll(tFolder / "a.cfg", BaseConfig(W, H) + sSettings);
    }
    std::string Read(const std::string& sName) const { return ReadAll(tFolder / "out" / sName); }
    TempFolder tFolder;
    std::string sClip =
        SquaresBytes({.nFrames = kFrames, .nSize = 13, .nSpeed = 5, .nNoise = 3}, W, H);
};

// All numbers of a text in a row.
std::vector<int> Numbers(std::string s) {
    for (char& c : s) c = c >= '0' && c <= '9' ? c : ' ';
    std::istringstream t(s);
    return {std::istream_iterator<int>(t), {}};
}

}  // namespace

// The files whole: every frame is painted again from the clip, the distance dump and the object
// report of the same run.
TEST(Videos, FramesAreClipPlusDotsPlusBox) {
    const struct {
        int nStride, nMethod, R, nStart, nTh, nVideos;
    } aRows[] = {{8, 1, 3, 0, 2, 2 | 8 | 16},
                 {24, 0, 2, 2, 0, 2 | 8},
                 {8, 0, 1, 1, 60, 16},
                 {16, 1, 0, 0, 10, 8}};
    int aSeen[2][2] = {};  // levels drawn and below the threshold, frames with and without a box
    int nEqual = 0;        // levels just at the threshold
    for (const auto& r : aRows) {
        std::ostringstream t;
        t << "MD_HogBlockStride = " << r.nStride << "\nMD_PostProcMethod = " << r.nMethod
          << "\nMD_RefFrmIdx = " << r.R << "\nStartFrameIdx = " << r.nStart
          << "\nMD_HogDist_Th = " << r.nTh
          << "\nMD_BlkCnt_Th = 1\nMD_DbgEn = " << (r.nVideos | 64 | 512) << "\n";
        const Scene tScene(t.str());
        ASSERT_EQ(RunMd(tScene.tFolder.Path(), {"-d", "a.cfg"}).nExit, 0);
        std::string sComp, sArea, sDist;
        for (int n = r.nStart; n < kFrames; ++n) {
            const std::string sNumber = "HOG_feature/000" + std::to_string(n + 1);
            const Picture tFrame(W, H, tScene.sClip.substr(size_t(n) * kFrame, kFrame));
            Picture tArea = tFrame, tDist = tFrame;
            const std::vector<int> a = Numbers(tScene.Read(sNumber + "_HOGDist.txt"));
            for (size_t i = 0; i < a.size(); i += 3) {
                const int x = a[i] * r.nStride + r.nStride / 2;
                const int y = a[i + 1] * r.nStride + r.nStride / 2;
                const auto d = static_cast<uint8_t>(a[i + 2]);
                if (d == 0) continue;
                ++aSeen[0][d >= r.nTh];
                nEqual += d == r.nTh ? 1 : 0;
                if (d >= r.nTh) tDist.Disc(x, y, std::min(r.nStride, 16) / 4, {d, 0, 0});
            }
            // Motion flag, count, left, top, right, bottom.
            std::vector<int> o = Numbers(tScene.Read(sNumber + "_ObjOut.txt"));
            o.resize(6);
            const int hw = (o[4] - o[2]) / 2, cx = (o[4] + o[2]) / 2;
            const int hh = (o[5] - o[3]) / 2, cy = (o[5] + o[3]) / 2;
            ++aSeen[1][hw > 0 && hh > 0];
            if (hw > 0 && hh > 0) {
                tDist.Rect(cx - hw, cy - hh, 2 * hw, 2 * hh, {255, 255, 255}, 1);
                tArea.Disc(cx, cy, r.nStride / 2, {128, 128, 255});
                tArea.Rect(cx - hw, cy - hh, 2 * hw, 2 * hh, {0, 255, 0}, 2);
            }
            Picture tComp(3 * W, H, std::string(3 * kFrame, '\0'));
            tComp.Paste(tFrame, 0);
            tComp.Paste(tFrame, W);
            tComp.Paste(tDist, 2 * W);
            sComp += tComp.s, sArea += tArea.s, sDist += tDist.s;
        }
        const std::tuple<int, std::string, const std::string&> aVideos[] = {
            {2, "comp_192x48", sComp},
            {8, "motionArea_64x48", sArea},
            {16, "hogDist_64x48", sDist}};
        for (const auto& [nBit, sName, sWant] : aVideos) {
            const bool bOn = (r.nVideos & nBit) != 0;
            EXPECT_EQ(fs::exists(tScene.tFolder / ("out/" + sName + "_P420.yuv")), bOn);
            EXPECT_TRUE(!bOn || tScene.Read(sName + "_P420.yuv") == sWant) << sName << t.str();
        }
    }
    EXPECT_TRUE(aSeen[0][0] > 0 && aSeen[0][1] > 0 && aSeen[1][0] > 0 && aSeen[1][1] > 0 &&
                nEqual > 0)
        << "the clip does not show every case";
}

// A box of one column or row has no half size: neither its lines nor its centre show.
TEST(Videos, BoxWithoutHalfSizeDrawsNothing) {
    const TempFolder tFolder;
    nMdWidth = nMdHeight = 32;
    tSimParams.tMd.nDbgEn = kDbgMotionArea;
    tSimParams.tMd.nMD_HogBlockStride = 8;
    std::string sFrame(32 * 32 * 3 / 2, '\x11');
    tFrameBuffers.pCurYuv = reinterpret_cast<uint8_t*>(sFrame.data());
    OutputFilesOpen(tFolder.Path().c_str());
    for (const auto& [nRight, nBottom] : {std::pair{5, 20}, {20, 5}, {20, 20}}) {
        tMdResult.tObjects[0].left = tMdResult.tObjects[0].top = 4;
        tMdResult.tObjects[0].right = static_cast<uint16_t>(nRight);
        tMdResult.tObjects[0].bottom = static_cast<uint16_t>(nBottom);
        OutputBoxAndWrite();
        const bool bClean = sFrame == std::string(sFrame.size(), '\x11');
        EXPECT_EQ(bClean, nRight != nBottom) << nRight << ',' << nBottom;
    }
    OutputFilesClose();
    tSimParams = {};
    tFrameBuffers = {};
    tMdResult = {};
    nMdWidth = nMdHeight = 0;
}
