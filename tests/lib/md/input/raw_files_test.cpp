#include "md/input/raw_files.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/program.h"

TEST(LumaInput, ChromaIsGreyAndAPartialPlaneIsDropped) {
    const std::string sGrey = "\x80\x80";
    const struct {
        std::string sLuma;
        int32_t nSide;
        std::string sFrames;
    } aRows[] = {{"abcdefgh", 2, "abcd" + sGrey + "efgh" + sGrey},
                 {"abcdefg", 2, "abcd" + sGrey},
                 {"abcdefghi", 3, "abcdefghi" + sGrey + sGrey},
                 {"abc", 2, ""}};
    const TempFolder tFolder;
    const std::string sIn = tFolder / "in", sOut = tFolder / "out";
    for (const auto& t : aRows) {
        WriteAll(sIn, t.sLuma);
        EXPECT_EQ(YuvI400ToI420(sIn.c_str(), t.nSide, t.nSide, sOut.c_str()), 1);
        EXPECT_EQ(ReadAll(sOut), t.sFrames);
    }
}

TEST(CopyFileDeathTest, OutputThatDoesNotOpenEndsTheRun) {
    EXPECT_EXIT(copyfile("/no/out", "/dev/null"), testing::ExitedWithCode(1),
                "^\\[ERROR\\] copyfile: dst /no/out error\n$");
}
