// The installed tree: the launcher starts the program so that it finds the tools beside it.
#include <gtest/gtest.h>

#include "tests/support/program.h"

TEST(Launcher, ToolsLostFromAnotherFolderOrThroughALink) {
    const TempFolder tFolder;
    const fs::path tTree = tFolder / "a prefix with 'quotes' & $blanks";
    fs::create_directories(tTree / "bin");
    fs::create_directories(tTree / "lib/md");
    fs::create_directories(tFolder / "links");
    fs::create_directories(tFolder / "work");
    fs::copy_file(MD_SOURCE_DIR "/tools/launcher.sh", tTree / "bin/MD");
    fs::copy_file(MD_PROGRAM, tTree / "lib/md/MD");
    for (const char* szTool : {"ffmpeg", "ffprobe"}) {
        fs::create_symlink(fs::path(MD_PROGRAM).parent_path() / szTool, tTree / "lib/md" / szTool);
    }
    fs::create_symlink(tTree / "bin/MD", tFolder / "links/MD");
    fs::create_symlink("MD", tFolder / "links/md-sim");
    WriteAll(tFolder / "work/in.yuv", std::string(32 * 32 * 3 / 2, '\x40'));
    WriteAll(tFolder / "work/a.cfg", BaseConfig(32, 32) + "EnableBatch = 0\nMD_DbgEn = 8\n");

    const std::string sRelative = "../" + tTree.filename().string() + "/bin/MD";
    for (const std::string& sName : {(tTree / "bin/MD").string(), (tFolder / "links/MD").string(),
                                     (tFolder / "links/md-sim").string(), sRelative}) {
        fs::remove_all(tFolder / "work/out");
        const Outcome t = RunProgram(tFolder / "work", {sName, "-d", "a.cfg"});
        EXPECT_EQ(t.nExit, 0) << sName << "\n" << t.sOut << t.sErr;
        EXPECT_TRUE(fs::exists(tFolder / "work/out/motionArea_32x32_P420.mp4")) << sName << t.sOut;
    }
}
