// Whole runs on every kernel path leave the same bytes behind.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/program.h"

namespace {

// A bright square that walks over noise.
std::string Clip(int nWidth, int nHeight, int nFrames) {
    std::string s;
    uint32_t nNoise = 7;
    for (int f = 0; f < nFrames; ++f) {
        for (int i = 0; i < nWidth * nHeight * 3 / 2; ++i) {
            nNoise = nNoise * 1664525 + 1013904223;
            const int x = i % nWidth, y = i / nWidth;
            const bool bSquare = y < nHeight && (x - 3 * f) / 24 == 1 && y / 24 == 1;
            s += static_cast<char>((bSquare ? 200 : 80) + (nNoise >> 29));
        }
    }
    return s;
}

}  // namespace

TEST(KernelPaths, AllLeaveTheSameBytes) {
    const struct {
        int nWidth, nHeight;
        const char* szSettings;
    } aRows[] = {
        {328, 80, "MD_PostProcMethod = 0\n"},
        {96, 64,
         "MD_PostProcMethod = 2\nMD_Padding_Method = 0\nMD_HogDist_AvgYDiffCalc_Method = 1\n"},
        {97, 65, "MD_Padding_Method = 1\nMD_HogNormalizeMode = 0\nMD_HogMagnitudeWeightEn = 0\n"},
        {160, 96, "MD_PostProcMethod = 3\nMD_HogBlockStride = 16\nMD_RefFrmIdx = 0\n"},
        {128, 96,
         "MD_HogDist_AvgYDiffCalc_Method = 2\nMD_HogDistAvailCheck = 1\nMD_Bbox_PP_Enable = 1\n"},
    };
    for (const auto& row : aRows) {
        for (const char* szDebug : {"MD_DbgEn = 0x37a\n", "MD_DbgEn = 0\n"}) {
            const TempFolder tFolder;
            const std::string sConfig =
                BaseConfig(row.nWidth, row.nHeight) + row.szSettings + szDebug;
            WriteAll(tFolder / "a.cfg", sConfig);
            WriteAll(tFolder / "in.yuv", Clip(row.nWidth, row.nHeight, 8));
            const Files aPlain = WholeRun(tFolder.Path(), "plain");
            for (const std::string& sPath : KernelNames()) {
                EXPECT_TRUE(aPlain == WholeRun(tFolder.Path(), sPath)) << sPath << "\n" << sConfig;
            }
        }
    }
}

TEST(KernelPaths, AnUnknownOneIsRefused) {
    const TempFolder tFolder;
    WriteAll(tFolder / "a.cfg", BaseConfig(32, 32));
    WriteAll(tFolder / "in.yuv", Clip(32, 32, 1));
    const Outcome t =
        RunProgram(tFolder.Path(), {"env", "MD_KERNELS=fastest", MD_PROGRAM, "-d", "a.cfg"});
    EXPECT_EQ(t.nExit, 255);
    EXPECT_NE(t.sOut.find("ERROR: MD_KERNELS=fastest: expected plain"), std::string::npos);
    EXPECT_NE(t.sOut.find(", scalar\n"), std::string::npos);
}
