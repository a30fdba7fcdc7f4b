// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Faults made for real around whole runs: memory that runs out, frames too large for it, inputs
// that end early.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "app/frame_reader.h"
#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

constexpr size_t kFrame = 32 * 32 * 3 / 2;
const std::string sClip = SquaresBytes({.nFrames = 2, .nNoise = 9, .nTail = 100}, 32, 32);

}  // namespace

// The address space grows in small steps from where the loader gives up to where the run succeeds.
TEST(Fault, EveryStepOfMemoryEndsInAMessageOrARun) {
#if defined __SANITIZE_ADDRESS__ || defined MD_COVERAGE
    GTEST_SKIP() << "the sanitizer reserves terabytes, the profile fails by itself";
#endif
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", std::string(320 * 176 * 3, '\x40'));
    WriteAll(tFolder / "a.cfg", BaseConfig(320, 176) + "MD_DbgEn = 890\n");
    std::set<std::string> aMissing;
    int32_t nWhole = 0;
    for (int32_t nKb = 3000; nWhole < 20 && nKb < 100000; nKb += 40) {
        const Outcome t = RunProgram(tFolder.Path(), {"sh", "-c",
                                                      "ulimit -v " + std::to_string(nKb) +
                                                          "\nexec " + MD_PROGRAM + " -d a.cfg"});
        if (t.nExit == 127) continue;  // the loader
        const std::string sMark = "ERROR: no memory for ";
        const size_t nAt = t.sOut.find(sMark);
        if (nAt != std::string::npos) {
            EXPECT_EQ(t.nExit, 1) << t;
            aMissing.insert(t.sOut.substr(nAt + sMark.size()));
        } else if (t.nExit == 0) {
            EXPECT_TRUE(t.sOut.ends_with("finish.\nfinish.\n")) << t;
            ++nWhole;
        } else {
            EXPECT_TRUE(t.nExit == 1 || t.nExit == 255) << t;
            EXPECT_NE((t.sOut + t.sErr).find("pen "), std::string::npos) << "a file: " << t;
        }
    }
    EXPECT_EQ(nWhole, 20);
    EXPECT_GE(aMissing.size(), 4U);
    EXPECT_EQ(aMissing.count("the comp canvas\n"), 1U);
}

// What is allocated holds junk where the system's allocator can be told to fill it. At an odd size
// the planes leave bytes of a canvas untouched.
TEST(Fault, JunkInNewMemoryReachesNoOutput) {
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", SquaresBytes({.nFrames = 5, .nSpeed = 7}, 97, 83));
    WriteAll(tFolder / "a.cfg", BaseConfig(97, 83) + "MD_DbgEn = 634\n");
    const Files aWant = WholeRun(tFolder.Path(), "plain");
    for (const std::string& sKernels : KernelNames()) {
        setenv("MALLOC_PERTURB_", "85", 1);
        const Files aGot = WholeRun(tFolder.Path(), sKernels);
        unsetenv("MALLOC_PERTURB_");
        for (const auto& [sName, sBytes] : aWant) {
            EXPECT_TRUE(aGot.at(sName) == sBytes) << sName << " on path " << sKernels;
        }
    }
}

// Three frames may fill 2^31 - 1 bytes. One step below that the run goes on, to find no memory for
// a frame in the space that it is given.
TEST(Fault, AFrameOfWhichThreeAreTooLargeIsRefused) {
#if defined __SANITIZE_ADDRESS__ || defined MD_COVERAGE
    GTEST_SKIP() << "the sanitizer reserves terabytes, the profile fails by itself";
#endif
    const TempFolder tFolder;
    WriteAll(tFolder / "a.cfg",
             BaseConfig(16, 16) + "InputFileType = 1\nMD_Scale_KeepAspectRatio = 1\n");
    for (const auto& [szHeight, szWant] :
         {std::pair{"29826160", "ERROR: no memory for the current frame\n"},
          {"29826162",
           "ERROR: working frame 16x29826162 is too large: three of them should fit "
           "2147483647 bytes\n"}}) {
        const std::string sName = std::string("a_16x") + szHeight + "_P420.yuv";
        const Outcome t = RunProgram(
            tFolder.Path(),
            {"sh", "-c",
             "ulimit -v 100000\nexec " MD_PROGRAM " -d a.cfg -p InputFilePath=" + sName});
        EXPECT_TRUE(t.sOut.ends_with(szWant)) << t;
    }
}

// Settings refuse on standard error, missing memory among the rest. The text that finds none is the
// folder of a long name.
TEST(Fault, MissingMemoryForSettingsShowsOnStandardError) {
#if defined __SANITIZE_ADDRESS__ || defined MD_COVERAGE
    GTEST_SKIP() << "the sanitizer reserves terabytes, the profile fails by itself";
#endif
    const TempFolder tFolder;
    std::string sName = "a.cfg";
    while (sName.size() < 130000) sName.insert(0, "./");
    bool bSeen = false;
    for (int32_t nKb = 3000; !bSeen && nKb < 100000; nKb += 40) {
        const Outcome t =
            RunProgram(tFolder.Path(),
                       {"sh", "-c", "ulimit -v " + std::to_string(nKb) + "\nexec \"$0\" -d \"$1\"",
                        MD_PROGRAM, sName});
        EXPECT_EQ(t.sOut.find("no memory"), std::string::npos);
        bSeen = t.nExit == 1 && t.sErr == "ERROR: no memory for a text\n";
    }
    EXPECT_TRUE(bSeen);
}

// So does everything later, on standard output. This text is the folder of the program's own name.
TEST(Fault, MissingMemoryForATextOfTheRunEndsIt) {
#if defined __SANITIZE_ADDRESS__ || defined MD_COVERAGE
    GTEST_SKIP() << "the sanitizer reserves terabytes, the profile fails by itself";
#endif
    const TempFolder tFolder;
    WriteAll(tFolder / "a.cfg", BaseConfig(32, 32));
    std::string sName = "MD";
    while (sName.size() < 130000) sName.insert(0, "./");
    bool bSeen = false;
    for (int32_t nKb = 3000; !bSeen && nKb < 100000; nKb += 40) {
        const Outcome t = RunProgram(
            tFolder.Path(),
            {"bash", "-c", "ulimit -v " + std::to_string(nKb) + "\nexec -a \"$1\" \"$0\" -d a.cfg",
             MD_PROGRAM, sName});
        bSeen = t.nExit == 1 && t.sOut.ends_with("ERROR: no memory for a text\n");
    }
    EXPECT_TRUE(bSeen);
}

// The length of the file is asked for each frame: it may be cut within luma, or chroma that is
// passed over.
TEST(Fault, InputCutWhileItIsReadEndsWithTheBytesLeft) {
    for (const auto& [bLumaOnly, nLeft] : {std::pair{false, 77}, {true, 77}, {true, 1100}}) {
        const TempFolder tFolder;
        const std::string sPath = (tFolder / "in.yuv").string();
        WriteAll(sPath, sClip);
        FrameReader t = FrameReaderOpen(sPath.c_str(), 32, 32, 0, bLumaOnly);
        std::string sFrame(kFrame, '\0');
        auto* pFrame = reinterpret_cast<uint8_t*>(sFrame.data());
        EXPECT_EQ(FrameReaderNext(&t, pFrame), static_cast<int32_t>(kFrame));
        const auto nBytes = static_cast<size_t>(nLeft);
        fs::resize_file(sPath, kFrame + nBytes);
        EXPECT_EQ(FrameReaderNext(&t, pFrame), nLeft);
        EXPECT_EQ(sFrame.substr(0, nBytes), sClip.substr(kFrame, nBytes));
        EXPECT_EQ(FrameReaderNext(&t, pFrame), 0);
        FrameReaderClose(&t);
    }
}
