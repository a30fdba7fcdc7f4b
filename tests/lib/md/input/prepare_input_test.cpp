// Whole runs with the real tools beside the program, with scripts in their place, and without any.
#include "md/input/prepare_input.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "md/cfg_top/cfg_text.h"
#include "tests/support/program.h"

namespace {

constexpr size_t kLuma = 64 * 48;
constexpr size_t kFrame = kLuma * 3 / 2;

const std::string& Tool() {
    static const std::string sTool = cfgDirName(MD_PROGRAM) + "/ffmpeg";
    return sTool;
}

const std::string sExec = "INFO: exec: " + Tool() + " -y -hide_banner -loglevel warning ";

// The tests' own use of the tool; "testsrc2" is a moving pattern.
void Make(const fs::path& tFolder, std::vector<std::string> aArguments) {
    aArguments.insert(aArguments.begin(), {Tool(), "-y", "-loglevel", "error"});
    const Outcome t = RunProgram(tFolder, aArguments);
    ASSERT_EQ(t.nExit, 0) << t;
}

void MakeClip(const fs::path& tFolder, const std::string& sName) {
    Make(tFolder, {"-f", "lavfi", "-i", "testsrc2=size=64x48", "-frames:v", "3", "-pix_fmt",
                   "yuv420p", sName});
}

std::string Probe(const fs::path& tPath) {
    return RunProgram("/", {cfgDirName(MD_PROGRAM) + "/ffprobe", "-v", "error", "-show_entries",
                            "stream=codec_name,width,height", "-of", "csv=p=0", tPath})
        .sOut;
}

// What the run printed between configuration and frame loop.
std::string Preparation(const std::string& sOut) {
    const size_t nFrom = sOut.find("\n\n");
    const size_t nTo = std::min(sOut.find("*****frame"), sOut.find("read frame"));
    return nFrom == std::string::npos ? sOut : sOut.substr(nFrom + 2, nTo - nFrom - 2);
}

// Runs on a clip of 64x48 unless sText tells otherwise.
Outcome RunOn(const fs::path& tFolder, const std::string& sText,
              const std::string& sProgram = MD_PROGRAM) {
    return RunText(tFolder, BaseConfig(64, 48) + "MD_Scale_KeepAspectRatio = 1\n" + sText,
                   sProgram);
}

const std::string sScaleWarning =
    "[WARNING]: **************************************************\n"
    "           use ffmpeg to do scale, not match HW Scale Module\n"
    "           to use HW bit-match Scale, use Tessel simulator before MD simulator\n"
    "           **************************************************\n";

std::string ScaledMp4Line(const std::string& sSize) {
    return sExec + "-f rawvideo -pix_fmt yuv420p -s:v " + sSize + " -i ./out/ScaledInput_" + sSize +
           "_P420.yuv -c:v libx264 ./out/ScaledInput_" + sSize + "_P420.mp4\n";
}

struct InputRow {
    std::string sConfig;
    std::string sLog;      // from configuration to frame loop
    std::string sWorking;  // name of the working file
};

}  // namespace

// Every row starts from the same three frames in another wrapping, so an unscaled working file has
// the luma of the clip, byte for byte.
TEST(PrepareInput, EveryTypeReachesTheLoopWithItsLog) {
    const TempFolder tFolder;
    MakeClip(tFolder.Path(), "clip.mp4");
    const auto Unpack = [&](const std::string& sFormat, const std::string& sName) {
        Make(tFolder.Path(), {"-i", "clip.mp4", "-pix_fmt", sFormat, "-f", "rawvideo", sName});
    };
    Unpack("yuv420p", "in.yuv");
    Unpack("yuv422p", "in422.yuv");
    Unpack("yuv422p", "a_64x48_p422.yuv");
    const std::string sClip = ReadAll(tFolder / "in.yuv");
    const auto Luma = [](const std::string& s) {
        return s.substr(0, kLuma) + s.substr(kFrame, kLuma) + s.substr(2 * kFrame, kLuma);
    };
    WriteAll(tFolder / "in400.yuv", Luma(sClip));
    fs::copy_file(tFolder / "clip.mp4", tFolder / "clip_32x32_.mp4");
    fs::copy_file(tFolder / "in.yuv", tFolder / "a_8x8_64x48_P420.yuv");

    const std::string sPreFile = "out/PreInput_64x48_P420.yuv";
    const std::string sCopy = "out/ScaledInput_64x48_P420.yuv";
    const std::string sSmall = "out/ScaledInput_32x24_P420.yuv";
    const std::string sPre = " -c:v rawvideo -pix_fmt yuv420p ./" + sPreFile + "\n";
    const std::string sRaw422 = sExec + "-f rawvideo -pix_fmt yuv422p -s:v 64x48 -i ";
    const auto Size = [](const std::string& sPath, const std::string& sSize) {
        return " input video ./" + sPath + " resolution " + sSize + ", overwrite cfg file\n";
    };
    const auto Scaling = [&](const std::string& sFrom) {
        return "INFO: set output H to 24 to keep Scale AspectRatio\n" + sScaleWarning + sExec +
               "-f rawvideo -pix_fmt yuv420p -s:v 64x48 -i ./" + sFrom +
               " -vf scale=\"32:24\" -c:v rawvideo -pix_fmt yuv420p ./" + sSmall + "\n" +
               ScaledMp4Line("32x24");
    };
    const std::string sFound = "[INFO] new input size detected: ";
    const InputRow aRows[] = {
        {"", "", "in.yuv"},
        {"InputFileType = 1 InputFilePath = clip.mp4 InputWidth = 1920 InputHeight = 1080",
         "Warning:" + Size("clip.mp4", "64x48") + sExec + "-i ./clip.mp4" + sPre, sPreFile},
        {"InputFileType = 1 InputFilePath = clip_32x32_.mp4",
         sFound + "32x32\n[Warning]" + Size("clip_32x32_.mp4", "32x32") +
             "Warning:" + Size("clip_32x32_.mp4", "64x48") + sExec + "-i ./clip_32x32_.mp4" + sPre,
         sPreFile},
        {"InputFileType = 1 InputFilePath = a_8x8_64x48_P420.yuv",
         sFound + "8x8\n" + sFound + "64x48\n", "a_8x8_64x48_P420.yuv"},
        {"InputFileType = 1 InputFilePath = a_64x48_p422.yuv InputWidth = 1",
         sFound + "64x48\n[Warning]" + Size("a_64x48_p422.yuv", "64x48") + sRaw422 +
             "./a_64x48_p422.yuv" + sPre,
         sPreFile},
        {"InputFileType = 2 InputFilePath = in400.yuv", "", sPreFile},
        {"InputFileType = 3 InputFilePath = in422.yuv", sRaw422 + "./in422.yuv" + sPre, sPreFile},
        {"MD_DbgEn = 8192", ScaledMp4Line("64x48"), sCopy},
        {"MD_DbgEn = 8192 InputFileType = 2 InputFilePath = in400.yuv", ScaledMp4Line("64x48"),
         sCopy},
        {"MD_ScaledW = 32 InputFileType = 2 InputFilePath = in400.yuv", Scaling(sPreFile), sSmall},
        {"MD_ScaledW = 32", Scaling("in.yuv"), sSmall},
    };
    for (const InputRow& t : aRows) {
        fs::remove_all(tFolder / "out");
        const Outcome tRun = RunOn(tFolder.Path(), t.sConfig);
        EXPECT_EQ(tRun.nExit, 0) << tRun;
        EXPECT_EQ(Preparation(tRun.sOut), t.sLog) << t.sConfig;
        EXPECT_NE(tRun.sOut.find("*****frame 2\n"), std::string::npos) << "all three frames";
        const std::string sWorking = ReadAll(tFolder / t.sWorking);
        EXPECT_EQ(sWorking.size(), 3 * kFrame / (t.sWorking == sSmall ? 4 : 1)) << t.sConfig;
        EXPECT_TRUE(t.sWorking == sSmall || Luma(sWorking) == Luma(sClip)) << t.sConfig;
        if (t.sWorking == sCopy) {
            EXPECT_EQ(Probe(tFolder / "out/ScaledInput_64x48_P420.mp4"), "h264,64,48\n");
        }
    }
    EXPECT_EQ(Probe(tFolder / "out/ScaledInput_32x24_P420.mp4"), "h264,32,24\n");
}

TEST(PrepareInput, PathsAreDataAndNeverRun) {
    const TempFolder tFolder;
    const std::string sNasty = "a b;'q\" $(touch ran1) `touch ran2` & %d";
    const std::string sInput = "in $(touch ran3);'touch ran4'.mp4";
    const fs::path tWork = tFolder / sNasty;
    const fs::path tOut = tWork / "o;touch ran5 > ran6";
    fs::create_directory(tWork);
    CopyMd(tWork);
    for (const char* szTool : {"ffmpeg", "ffprobe"}) {
        fs::create_symlink(fs::path(Tool()).parent_path() / szTool, tWork / szTool);
    }
    MakeClip(tWork, "./" + sInput);
    WriteAll(tWork / "a.cfg", BaseConfig(64, 48) + "InputFileType = 1 MD_DbgEn = 26\n" +
                                  "MD_ScaledW = 32 MD_ScaledH = 32 EnableBatch = 0\n" +
                                  "InputFilePath = \"" + sInput + "\"\n" + "OutputFilePath = \"" +
                                  tOut.filename().string() + "\"");
    const Outcome t = RunProgram(tFolder.Path(), {sNasty + "/MD", "-d", sNasty + "/a.cfg"});
    EXPECT_EQ(t.nExit, 0) << t;
    for (const std::string sName :
         {"ScaledInput_32x32_P420.mp4", "motionArea_32x32_P420.mp4", "hogDist_32x32_P420.mp4"}) {
        EXPECT_EQ(Probe(tOut / sName), "h264,32,32\n");
    }
    EXPECT_EQ(Probe(tOut / "comp_96x32_P420.mp4"), "h264,96,32\n");
    for (const auto& tEntry : fs::recursive_directory_iterator(tFolder.Path())) {
        EXPECT_FALSE(tEntry.path().filename().string().starts_with("ran")) << tEntry;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(tFolder.Path()), {}), 1) << "nothing else made";
}

TEST(PrepareInput, OddSizesThatTheToolWouldDeliverAreRefused) {
    const struct {
        int nType, nInput, nW, nH;  // nInput: width of the input, which is two higher
        bool bPasses;
    } aRows[] = {{0, 32, 33, 32, false}, {0, 32, 32, 33, false}, {1, 33, 33, 35, false},
                 {3, 33, 33, 35, false}, {1, 33, 34, 34, true},  {2, 33, 33, 35, true},
                 {0, 33, 33, 35, true}};
    const TempFolder tFolder;
    MakeClip(tFolder.Path(), "in.yuv");
    Make(tFolder.Path(), {"-f", "lavfi", "-i", "testsrc2=size=33x35", "-frames:v", "2", "-c:v",
                          "ffv1", "-pix_fmt", "yuv444p", "odd.mkv"});
    for (const auto& t : aRows) {
        const auto Set = [](const std::string& sKey, int n) {
            return sKey + " = " + std::to_string(n) + "\n";
        };
        const Outcome tRun = RunText(
            tFolder.Path(), BaseConfig(t.nInput, t.nInput + 2) + Set("InputFileType", t.nType) +
                                Set("MD_ScaledW", t.nW) + Set("MD_ScaledH", t.nH) +
                                (t.nType == 1 ? "InputFilePath = odd.mkv" : ""));
        EXPECT_EQ(tRun.nExit, t.bPasses ? 0 : 1) << tRun;
        const std::string sSize = std::to_string(t.nW) + "x" + std::to_string(t.nH);
        EXPECT_EQ(tRun.sOut.find("[ERROR] working size " + sSize) != std::string::npos, !t.bPasses);
        EXPECT_EQ(fs::exists(tFolder / ("out/ScaledInput_" + sSize + "_P420.yuv")), t.nW == 34);
    }
}

// Scripts stand where the tools should be: the converter does nothing, the prober what a row says.
TEST(PrepareInput, ToolsAreJudgedByTheFilesThatTheyLeave) {
    const std::string sNot = " ffmpeg/ffprobe is not exist for ";
    const std::string sNoConvert = "\n\n[ERROR]" + sNot + "converting input yuv420p\n";
    const std::string sNoSize = "\n\n[ERROR] auto detect W,H fail\n";
    const std::string sFinish = "finish.\nfinish.\n", sNone = "FramesToBeProcessed = 0 ";
    const auto Bad = [](const std::string& s) {
        return "ERROR: get W/H from ./out/input_resolution.txt fail: " + s + "\n";
    };
    const auto NoFile = [](const std::string& s) {
        return "ERROR: generate YUV420p file " + s + " fail\n";
    };
    const std::string sSmall = "ScaledInput_32x24_P420.yuv", sPre = "./out/PreInput_64x48_P420.yuv";
    const std::string sAny = "InputFileType = 1 ";
    const struct {
        std::string sConfig;
        const char* szProber;   // null: there is no converter
        std::string sEnd;       // of the log
        std::string sOld = "";  // a file of an earlier run
    } aRows[] = {
        {sAny, "", Bad("0, 0")},
        {sAny, "echo 64", Bad("64, 0")},
        {sAny, "echo; echo 48", Bad("0, 48")},
        {sAny, "echo N/A; echo 48x", Bad("0, 48")},
        {sAny, "printf '%0300d\\n48\\n' 0", Bad("0, 0")},
        {sAny, "printf '64\\r\\n48'", NoFile(sPre)},
        {sAny, "echo -64; echo 48", NoFile("./out/PreInput_-64x48_P420.yuv")},
        {sAny, "echo 64; echo 48; exit 3", sFinish, "PreInput_64x48_P420.yuv"},
        {sAny + "OutputFilePath = x/y", "", "ERROR: can't open ./x/y/input_resolution.txt\n"},
        {sAny + "InputFilePath = a_1x2147483647_P420.yuv", "",
         "[ERROR] input size 1x2147483647 gives no usable working height\n"},
        {"InputFileType = 3", "", NoFile(sPre)},
        {"InputFileType = 3 InputWidth = 0", "", sNoSize},
        {"InputFileType = 3 InputHeight = 0", "", sNoSize},
        {"InputFileType = 2 InputFilePath = no.yuv", "", sFinish},
        {"InputFileType = 2 OutputFilePath = x/y", "", NoFile("./x/y/PreInput_64x48_P420.yuv")},
        {"MD_ScaledW = 32", "",
         "\nERROR: generate Scaled YUV420p file ./out/" + sSmall + " fail\n"},
        {"MD_ScaledW = 32", "", sFinish, sSmall},
        {sAny + "InputFilePath = a.mp4", nullptr, sNoConvert},
        {"InputFileType = 2", nullptr, sNoConvert},
        {"InputFileType = 3 InputWidth = 0", nullptr, sNoConvert},
        {"InputWidth = 0", nullptr, sNoSize},
        {"MD_ScaledW = 32", nullptr, "AspectRatio\n[ERROR]" + sNot + "scaling input\n"},
        {sNone + "MD_DbgEn = 8192", nullptr,
         "\n\n[Warning] nDbgEn BIT13 is ignored because ffmpeg/ffprobe is not exist\n" + sFinish},
        {sNone + "EnableBatch = 0", nullptr,
         "\n\n[Warning]" + sNot + "converting output mp4\n" + sFinish},
        {sNone + "EnableBatch = 1", nullptr, "\n\n" + sFinish}};
    for (const auto& t : aRows) {
        const TempFolder tFolder;
        CopyMd(tFolder.Path());
        if (t.szProber != nullptr) WriteScript(tFolder / "ffmpeg", "exit 1\n");
        WriteScript(tFolder / "ffprobe",
                    std::string(t.szProber == nullptr ? "" : t.szProber) + "\n");
        WriteAll(tFolder / "in.yuv", std::string(kFrame, '\x40'));
        fs::create_directory(tFolder / "out");
        if (!t.sOld.empty()) WriteAll(tFolder / "out" / t.sOld, "");
        const Outcome tRun = RunOn(tFolder.Path(), t.sConfig, "./MD");
        EXPECT_EQ(tRun.nExit, t.sEnd.ends_with(sFinish) ? 0 : 1) << t.sConfig << tRun;
        EXPECT_TRUE(tRun.sOut.ends_with(t.sEnd)) << t.sConfig << tRun;
    }
}

TEST(RunCommand, ChildReadsNothingOfOursAndTheLogKeepsItsOrder) {
    const TempFolder tFolder;
    CopyMd(tFolder.Path());
    WriteScript(tFolder / "ffmpeg", "echo child\n");
    WriteScript(tFolder / "ffprobe", "cat > got; echo 64; echo 48\n");
    fs::create_directory(tFolder / "out");
    WriteAll(tFolder / "out/PreInput_64x48_P420.yuv", "");
    WriteAll(tFolder / "a.cfg", BaseConfig(64, 48) + "InputFileType = 1");
    const Outcome t = RunProgram(tFolder.Path(), {"sh", "-c", "echo ours | ./MD -d a.cfg"});
    EXPECT_EQ(ReadAll(tFolder / "got"), "");
    EXPECT_NE(t.sOut.find("./out/PreInput_64x48_P420.yuv\nchild\nread frame 0"), std::string::npos)
        << t;
}

// Quotes in a path take four bytes each in its quoted form.
TEST(PrepareInput, CommandsThatDoNotFitAreNotRun) {
    const TempFolder tFolder;
    const std::string sQuotes(200, '\'');
    WriteAll(tFolder / "in.yuv", std::string(kFrame, '\x40'));
    const Outcome tRefused =
        RunOn(tFolder.Path(), "InputFileType = 1 InputFilePath = " + sQuotes + "/" + sQuotes);
    EXPECT_EQ(tRefused.nExit, 1);
    EXPECT_NE(tRefused.sOut.find("\n\n[ERROR] "), std::string::npos) << tRefused;
    EXPECT_FALSE(fs::exists(tFolder / "out/input_resolution.txt"));

    CopyMd(tFolder.Path());
    std::string sProgram = "./MD";
    while (sProgram.size() < 600) sProgram = "./" + sProgram;
    const Outcome tFar = RunOn(tFolder.Path(), "", sProgram);
    EXPECT_EQ(tFar.nExit, 1);
    EXPECT_TRUE(tFar.sOut.ends_with("\n\n[ERROR] ffmpeg path is too long\n")) << tFar;

    const Outcome tWarned =
        RunOn(tFolder.Path(), "MD_DbgEn = 8 EnableBatch = 0 OutputFilePath = " + sQuotes);
    EXPECT_EQ(tWarned.nExit, 0);
    EXPECT_NE(tWarned.sOut.find("mp4 format!\n[Warning] "), std::string::npos) << tWarned;
    EXPECT_EQ(fs::file_size(tFolder / sQuotes / "motionArea_64x48_P420.yuv"), kFrame);
}
