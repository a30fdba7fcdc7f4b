// Whole runs on every kernel path leave the same bytes behind.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>

#include "tests/support/program.h"

namespace {

// Standard output and every file of a run, by name.
std::map<std::string, std::string> RunOn(const char* szKernels, const std::string& sConfig,
                                         const std::string& sClip) {
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", sClip);
    WriteAll(tFolder / "a.cfg", sConfig);
    setenv("MD_KERNELS", szKernels, 1);
    const Outcome t = RunMd(tFolder.Path(), {"-d", "a.cfg"});
    unsetenv("MD_KERNELS");
    std::map<std::string, std::string> aFiles = {{"exit", std::to_string(t.nExit)},
                                                 {"stdout", t.sOut}};
    if (t.nExit != 0) return aFiles;
    for (const auto& e : fs::recursive_directory_iterator(tFolder / "out")) {
        if (e.is_regular_file()) aFiles[e.path().filename().string()] = ReadAll(e.path());
    }
    return aFiles;
}

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

TEST(KernelPaths, AWholeRunDependsOnThePath) {
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
            const std::string sConfig =
                BaseConfig(row.nWidth, row.nHeight) + row.szSettings + szDebug;
            const std::string sClip = Clip(row.nWidth, row.nHeight, 8);
            const auto aPlain = RunOn("plain", sConfig, sClip);
            EXPECT_EQ(aPlain.at("exit"), "0") << sConfig;
#ifdef __x86_64__
            EXPECT_TRUE(aPlain == RunOn("ssse3", sConfig, sClip)) << sConfig;
            if (__builtin_cpu_supports("avx2") == 0) continue;
            EXPECT_TRUE(aPlain == RunOn("avx2", sConfig, sClip)) << sConfig;
#endif
        }
    }
}

TEST(KernelPaths, AnUnknownPathRuns) {
    const auto a = RunOn("fastest", BaseConfig(32, 32), Clip(32, 32, 1));
    EXPECT_EQ(a.at("exit"), "255");
    EXPECT_NE(a.at("stdout").find("MD_KERNELS=fastest"), std::string::npos);
}
