// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a folder or file is called never runs as a command, whatever is in the name.
#include <gtest/gtest.h>

#include <algorithm>

#include "md/cfg_top/cfg_text.h"
#include "tests/support/program.h"

TEST(ToolPaths, AreDataAndNeverRun) {
    const TempFolder tFolder;
    const fs::path tTools = cfgDirName(MD_PROGRAM);
    const fs::path tHome = tFolder / "a b;'q\" $(touch ran1) `touch ran2` & %d";
    const std::string sInput = "in $(touch ran3);'touch ran4'.mp4";
    const std::string sOutput = "o;touch ran5 > ran6";
    fs::create_directory(tHome);
    CopyMd(tHome);
    for (const char* szTool : {"ffmpeg", "ffprobe"}) {
        fs::create_symlink(tTools / szTool, tHome / szTool);
    }
    const Outcome tClip = RunProgram(tHome, {"./ffmpeg", "-v", "error", "-f", "lavfi", "-i",
                                             "testsrc2=size=32x32", "-frames:v", "3", sInput});
    ASSERT_EQ(tClip.nExit, 0) << tClip;
    WriteAll(tHome / "a.cfg", BaseConfig(16, 16) +
                                  "InputFileType = 1\nMD_DbgEn = 26\nEnableBatch = 0\n"
                                  "InputFilePath = \"" +
                                  sInput + "\"\nOutputFilePath = \"" + sOutput + "\"\n");
    const Outcome t = RunProgram(tFolder.Path(), {tHome / "MD", "-d", tHome / "a.cfg"});
    EXPECT_EQ(t.nExit, 0) << t;
    EXPECT_EQ(std::distance(fs::directory_iterator(tFolder.Path()), {}), 1) << "something ran";
    EXPECT_EQ(std::distance(fs::directory_iterator(tHome), {}), 6) << "something ran";
    std::vector<std::string> aNames;
    for (const auto& [sName, sBytes] : ReadFolder(tHome / sOutput)) aNames.push_back(sName);
    const std::vector<std::string> aWant = {
        "PreInput_32x32_P420.yuv",  "ScaledInput_16x16_P420.mp4", "ScaledInput_16x16_P420.yuv",
        "comp_48x16_P420.mp4",      "comp_48x16_P420.yuv",        "hogDist_16x16_P420.mp4",
        "hogDist_16x16_P420.yuv",   "input_resolution.txt",       "motionArea_16x16_P420.mp4",
        "motionArea_16x16_P420.yuv"};
    EXPECT_EQ(aNames, aWant);
    const Outcome tProbe =
        RunProgram(tHome / sOutput,
                   {tTools / "ffprobe", "-v", "error", "-show_entries",
                    "stream=codec_name,width,height", "-of", "csv=p=0", "comp_48x16_P420.mp4"});
    EXPECT_EQ(tProbe.sOut, "h264,48,16\n");
}
