// The shipped settings: complete, truthful about ranges, and fit for the demo clip.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>

#include "md/cfg_top/input_map.h"
#include "tests/support/program.h"

namespace {

const std::string kDefaultCfg = MD_SOURCE_DIR "/cfg/default.cfg";

// What the file says behind a value, from the input map's row.
std::string RangeText(const InputMapEntry& tRow) {
    if (tRow.Type == kTypeString) return "text, default empty";
    std::ostringstream t;
    if (tRow.LimitKind == kLimitBoth) t << tRow.MinLimit << " to " << tRow.MaxLimit;
    if (tRow.LimitKind == kLimitLower) t << "at least " << tRow.MinLimit;
    if (tRow.LimitKind == kLimitNone) t << "any value";
    t << ", default " << tRow.Default;
    return t.str();
}

}  // namespace

TEST(DefaultCfg, KeyMissingOrTwiceOrRangeStale) {
    std::istringstream tText(ReadAll(kDefaultCfg));
    std::map<std::string, std::string> aRanges;  // by key
    for (std::string sLine; std::getline(tText, sLine);) {
        if (sLine.empty() || sLine[0] == '#') continue;
        const size_t nHash = sLine.find(" # ");
        ASSERT_NE(nHash, std::string::npos) << sLine;
        const std::string sKey = sLine.substr(0, sLine.find(' '));
        EXPECT_TRUE(aRanges.emplace(sKey, sLine.substr(nHash + 3)).second) << sKey << " twice";
    }
    EXPECT_EQ(aRanges.size(), size_t{kKeyCount});
    for (int i = 0; i < kKeyCount; ++i) {
        EXPECT_EQ(aRanges[aInputMap[i].TokenName], RangeText(aInputMap[i]))
            << aInputMap[i].TokenName;
    }
}

TEST(DefaultCfg, BoxLosesTheDemoWalker) {
    constexpr int kFrames = 120;
    const TempFolder tFolder;
    fs::create_directories(tFolder / "cfg");
    fs::create_directories(tFolder / "demo");
    fs::copy_file(kDefaultCfg, tFolder / "cfg/default.cfg");
    ASSERT_EQ(RunProgram(tFolder.Path(),
                         {MD_MAKE_CLIP, "320", "180", std::to_string(kFrames), "clip.yuv"})
                  .nExit,
              0);
    const Outcome tEncode = RunProgram(
        tFolder.Path(), {"ffmpeg", "-v", "error", "-f", "rawvideo", "-pix_fmt", "yuv420p", "-s",
                         "320x180", "-i", "clip.yuv", "-c:v", "libx264", "demo/walker.mp4"});
    ASSERT_EQ(tEncode.nExit, 0) << tEncode.sErr;

    for (const char* szMethod : {"0", "1"}) {
        const Outcome t =
            RunMd(tFolder.Path(), {"-d", "cfg/default.cfg", "-p", "EnableBatch=1", "-p",
                                   std::string("MD_PostProcMethod=") + szMethod});
        ASSERT_EQ(t.nExit, 0) << t.sOut << t.sErr;
        std::istringstream tLines(t.sOut);
        int nFrame = 0;
        int nOnWalker = 0;
        for (std::string sLine; std::getline(tLines, sLine);) {
            int l = 0, r = 0, nTop = 0, nBottom = 0;
            if (std::sscanf(sLine.c_str(), "PP_V2: l,r,t,b = %d,%d,%d,%d", &l, &r, &nTop,
                            &nBottom) != 4) {
                continue;
            }
            // The walker's middle goes from a tenth of the width to nine tenths; its body lies
            // within 16 pixels of it and its height in rows 72 to 153.
            const int nMiddle = 32 + 256 * nFrame++ / kFrames;
            const bool bAcross = l > nMiddle - 40 && l < nMiddle && r > nMiddle - 16;
            const bool bDown = nTop >= 48 && nBottom > 100 && nBottom <= 160;
            if (bAcross && bDown && r < nMiddle + 40) ++nOnWalker;
        }
        EXPECT_EQ(nFrame, kFrames);
        EXPECT_GE(nOnWalker, kFrames * 9 / 10) << "method " << szMethod;
    }
}
