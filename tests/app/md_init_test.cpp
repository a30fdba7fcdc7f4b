#include "app/md_init.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/program.h"

namespace {

const std::string sFilterMessage =
    "Parameter error: To ensure 11 bit is enough for ABS(xGrad) and ABS(yGrad), sum of "
    "positive/negative numbers in MD_HogGradX/MD_HogGradY should be no more than 2^3.\n";

}  // namespace

// A run bears two faults; the one that is tested first is told, the other not.
TEST(MdInit, RefusalsComeInTheirOrder) {
    const std::string sStep = " should be multiple of 8\n";
    const std::pair<std::string, std::string> aFaults[] = {
        {"MD_HogCellSize = 12", "NormalHogParam error: MD_HogCellSize(12)" + sStep},
        {"MD_HogBlockStride = 20", "NormalHogParam error: MD_HogBlockStride(20)" + sStep},
        {"MD_HogBlockSize = 24", "MD_HogBlockSize(24)"},
        {"MD_Scale_KeepAspectRatio = 1 InputHeight = 14", "640x14 is smaller than one block"},
        {"MD_Scale_KeepAspectRatio = 1 InputFileType = 1 InputFilePath = a_640x745656_P420.yuv",
         "640x745656 is too large"},
        {"MD_PostProcMethod = 2", "limited to 3476 blocks, the working frame has 3555\n"},
        {"MD_Bbox_PP_Enable = 1 MD_Bbox_PP_Window = 0", "MD_Bbox_PP_Window(0)"},
        {"MD_HogGradX = 9", sFilterMessage}};
    const TempFolder tFolder;
    for (size_t i = 0; i < std::size(aFaults); ++i) {
        for (size_t k = i + 1; k < std::size(aFaults); ++k) {
            if (i == 3 && k == 4) continue;  // both set the height
            const std::string sConfig = aFaults[i].first + "\n" + aFaults[k].first;
            const Outcome t =
                RunText(tFolder.Path(), BaseConfig(640, 368) + "MD_DbgEn = 32\n" + sConfig);
            EXPECT_EQ(t.nExit, 255) << sConfig;
            const size_t nAt = t.sOut.find(aFaults[i].second);
            EXPECT_EQ(t.sOut.find('\n', nAt), t.sOut.size() - 1) << "last line of " << t;
        }
    }
    EXPECT_FALSE(fs::exists(tFolder / "out/HOG_feature/hogmd_golden.txt"));
}

TEST(MdInit, SidesOfEachFilterAreHeldToEightByThemselves) {
    const std::pair<const char*, bool> aRows[] = {
        {"MD_HogGradX = \"\" MD_HogGradY = \"\"", true},
        {"MD_HogGradX = 1,2,5,-4,-4 MD_HogGradY = 8,-8", true},
        {"MD_HogGradX = 1,2,6,-4,-4", false},
        {"MD_HogGradX = 8,-9", false},
        {"MD_HogGradY = -1,-2,0,9", false},
        {"MD_HogGradY = -3,-3,-3,8", false},
        {"MD_HogGradX = 2147483647,2147483647,2", false},
        {"MD_HogGradX = -2147483648,-2147483648", false}};
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", "");
    for (const auto& [szTaps, bPasses] : aRows) {
        const Outcome t = RunText(tFolder.Path(), BaseConfig(16, 31) + szTaps);
        EXPECT_EQ(t.nExit, bPasses ? 0 : 255) << szTaps;
        EXPECT_EQ(t.sOut.ends_with(sFilterMessage), !bPasses) << t;
    }
    // The largest grid of method 2 passes too.
    const std::string sGrid = BaseConfig(640, 360) + "MD_PostProcMethod = 2";
    EXPECT_EQ(RunText(tFolder.Path(), sGrid).nExit, 0);
}
