// The shipped settings: complete, truthful about ranges, and fit for the demo clip.
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
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
    std::string sText = ReadAll(kDefaultCfg);
    for (int i = 0; i < kKeyCount; ++i) {
        const std::string sKey = aInputMap[i].TokenName;
        const std::regex tLine("(^|\n)" + sKey + " = \\S+ +# ([^\n]*)");
        std::smatch tMatch;
        ASSERT_TRUE(std::regex_search(sText, tMatch, tLine)) << sKey;
        EXPECT_EQ(tMatch[2], RangeText(aInputMap[i])) << sKey;
        sText.erase(static_cast<size_t>(tMatch.position(0)), static_cast<size_t>(tMatch.length(0)));
    }
    EXPECT_FALSE(std::regex_search(sText, std::regex("\n[^#\n]"))) << sText;
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
        const std::regex tBox("PP_V2: l,r,t,b = (\\d+),(\\d+),(\\d+),(\\d+)");
        int nFrame = 0;
        int nOnWalker = 0;
        for (std::sregex_iterator it(t.sOut.begin(), t.sOut.end(), tBox), tEnd; it != tEnd; ++it) {
            // The walker's middle goes from a tenth of the width to nine tenths; its body lies
            // within 16 pixels of it and its height in rows 72 to 153.
            const int nMiddle = 32 + 256 * nFrame++ / kFrames;
            const auto Edge = [&](size_t n) { return std::atoi((*it)[n].str().c_str()); };
            const bool bAcross =
                Edge(1) < nMiddle && Edge(2) > nMiddle - 16 && Edge(1) > nMiddle - 40;
            const bool bDown = Edge(3) >= 48 && Edge(4) > 100 && Edge(4) <= 160;
            if (bAcross && bDown && Edge(2) < nMiddle + 40) ++nOnWalker;
        }
        EXPECT_EQ(nFrame, kFrames);
        EXPECT_GE(nOnWalker, kFrames * 9 / 10) << "method " << szMethod;
    }
}
