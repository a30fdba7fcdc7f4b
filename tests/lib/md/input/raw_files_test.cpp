#include "md/input/raw_files.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/program.h"

TEST(LumaInput, ChromaIsGreyAndAPartialPlaneIsDropped) {
    const struct {
        int32_t nWidth, nHeight;
        std::string sLuma, sFrames;
    } aRows[] = {
        {2, 2, "abcdefgh",
         "abcd\x80\x80"
         "efgh\x80\x80"},
        {2, 2, "abcdefg", "abcd\x80\x80"},
        {3, 3, "abcdefghi", "abcdefghi\x80\x80\x80\x80"},
        {2, 2, "abc", ""},
        {2, 2, "", ""},
    };
    const TempFolder tFolder;
    for (const auto& t : aRows) {
        WriteAll(tFolder / "in", t.sLuma);
        YuvI400ToI420((tFolder / "in").c_str(), t.nWidth, t.nHeight, (tFolder / "out").c_str());
        EXPECT_EQ(ReadAll(tFolder / "out"), t.sFrames) << t.sLuma;
    }
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

TEST(CopyFile, EveryLengthAroundABlockArrivesWhole) {
    const TempFolder tFolder;
    std::string sBytes;
    for (const size_t nBytes : {0u, 1u, 1023u, 1024u, 1025u, 5000u}) {
        while (sBytes.size() < nBytes) sBytes += static_cast<char>(sBytes.size() * 7 / 3);
        WriteAll(tFolder / "in", sBytes);
        copyfile((tFolder / "out").c_str(), (tFolder / "in").c_str());
        EXPECT_EQ(ReadAll(tFolder / "out"), sBytes) << nBytes;
    }
}

TEST(CopyFileDeathTest, FilesThatDoNotOpenEndTheRun) {
    EXPECT_EXIT(copyfile("/tmp/x", "/no/in"), testing::ExitedWithCode(1),
                "^\\[ERROR\\] copyfile: src /no/in error\n$");
    EXPECT_EXIT(copyfile("/no/out", "/dev/null"), testing::ExitedWithCode(1),
                "^\\[ERROR\\] copyfile: dst /no/out error\n$");
}
