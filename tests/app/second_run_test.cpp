// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Runs one after another in this process, as fuzzing makes them: each starts from a clean state.
#include <gtest/gtest.h>

#include <new>

#include "app/md_sim_run.h"
#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

constexpr int kSize = 96;

// All that a run in this process leaves, as WholeRun has it of the program.
Files RunHere(const TempFolder& tFolder, const std::string& sConfig) {
    fs::remove_all(tFolder / "out");
    std::string aTexts[] = {MD_PROGRAM, "-d", (tFolder / sConfig).string()};
    char* argv[] = {aTexts[0].data(), aTexts[1].data(), aTexts[2].data()};
    testing::internal::CaptureStdout();
    MdSimRun(3, argv);
    const std::string sOut = testing::internal::GetCapturedStdout();
    Files a = ReadFolder(tFolder / "out");
    a["stdout"] = sOut + "finish.\n";
    return a;
}

// The same of a process of its own.
Files RunAlone(const TempFolder& tFolder, const std::string& sConfig) {
    fs::remove_all(tFolder / "out");
    const Outcome t = RunMd(tFolder.Path(), {"-d", (tFolder / sConfig).string()});
    EXPECT_EQ(t.nExit, 0) << t;
    Files a = ReadFolder(tFolder / "out");
    a["stdout"] = t.sOut;
    return a;
}

size_t OpenFiles() {
    return static_cast<size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

std::string WithoutTaps(std::string s) {
    for (const char* szKey : {"MD_HogGradX", "MD_HogGradY"}) {
        const size_t n = s.find(szKey);
        s.erase(n, s.find('\n', n) + 1 - n);
    }
    return s;
}

}  // namespace

// The first run ends with an open gate, a score, a luma threshold, taps and all files on. The last
// one shows its thresholds.
TEST(SecondRun, EqualsAFirstOne) {
    const TempFolder tFolder;
    const SquaresClip tClip = {.nFrames = 8, .nSize = 60, .nBoil = 1, .nFlicker = 30, .nTail = 9};
    WriteAll(tFolder / "in.yuv", SquaresBytes(tClip, kSize, kSize));
    const std::string sBase = BaseConfig(kSize, kSize) +
                              "MD_Bbox_PP_Window = 2\nMD_HogDist_AvgYDiffCalc_Method = 2\n"
                              "MD_HogDist_Th_AvgYDiffAdj_Scale = 1\nMD_RefFrmIdx = 1\n";
    const std::string sGate = "MD_Bbox_PP_Enable = 1\n";
    WriteAll(tFolder / "a.cfg", sBase + sGate + "MD_DbgEn = 634\n");
    WriteAll(tFolder / "b.cfg", sBase + sGate + "MD_DbgEn = 512\nMD_PostProcMethod = 2\n");
    WriteAll(tFolder / "c.cfg", WithoutTaps(sBase) + "MD_DbgEn = 577\n");
    const size_t nFiles = OpenFiles();
    const std::new_handler pHandler = std::get_new_handler();
    for (const char* szConfig : {"a.cfg", "a.cfg", "b.cfg", "b.cfg", "a.cfg", "c.cfg"}) {
        const Files aWant = RunAlone(tFolder, szConfig);
        const Files aGot = RunHere(tFolder, szConfig);
        EXPECT_EQ(aGot.at("stdout"), aWant.at("stdout")) << szConfig;
        EXPECT_TRUE(aGot == aWant) << szConfig;
        EXPECT_EQ(aGot.at("stdout").find("bbox triggered") == std::string::npos,
                  std::string(szConfig) == "c.cfg")
            << szConfig << ": the gate is not put to the test";
    }
    EXPECT_EQ(OpenFiles(), nFiles) << "a run left a file open";
    EXPECT_EQ(std::get_new_handler(), pHandler);
}
