#include "md/output/videos.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "md/run_state.h"
#include "tests/support/picture.h"
#include "tests/support/program.h"

namespace {

constexpr int W = 64;
constexpr int H = 48;
constexpr int kFrames = 7;
constexpr size_t kFrame = W * H * 3 / 2;
constexpr int kAllOutputs = 2 | 8 | 16 | 32 | 64 | 256 | 512;

// A textured square walks over a flat scene, beside a faint line that grows.
std::string Clip() {
    std::string s;
    for (int n = 0; n < kFrames; ++n) {
        Picture t(W, H, std::string(kFrame, '\x60'));
        for (int y = 12; y < 34; ++y) {
            for (int x = 4 + 7 * n; x < std::min(20 + 7 * n, W); ++x) {
                t.At(0, x, y) = static_cast<char>((x * 29 + y * 53) % 200);
                t.At(1, x / 2, y / 2) = static_cast<char>(x + y);
            }
            t.At(0, 50, y) = static_cast<char>(0x60 + y % 2 * 2 * n);
        }
        s += t.s;
    }
    return s;
}

// A folder with the clip and the settings, ready to run.
struct Scene {
    explicit Scene(const std::string& sSettings) {
        WriteAll(tFolder / "in.yuv", Clip());
        WriteAll(tFolder / "a.cfg", BaseConfig(W, H) + sSettings);
    }
    Outcome Run() const { return RunMd(tFolder.Path(), {"-d", "a.cfg"}); }
    std::string Read(const std::string& sName) const { return ReadAll(tFolder / "out" / sName); }
    TempFolder tFolder;
};

// All numbers of a text in a row.
std::vector<int> Numbers(std::string s) {
    for (char& c : s) c = c >= '0' && c <= '9' ? c : ' ';
    std::istringstream t(s);
    return {std::istream_iterator<int>(t), {}};
}

}  // namespace

// The three files whole: every frame is painted again from the clip, the distance dump and the
// object report of the same run.
TEST(Videos, FramesAreClipPlusDotsPlusBox) {
    const struct {
        int nStride, nMethod, R, nStart, nTh;
    } aRows[] = {{8, 1, 3, 0, 31}, {24, 0, 2, 2, 0}, {8, 0, 1, 1, 60}, {16, 1, 0, 0, 10}};
    const std::string sClip = Clip();
    int aSeen[2][2] = {};  // levels drawn and below the threshold, frames with and without a box
    int nEqual = 0;        // levels just at the threshold
    for (const auto& r : aRows) {
        std::ostringstream t;
        t << "MD_HogBlockStride = " << r.nStride << "\nMD_PostProcMethod = " << r.nMethod
          << "\nMD_RefFrmIdx = " << r.R << "\nStartFrameIdx = " << r.nStart
          << "\nMD_HogDist_Th = " << r.nTh << "\nMD_BlkCnt_Th = 1\nMD_DbgEn = " << kAllOutputs
          << "\n";
        const Scene tScene(t.str());
        ASSERT_EQ(tScene.Run().nExit, 0);
        std::string sComp, sArea, sDist;
        for (int n = r.nStart; n < kFrames; ++n) {
            const std::string sNumber = "HOG_feature/000" + std::to_string(n + 1);
            const Picture tFrame(W, H, sClip.substr(static_cast<size_t>(n) * kFrame, kFrame));
            Picture tArea = tFrame;
            Picture tDist = tFrame;
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
            const int hw = (o[4] - o[2]) / 2;
            const int hh = (o[5] - o[3]) / 2;
            const int cx = (o[4] + o[2]) / 2;
            const int cy = (o[5] + o[3]) / 2;
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
        EXPECT_TRUE(tScene.Read("comp_192x48_P420.yuv") == sComp) << t.str();
        EXPECT_TRUE(tScene.Read("motionArea_64x48_P420.yuv") == sArea) << t.str();
        EXPECT_TRUE(tScene.Read("hogDist_64x48_P420.yuv") == sDist) << t.str();
        const Outcome tJson = RunProgram(
            tScene.tFolder.Path(), {"sh", "-c", "jq -e .Dist out/HOG_feature/*.json >/dev/null"});
        EXPECT_EQ(tJson.nExit, 0) << tJson.sErr;
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

TEST(Videos, NoFrameLeavesEmptyFilesNoBitLeavesNone) {
    for (const bool bOn : {true, false}) {
        const Scene t(bOn ? "FramesToBeProcessed = 0\nMD_DbgEn = 26\n" : "MD_DbgEn = 1\n");
        EXPECT_EQ(t.Run().nExit, 0);
        for (const char* sz : {"comp_192x48", "motionArea_64x48", "hogDist_64x48"}) {
            const fs::path tPath = t.tFolder / "out" / (std::string(sz) + "_P420.yuv");
            EXPECT_EQ(fs::exists(tPath), bOn) << sz;
            EXPECT_EQ(bOn ? fs::file_size(tPath) : 0, 0U) << sz;
        }
    }
}

TEST(Videos, Mp4StepPrintsAndRunsItsCommandsInOrder) {
    const std::string sOn = "Convert MD output YUV video to mp4 format!\n";
    const auto Line = [](const std::string& sName, const std::string& sSize) {
        const std::string sPath = "./out/" + sName + "_" + sSize + "_P420";
        return "INFO: exec: ./ffmpeg -y -hide_banner -loglevel warning -f rawvideo -pix_fmt "
               "yuv420p "
               "-s:v " +
               sSize + " -i " + sPath + ".yuv -c:v libx264 " + sPath + ".mp4\n";
    };
    const std::string sComp = Line("comp", "192x48");
    const std::string sArea = Line("motionArea", "64x48");
    const std::string sDist = Line("hogDist", "64x48");
    const struct {
        int nBatch, nDbgEn;
        const char* szTool;      // what it does; null: there is none
        std::string sOn, sRuns;  // lines between the last frame and the end
    } aRows[] = {
        {0, 26, "exit 3", sOn, sComp + sArea + sDist},
        {0, 18, "kill -9 $$", sOn, sComp + sDist},
        {0, 0, "exit 0", sOn, ""},
        {0, 0, nullptr, "[Warning] ffmpeg/ffprobe is not exist for converting output mp4\n", ""},
        {1, 26, nullptr, "", ""},
        {1, 26, "exit 0", "", ""},
    };
    for (const auto& r : aRows) {
        const Scene t("FramesToBeProcessed = 1\nEnableBatch = " + std::to_string(r.nBatch) +
                      "\nMD_DbgEn = " + std::to_string(r.nDbgEn) + "\n");
        fs::create_symlink(MD_PROGRAM, t.tFolder / "MD");
        WriteAll(t.tFolder / "calls", "");
        if (r.szTool != nullptr) {
            WriteAll(t.tFolder / "ffmpeg", "#!/bin/sh\necho \"INFO: exec: $0 $*\" >>calls\n" +
                                               std::string(r.szTool) + "\n");
            fs::permissions(t.tFolder / "ffmpeg", fs::perms::owner_all);
        }
        const Outcome tRun = RunProgram(t.tFolder.Path(), {"./MD", "-d", "a.cfg"});
        const size_t nFrom = tRun.sOut.find('\n', tRun.sOut.find("PP_V2:")) + 1;
        EXPECT_EQ(tRun.nExit, 0);
        EXPECT_EQ(tRun.sOut.substr(nFrom), r.sOn + r.sRuns + "finish.\nfinish.\n");
        EXPECT_EQ(ReadAll(t.tFolder / "calls"), r.sRuns) << "what was printed is not what ran";
    }
}

// A folder where a file should go. What comes behind a failure is not made.
TEST(Outputs, FileThatCannotBeOpenedEndsTheRun) {
    const struct {
        const char *szName, *szMessage, *szNotMade;
    } aRows[] = {
        {"comp_192x48_P420.yuv", "open comp file % error\n", "motionArea_64x48_P420.yuv"},
        {"motionArea_64x48_P420.yuv", "open motionArea file % error\n", "hogDist_64x48_P420.yuv"},
        {"hogDist_64x48_P420.yuv", "open hogDist file % error\n", "HOG_feature/HOGCount.txt"},
        {"HOG_feature/hogmd_dist.txt", "Can't open golden data file: %\n", "comp_192x48_P420.yuv"},
        {"HOG_feature/HOGCount.txt", "%\n", "HOG_feature/0001_HOGCur.txt"},
        {"HOG_feature/0001_Full.csv", "%\n", "HOG_feature/0001_HOGDist.txt"},
        {"HOG_feature/0001_ObjOut.txt", "%\n", "HOG_feature/0002_HOGCur.txt"},
    };
    for (const auto& r : aRows) {
        const Scene t("MD_DbgEn = " + std::to_string(kAllOutputs) + "\n");
        fs::create_directories(t.tFolder / "out" / r.szName);
        const Outcome tRun = t.Run();
        std::string sMessage = r.szMessage;
        sMessage.replace(sMessage.find('%'), 1, "./out/" + std::string(r.szName));
        EXPECT_TRUE(tRun.nExit == 255 && tRun.sOut.ends_with(sMessage)) << tRun.sOut;
        EXPECT_FALSE(fs::exists(t.tFolder / "out" / r.szNotMade)) << r.szName;
    }
}
