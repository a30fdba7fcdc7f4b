#include "md/input/raw_files.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/program.h"

TEST(LumaInput, ChromaIsGreyAndAPartialPlaneIsDropped) {
    const TempFolder tFolder;
    const auto Convert = [&](const std::string& sLuma, int32_t nWidth, int32_t nHeight) {
        WriteAll(tFolder / "in", sLuma);
        YuvI400ToI420((tFolder / "in").c_str(), nWidth, nHeight, (tFolder / "out").c_str());
        return ReadAll(tFolder / "out");
    };
    EXPECT_EQ(Convert("abcdefgh", 2, 2),
              "abcd\x80\x80"
              "efgh\x80\x80");
    EXPECT_EQ(Convert("abcdefg", 2, 2), "abcd\x80\x80");
    EXPECT_EQ(Convert("abcdefghi", 3, 3), "abcdefghi\x80\x80\x80\x80");
    EXPECT_EQ(Convert("abc", 2, 2), "");
}

TEST(LumaInput, FilesThatDoNotOpenGiveAMessageAndNoFrame) {
    const TempFolder tFolder;
    WriteAll(tFolder / "in", "abcd");
    const std::string sNone = tFolder / "no/file";
    const std::string sOut = tFolder / "out";
    testing::internal::CaptureStdout();
    EXPECT_EQ(YuvI400ToI420(sNone.c_str(), 2, 2, sOut.c_str()), 1);
    EXPECT_EQ(YuvI400ToI420((tFolder / "in").c_str(), 2, 2, sNone.c_str()), 1);
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        "Load Y video " + sNone + " error.\nCan't open I420 video " + sNone + " for writing.\n");
    EXPECT_EQ(ReadAll(sOut), "");
}

TEST(CopyFileDeathTest, FilesThatDoNotOpenEndTheRun) {
    EXPECT_EXIT(copyfile("/tmp/x", "/no/in"), testing::ExitedWithCode(1),
                "^\\[ERROR\\] copyfile: src /no/in error\n$");
    EXPECT_EXIT(copyfile("/no/out", "/dev/null"), testing::ExitedWithCode(1),
                "^\\[ERROR\\] copyfile: dst /no/out error\n$");
}
