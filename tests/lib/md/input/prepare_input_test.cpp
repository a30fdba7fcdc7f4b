#include "md/input/prepare_input.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/program.h"

namespace {

std::string Probe(const fs::path& tFolder, const fs::path& tPath) {
    return RunProgram(tFolder, {"./ffprobe", "-v", "error", "-show_entries",
                                "stream=codec_name,width,height", "-of", "csv=p=0", tPath})
        .sOut;
}

}  // namespace

TEST(PrepareInput, PathsAreDataAndNeverRun) {
    const TempFolder tFolder;
    const std::string sInput = "in $(touch ran3);'touch ran4'.mp4";
    const fs::path tWork = tFolder / "a b;'q\" $(touch ran1) `touch ran2` & %d";
    const fs::path tOut = tWork / "o;touch ran5 > ran6";
    fs::create_directory(tWork);
    CopyMd(tWork);
    for (const char* szTool : {"ffmpeg", "ffprobe"}) {
        fs::create_symlink(fs::path(MD_PROGRAM).parent_path() / szTool, tWork / szTool);
    }
    RunProgram(tWork, {"./ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc2=size=64x48",
                       "-frames:v", "3", "./" + sInput});
    WriteAll(tWork / "a.cfg", BaseConfig(64, 48) + "InputFileType = 1 MD_DbgEn = 26\n" +
                                  "MD_ScaledW = 32 MD_ScaledH = 32 EnableBatch = 0\n" +
                                  "InputFilePath = \"" + sInput + "\"\n" + "OutputFilePath = \"" +
                                  tOut.filename().string() + "\"");
    const std::string sName = tWork.filename();
    const Outcome t = RunProgram(tFolder.Path(), {sName + "/MD", "-d", sName + "/a.cfg"});
    EXPECT_EQ(t.nExit, 0) << t;
    for (const std::string sVideo : {"ScaledInput_32x32", "motionArea_32x32", "hogDist_32x32"}) {
        EXPECT_EQ(Probe(tWork, tOut / (sVideo + "_P420.mp4")), "h264,32,32\n");
    }
    EXPECT_EQ(Probe(tWork, tOut / "comp_96x32_P420.mp4"), "h264,96,32\n");
    for (const auto& tEntry : fs::recursive_directory_iterator(tFolder.Path())) {
        EXPECT_FALSE(tEntry.path().filename().string().starts_with("ran")) << tEntry;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(tFolder.Path()), {}), 1) << "nothing else made";
}
