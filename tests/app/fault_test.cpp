// Faults made for real around whole runs: what stands in the way on disk, streams that take no
// more, inputs that end early, tools that die, memory that runs out.
#include <gtest/gtest.h>
#include <unistd.h>

#include <set>
#include <string>

#include "app/frame_reader.h"
#include "tests/support/program.h"

namespace {

constexpr size_t kFrame = 32 * 32 * 3 / 2;
const std::string sVideo = "out/motionArea_32x32_P420.yuv";
const std::string sLost = "[Warning] standard output is incomplete: not all could be written\n";

// Two frames and 100 bytes, which no frame of a later offset equals.
std::string Clip() {
    std::string s;
    for (size_t i = 0; i < 2 * kFrame + 100; ++i) s += static_cast<char>(i * i / 64);
    return s;
}

// A folder with a copy of MD, a converter that dies half-way, a clip of 32x32 and the settings.
void Furnish(const TempFolder& tFolder, const std::string& sConfig) {
    CopyMd(tFolder.Path());
    WriteScript(tFolder / "ffprobe", "echo 32; echo 32\n");
    WriteScript(tFolder / "ffmpeg", "for last; do :; done\nhead -c 1636 in.yuv >$last\nkill -9 $$");
    WriteAll(tFolder / "in.yuv", Clip());
    WriteAll(tFolder / "a.cfg", BaseConfig(32, 32) + sConfig);
}

// Runs a shell line there; as root as somebody else, whom file permissions hold.
Outcome RunHeld(const TempFolder& tFolder, const std::string& sLine) {
    if (geteuid() != 0) return RunProgram(tFolder.Path(), {"sh", "-c", sLine});
    const Outcome t = RunProgram(tFolder.Path(), {"chmod", "-R", "777", "."});
    return RunProgram(tFolder.Path(), {"setpriv", "--reuid=65534", "--regid=65534",
                                       "--clear-groups", "sh", "-c", sLine});
}

}  // namespace

TEST(Fault, WhatStandsInTheWayEndsTheRunOrIsNamed) {
    const std::string sNoVideo = "open motionArea file ./" + sVideo + " error\n";
    const std::string sNoInput = "open input yuv file './in.yuv' error\n";
    const std::string sEnd = "finish.\nfinish.\n";
    const auto Read = [](const char* szAt) {
        return std::string("read frame ") + szAt + ", 1536\n";
    };
    const auto Cut = [](const char* szName) {
        return std::string("[Warning] ./out/") + szName + "_32x32_P420.yuv is incomplete";
    };
    const struct {
        std::string sBefore, sConfig;  // shell lines; settings
        int nExit;
        std::string sText;  // in what it prints
        std::string sRun = "./MD -d a.cfg";
    } aRows[] = {
        {"rm in.yuv; mkdir in.yuv", "", 255, sNoInput},
        {"rm in.yuv; touch in.yuv; chmod 0 in.yuv", "", 255, sNoInput},
        {"rm in.yuv; mkdir in.yuv", "InputFileType = 2", 0, "Load Y video ./in.yuv error.\n"},
        {"rm in.yuv; mkdir in.yuv", "MD_DbgEn = 8192", 1, "copyfile: src ./in.yuv error\n"},
        {"mkdir out; chmod 555 out", "MD_DbgEn = 8", 255, sNoVideo},
        {"touch out", "MD_DbgEn = 8", 255, sNoVideo},
        {"touch out", "", 0, sEnd},
        {"touch out", "InputFileType = 2", 1, "file ./out/PreInput_32x32_P420.yuv fail\n"},
        {"mkdir -p out/HOG_feature; chmod 555 out/HOG_feature", "MD_DbgEn = 32", 255,
         "Can't open golden data file: ./out/HOG_feature/hogmd_golden.txt\n"},
        {"mkdir out; touch out/HOG_feature", "MD_DbgEn = 512", 255,
         "Can't open object report: ./out/HOG_feature/0001_ObjOut.txt\n"},
        {"rm a.cfg; touch a.cfg; chmod 0 a.cfg", "", 255, "Cannot open configuration file a.cfg."},
        {"mkdir b.cfg", "", 255, "for configuration file b.cfg.", "./MD -d b.cfg"},
        {":", "", 255, "Cannot fseek in configuration file /dev/stdin.",
         "cat a.cfg | ./MD -d /dev/stdin"},
        {":", "", 4, "Cannot fseek in configuration file /dev/stdin.",
         "cat a.cfg | ./MD -d a.cfg -f /dev/stdin"},
        // Input that ends within a frame: a pipe, a tool killed half-way, a full disk.
        {"mv in.yuv a; mkfifo in.yuv; cat a >in.yuv &", "", 0, Read("2 error: 100")},
        {":", "InputFileType = 3", 0, Read("1 error: 100")},
        {"ulimit -f 4", "InputFileType = 2 InputHeight = 32", 0, Cut("PreInput")},
        {"ulimit -f 4", "InputFileType = 2", 0, Read("1 error: 512")},
        {"ulimit -f 4", "MD_DbgEn = 8192", 0, Cut("ScaledInput")},
    };
    for (const auto& t : aRows) {
        const TempFolder tFolder;
        Furnish(tFolder, t.sConfig);
        const Outcome tRun = RunHeld(tFolder, t.sBefore + "\n" + t.sRun);
        EXPECT_EQ(tRun.nExit, t.nExit) << t.sBefore << " " << t.sConfig << " " << tRun;
        EXPECT_NE((tRun.sOut + tRun.sErr).find(t.sText), std::string::npos) << tRun;
    }
}

// A closed stream must not lend its number to a file, where the log would then land.
TEST(Fault, LostStreamsCostNoFileAndAreTold) {
    std::string sWhole;
    const struct {
        std::string sRun;
        int nExit;
        std::string sErr;
    } aRows[] = {
        {"./MD -d a.cfg", 0, ""},
        {"./MD -d a.cfg >&-", 0, sLost},
        {"./MD -d a.cfg >/dev/full", 0, sLost},
        {"./MD -d a.cfg 2>&-", 0, ""},
        {"./MD -d a.cfg <&- >&- 2>&-", 0, ""},
        {"(sleep 0.2; ./MD -d a.cfg; echo $? >&2) | :", 0, sLost + "0\n"},
        {"./MD -d a.cfg -p InputFilePath=b >/dev/full", 255,
         sLost + "open input yuv file './b' error\n"},
        {"./MD -d a.cfg -p InputFilePath= 2>/dev/full", 4, ""},
    };
    for (const auto& t : aRows) {
        const TempFolder tFolder;
        Furnish(tFolder, "MD_DbgEn = 9");
        const Outcome tRun = RunProgram(tFolder.Path(), {"sh", "-c", t.sRun});
        EXPECT_EQ(tRun.nExit, t.nExit) << t.sRun;
        EXPECT_EQ(tRun.sErr, t.sErr) << t.sRun;
        if (t.nExit != 0) continue;
        if (sWhole.empty()) sWhole = ReadAll(tFolder / sVideo);
        EXPECT_TRUE(ReadAll(tFolder / sVideo) == sWhole) << t.sRun;
    }
}

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

// The length of the file is asked for each frame.
TEST(Fault, InputCutWhileItIsReadEndsWithTheBytesLeft) {
    for (const bool bLumaOnly : {false, true}) {
        const TempFolder tFolder;
        const std::string sPath = tFolder / "in.yuv";
        WriteAll(sPath, Clip());
        FrameReader t = FrameReaderOpen(sPath.c_str(), 32, 32, 0, bLumaOnly);
        std::string sFrame(kFrame, '\0');
        auto* pFrame = reinterpret_cast<uint8_t*>(sFrame.data());
        EXPECT_EQ(FrameReaderNext(&t, pFrame), static_cast<int32_t>(kFrame));
        fs::resize_file(sPath, kFrame + 77);
        EXPECT_EQ(FrameReaderNext(&t, pFrame), 77);
        EXPECT_EQ(sFrame.substr(0, 77), Clip().substr(kFrame, 77));
        EXPECT_EQ(FrameReaderNext(&t, pFrame), 0);
        FrameReaderClose(&t);
    }
}

// A frame behind a hole of 4.6 GB; an offset of 32 bits would read the hole.
TEST(Fault, StartBeyondFourGigabytesReadsTheFrameItNames) {
    constexpr int64_t nOne = 640 * 480 * 3 / 2;
    const TempFolder tFolder;
    const std::string sPath = tFolder / "in.yuv";
    std::string sLast;
    while (sLast.size() < nOne) sLast += std::to_string(sLast.size()) + ",";
    sLast.resize(nOne);
    std::FILE* pFile = std::fopen(sPath.c_str(), "wb");
    ASSERT_EQ(fseeko(pFile, 10000 * nOne, SEEK_SET), 0);
    std::fputs(sLast.c_str(), pFile);
    std::fclose(pFile);
    FrameReader t = FrameReaderOpen(sPath.c_str(), 640, 480, 10000, false);
    std::string sFrame(nOne, '\0');
    auto* pFrame = reinterpret_cast<uint8_t*>(sFrame.data());
    EXPECT_EQ(FrameReaderNext(&t, pFrame), nOne);
    EXPECT_TRUE(sFrame == sLast);
    EXPECT_EQ(FrameReaderNext(&t, pFrame), 0);
    FrameReaderClose(&t);
}
