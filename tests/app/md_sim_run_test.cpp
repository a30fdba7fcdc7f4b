#include "app/md_sim_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "md/run_state.h"
#include "tests/support/program.h"

constexpr size_t kFrame = 32 * 32 * 3 / 2;

TEST(StartUp, WholeLogOfARunWithoutFrames) {
    const TempFolder tFolder;
    fs::create_directory(tFolder / "cfg");
    const std::string sBase = BaseConfig(32, 32);
    const auto nKeys = static_cast<size_t>(std::count(sBase.begin(), sBase.end(), '='));
    WriteAll(tFolder / "in.yuv", "");
    WriteAll(tFolder / "cfg/a.cfg", sBase);
    WriteAll(tFolder / "b.cfg", "InputFilePath = ../in.yuv MD_RefFrmIdx = 2");
    const Outcome t = RunMd(tFolder.Path(), {"-d", "cfg/a.cfg", "-f", "b.cfg", "-p", "MD_DbgEn=0",
                                             "-p", "FramesToBeProcessed=0"});
    EXPECT_EQ(t.nExit, 0);
    EXPECT_EQ(t.sErr, "");
    EXPECT_EQ(t.sOut, "Setting Default Parameters...\nParsing Configfile...... cfg/a.cfg\n" +
                          std::string(nKeys, '.') +
                          "\nParsing Configfile...... b.cfg..\n"
                          "Parsing command line string 'MD_DbgEn = 0'.\n"
                          "Parsing command line string 'FramesToBeProcessed = 0'.\n\n"
                          "finish.\nfinish.\n");
    EXPECT_TRUE(fs::is_empty(tFolder / "cfg/out/HOG_feature")) << "made on every run";
}

TEST(StartUp, MissingInputLeavesWhatWasOpenedBefore) {
    const TempFolder tFolder;
    const std::string sConfig = BaseConfig(32, 32) + "MD_DbgEn = 122\nInputFilePath = ";
    const Outcome t = RunText(tFolder.Path(), sConfig + "no.yuv");
    EXPECT_EQ(t.nExit, 255);
    EXPECT_TRUE(t.sOut.ends_with("\n\nopen input yuv file './no.yuv' error\n")) << t;
    for (const char* szName :
         {"comp_96x32_P420.yuv", "motionArea_32x32_P420.yuv", "hogDist_32x32_P420.yuv",
          "HOG_feature/hogmd_golden.txt", "HOG_feature/hogmd_dist.txt"}) {
        EXPECT_EQ(ReadAll(tFolder / "out" / szName), "") << szName;
    }
    const std::string sOut = RunText(tFolder.Path(), sConfig + "\"\"").sOut;
    EXPECT_TRUE(sOut.ends_with("\n\nopen input yuv file '' error\n")) << sOut;
}

// The lengths are of the completed output path, whose last folder need not exist.
TEST(StartUp, OutputFolderIsOneLevelDeepAndNoPathIsCut) {
    const struct {
        std::string sPath;
        const char* szDbgEn;
        int nExit;
    } aRows[] = {{"x/y", "0", 0},
                 {"x/y", "32", 255},
                 {std::string(497, 'o'), "0", 0},
                 {std::string(498, 'o'), "0", 255},
                 {std::string(484, 'o'), "8", 255}};
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", "");
    for (const auto& t : aRows) {
        const Outcome tRun =
            RunText(tFolder.Path(), BaseConfig(32, 32) + "MD_DbgEn = " + t.szDbgEn +
                                        " OutputFilePath = " + t.sPath);
        EXPECT_EQ(tRun.nExit, t.nExit) << t.sPath;
        EXPECT_EQ(tRun.sOut.find("./" + t.sPath) != std::string::npos, t.nExit != 0) << tRun;
    }
    EXPECT_FALSE(fs::exists(tFolder / "x"));
}

// A folder stands where the file should be made.
TEST(OutputFiles, OneThatCannotBeOpenedEndsTheRunWithItsPath) {
    const std::string sDump = "Can't open golden data file: ";
    const struct {
        const char *szDbgEn, *szPath;
        std::string sMessage;  // what stands before the path
        const char* szBehind = "\n";
    } aRows[] = {
        {"2", "./out/comp_96x32_P420.yuv", "open comp file ", " error\n"},
        {"8", "./out/motionArea_32x32_P420.yuv", "open motionArea file ", " error\n"},
        {"16", "./out/hogDist_32x32_P420.yuv", "open hogDist file ", " error\n"},
        {"32", "./out/HOG_feature/hogmd_golden.txt", sDump},
        {"64", "./out/HOG_feature/hogmd_dist.txt", sDump},
        {"32", "./out/HOG_feature/0001_HOGCur.txt", ": "},
        {"32", "./out/HOG_feature/0001_HOGRef.txt", ": "},
        {"32", "./out/HOG_feature/0001_Full.json", ": "},
        {"32", "./out/HOG_feature/0001_Full.csv", ": "},
        {"64", "./out/HOG_feature/0001_HOGDist.txt", ": "},
        {"64", "./out/HOG_feature/0001_HOGDist.json", ": "},
        {"256", "./out/HOG_feature/HOGCount.txt", ": "},
        {"512", "./out/HOG_feature/0001_ObjOut.txt", ": "},
    };
    for (const auto& t : aRows) {
        const TempFolder tFolder;
        WriteAll(tFolder / "in.yuv", std::string(kFrame, '\x40'));
        fs::create_directories(tFolder / t.szPath);
        const Outcome tRun =
            RunText(tFolder.Path(), BaseConfig(32, 32) + "MD_DbgEn = " + t.szDbgEn);
        EXPECT_EQ(tRun.nExit, 255) << t.szPath;
        EXPECT_TRUE(tRun.sOut.ends_with(t.sMessage + t.szPath + t.szBehind)) << tRun;
    }
}

TEST(SetPathSep, AnyBackslashInTheNameDecides) {
    for (const auto& [szName, cSep] : {std::pair<const char*, char>{"dir/MD", '/'},
                                       {"", '/'},
                                       {nullptr, '/'},
                                       {"c:\\a/MD", '\\'}}) {
        cPathSep = '/';
        SetPathSep(szName);
        EXPECT_EQ(cPathSep, cSep) << cSep;
    }
    cPathSep = '/';
}
