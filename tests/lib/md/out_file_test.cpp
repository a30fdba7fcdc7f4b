#include <gtest/gtest.h>

#include "tests/support/program.h"

// Full disk from the start (each name leads to a device that is always full), and a limit on a
// file's size that only the larger files meet, in their midst.
TEST(OutFile, ShortWriteWarnsOnceAFileAndTheRunGoesOn) {
    const auto Count = [](const std::string& sText, const std::string& sPart) {
        uintmax_t n = 0;
        for (size_t i = 0; (i = sText.find(sPart, i)) != std::string::npos; ++i) ++n;
        return n;
    };
    constexpr uintmax_t kLimit = 8192;
    const std::string aNames[] = {"comp_192x48_P420.yuv",         "motionArea_64x48_P420.yuv",
                                  "hogDist_64x48_P420.yuv",       "HOG_feature/HOGCount.txt",
                                  "HOG_feature/hogmd_golden.txt", "HOG_feature/hogmd_dist.txt",
                                  "HOG_feature/0001_HOGCur.txt",  "HOG_feature/0001_HOGRef.txt",
                                  "HOG_feature/0001_Full.json",   "HOG_feature/0001_Full.csv",
                                  "HOG_feature/0001_HOGDist.txt", "HOG_feature/0001_HOGDist.json",
                                  "HOG_feature/0001_ObjOut.txt"};
    for (const bool bDevice : {true, false}) {
        const TempFolder tFolder;
        WriteAll(tFolder / "in.yuv", std::string(64 * 48 * 3 / 2 * 4, '\x40'));
        WriteAll(tFolder / "a.cfg", BaseConfig(64, 48) + "MD_DbgEn = 890\n");
        fs::create_directories(tFolder / "out" / "HOG_feature");
        for (const auto& s : aNames) {
            if (bDevice) fs::create_symlink("/dev/full", tFolder / "out" / s);
        }
        const std::string sLimit = bDevice ? "" : "ulimit -f 16; ";  // blocks of 512 bytes
        const Outcome t =
            RunProgram(tFolder.Path(), {"sh", "-c", sLimit + "exec " + MD_PROGRAM + " -d a.cfg"});
        EXPECT_EQ(t.nExit, 0) << t.sErr;
        EXPECT_EQ(Count(t.sOut, "*****frame"), 4U);
        uintmax_t nWarned = 0;
        for (const auto& s : aNames) {
            const bool bCut = bDevice || fs::file_size(tFolder / "out" / s) == kLimit;
            EXPECT_EQ(Count(t.sOut, "[Warning] ./out/" + s), bCut ? 1U : 0U) << s;
            nWarned += bCut ? 1 : 0;
        }
        EXPECT_EQ(Count(t.sOut, "[Warning]"), nWarned) << t.sOut;
        EXPECT_GE(nWarned, 3U);
    }
}
