#include <gtest/gtest.h>

#include "tests/support/program.h"

TEST(MakeClip, BadArgumentsLeaveAFile) {
    const TempFolder tFolder;
    const std::vector<std::vector<std::string>> aRows = {
        {"33", "32", "2", "x.yuv"},  {"32", "15", "2", "x.yuv"}, {"32", "32", "0", "x.yuv"},
        {"32", "32", "2a", "x.yuv"}, {"32", "32", "2"},          {"", "32", "2", "x.yuv"},
    };
    for (std::vector<std::string> aRow : aRows) {
        aRow.insert(aRow.begin(), MD_MAKE_CLIP);
        EXPECT_EQ(RunProgram(tFolder.Path(), aRow).nExit, 2) << aRow[1] << " " << aRow[2];
    }
    EXPECT_TRUE(fs::is_empty(tFolder.Path()));
}

TEST(MakeClip, BytesDifferBetweenRunsOrFramesStandStill) {
    const TempFolder tFolder;
    for (const char* szName : {"a.yuv", "b.yuv"}) {
        ASSERT_EQ(RunProgram(tFolder.Path(), {MD_MAKE_CLIP, "64", "36", "3", szName}).nExit, 0);
    }
    const std::string sClip = ReadAll(tFolder / "a.yuv");
    constexpr size_t kFrame = 64 * 36 * 3 / 2;
    ASSERT_EQ(sClip.size(), 3 * kFrame);
    EXPECT_EQ(sClip, ReadAll(tFolder / "b.yuv"));
    EXPECT_NE(sClip.substr(0, kFrame), sClip.substr(kFrame, kFrame));
}
