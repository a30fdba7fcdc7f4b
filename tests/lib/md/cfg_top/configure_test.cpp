#include "md/cfg_top/configure.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "md/cfg_top/input_map.h"
#include "md/run_state.h"
#include "tests/support/program.h"

namespace {

// What a text ends with that configures well and sets nothing: the defaults are not for this chip.
const std::string sReached = "ERROR: MD_MetricMode & 0x1(HOG) is not available for this chip\n";
const std::string sStart = "Setting Default Parameters...\n";
const std::string sNoText = "The configuraton file buffer is NULL.\n";

std::string Repeat(int n, const std::string& s) {
    std::string sAll;
    for (int i = 0; i < n; ++i) sAll += s;
    return sAll;
}

std::string Usage() {
    std::string sText =
        "\n\nUsage:  % [-h] [-d xxx.cfg] [-p XXX=N]## Parameters\n\n## Options\n"
        "   -h :  prints function usage\n"
        "   -d :  use <xxx.cfg> as default file for parameter initializations.\n"
        "         If not used then file defaults to default.cfg in local directory.\n"
        "   -p :  Set parameter <Param> to <Value>. OverWrite the setting in cfg file\n"
        "Example:\n   %  -h\n   %  -d default.cfg\n   %  -d default.cfg -p ThW=5 -p ThH=6\n";
    for (size_t i; (i = sText.find('%')) != std::string::npos;) sText.replace(i, 1, MD_PROGRAM);
    return sText;
}

std::string Around(int i, const std::string& sArgument) {
    return "Error in command line, ac " + std::to_string(i) + ", around string '" + sArgument +
           "', missing -f or -p parameters?\n" + Usage();
}

std::string NoKey(const std::string& sName) {
    return "Parsing error in config file: Parameter Name '" + sName + "' not recognized.";
}

std::string NoNumber(const std::string& sKey, const std::string& sValue) {
    return " Parsing error: Expected numerical value for Parameter of " + sKey + ", found '" +
           sValue + "'.";
}

std::string Outside(const std::string& sKey, const std::string& sShould) {
    return "Error in input parameter " + sKey + ". Check configuration file. Value should " +
           sShould;
}

void Parse(std::string sText) {
    cfgParseContent(sText.data(), static_cast<int32_t>(sText.size()));
}

}  // namespace

TEST(ConfigValue, NumbersConvertAsFarAsTheyGo) {
    const std::pair<const char*, int32_t> aRows[] = {{"0x10", 16},
                                                     {"010", 8},
                                                     {"08", 0},
                                                     {"5abc", 5},
                                                     {"-0x10", -16},
                                                     {"1e3", 1},
                                                     {"\" 12 \"", 12},
                                                     {"6\r\n", 6},
                                                     {"2147483648", INT32_MAX},
                                                     {"+7", 7},
                                                     {"-2147483649", INT32_MIN},
                                                     {"99999999999999999999", INT32_MAX}};
    cfgInitParams();
    for (const auto& [szValue, nValue] : aRows) {
        Parse(std::string("MD_DbgEn = ") + szValue);
        EXPECT_EQ(tSimParams.tMd.nDbgEn, nValue) << szValue;
    }
    Parse("Cls_CarTh = 1e3 Cls_BgTh = .5x");
    EXPECT_EQ(tSimParams.tMd.dCls_CarTh, 1000.0);
    EXPECT_EQ(tSimParams.tMd.dCls_BgTh, 0.5);
}

TEST(ConfigValue, TextsKeepTheirBytesAndClearTheOldOnes) {
    const std::string sLongest(kPathSize - 1, 'y');
    const std::pair<std::string, std::string> aRows[] = {
        {sLongest, sLongest},         {"a\r\n", "a\r"},     {"\"a  b\"", "a  b"}, {"\"a#b\"", "a"},
        {"a,'$(x);\\", "a,'$(x);\\"}, {"\"open\n", "open"}, {"\"\"", ""},
    };
    cfgInitParams();
    for (const auto& [sValue, sStored] : aRows) {
        Parse("InputFilePath = " + sValue);
        char aStored[kPathSize] = {};
        std::memcpy(aStored, sStored.data(), sStored.size());
        EXPECT_EQ(std::memcmp(tSimParams.InputFilePath, aStored, kPathSize), 0) << sValue;
    }
}

TEST(ConfigText, EveryRefusalHasItsTextStatusAndProgress) {
    const std::string sLong(512, 'z');
    const std::string sNoEquals =
        " Parsing error in config file: '=' expected as the second token in each line.";
    const std::string sMany = "Parsing error in config file: more than 600 tokens.\n";
    const auto List = [](const std::string& s) {
        return ".\n\nparsing mulit-param str " + s + " error\n";
    };
    const struct {
        std::string sConfig;
        int nExit;
        std::string sOut, sErr;  // sOut: behind the name of the file
    } aRows[] = {
        {"# nothing\n", 255, "\n\n", sReached},
        {"MD_DbgEn = 1 InputWidth\n=\n 64 left", 255, "..\n\n", sReached},
        {"md_dbgen = 1", 4, "", NoKey("md_dbgen")},
        {Repeat(200, "MD_DbgEn = 1 "), 255, Repeat(200, ".") + "\n\n", sReached},
        {Repeat(200, "MD_DbgEn = 1 ") + "x", 4, "", sMany},
        {"MD_DbgEn = 1\nEND = 1", 4, ".", NoKey("END")},
        {"MD_DbgEn=5 a b", 4, "", NoKey("MD_DbgEn=5")},
        {"MD_DbgEn == 5", 4, "", sNoEquals},
        {"MD_DbgEn 5", 4, "", sNoEquals},
        {"MD_DbgEn = abc", 4, "", NoNumber("MD_DbgEn", "abc")},
        {"Cls_CarTh = -\n", 4, "", NoNumber("Cls_CarTh", "-")},
        {"MD_DbgEn = \"\"", 4, "", NoNumber("MD_DbgEn", "")},
        {"MD_DbgEn = 1 InputWidth =", 4, ".",
         "Parsing error in config file: no value behind 'InputWidth ='.\n"},
        {"InputFilePath = " + sLong, 4, "",
         "Parsing error in config file: value of InputFilePath is longer than 511 bytes: '" +
             sLong + "'.\n"},
        {"MD_ScaledW = 15", 144, ".\n\n", Outside("MD_ScaledW", "be in [16, 1920] range.")},
        {"Cls_CropRate = 1.001 InputFileType = 4", 144, "..\n\n",
         Outside("InputFileType", "be in [0, 3] range.")},
        {"Cls_CropRate = -0.001", 144, ".\n\n",
         Outside("Cls_CropRate", "be in [0.00, 1.00] range.")},
        {"MD_BlkCnt_Th = 0", 144, ".\n\n", Outside("\"MD_BlkCnt_Th\"", "not be smaller than 1.")},
        {"HogDist_TimeAvg_Ratio_Th = -1", 144, ".\n\n",
         Outside("HogDist_TimeAvg_Ratio_Th", "not be smaller than  0.")},
        {"InputFileType = 3 FramesToBeProcessed = -1 Cls_CropRate = 1 MD_BlkCnt_Th = 1", 255,
         "....\n\n", sReached},
        {"MD_DbgEn = -1 Cls_Method = 99 Cls_ModelType = -5 EnableBatch = 7", 255, "....\n\n",
         sReached},
        {"MD_HogGradX = ,1", 255, List(",1"), ""},
        {"MD_HogGradX = 1,", 255, List("1,"), ""},
        {"MD_HogGradY = 1,,2", 255, List("1,,2"), ""},
        {"MD_HogGradY = 1,2,3,4,5,6", 255, List("1,2,3,4,5,6"), ""},
    };
    const TempFolder tFolder;
    for (const auto& t : aRows) {
        const Outcome tRun = RunText(tFolder.Path(), t.sConfig);
        EXPECT_EQ(tRun.nExit, t.nExit) << t.sConfig;
        EXPECT_EQ(tRun.sOut, sStart + "Parsing Configfile...... a.cfg\n" + t.sOut) << t.sConfig;
        EXPECT_EQ(tRun.sErr, t.sErr) << t.sConfig;
    }
}

TEST(CommaList, FieldsReadAsDecimalAndTheRestIsFilled) {
    const std::pair<const char*, std::vector<int32_t>> aRows[] = {
        {"", {9, 9, 9, 9, 9}},
        {"1,-2,+3", {1, -2, 3, 9, 9}},
        {"010,0x10,a, ,4z", {10, 0, 0, 0, 4}},
    };
    for (const auto& [szText, aValues] : aRows) {
        std::vector<int32_t> aGot(5);
        cfgParseMultiParam(szText, aGot.data(), 5, 9);
        EXPECT_EQ(aGot, aValues) << szText;
    }
}

TEST(CommandLine, EveryRefusalHasItsTextStatusAndProgress) {
    const std::string sNone = sStart + "Parsing Configfile...... default.cfg\n";
    const std::string sFull = sStart + "Parsing Configfile...... full.cfg\n\n";
    const std::string sDone = sStart + "Parsing Configfile...... a.cfg\n.\n";
    const std::string sText = sDone + "Parsing command line string '";
    const std::string sNoDefault =
        "Cannot open configuration file default.cfg." + sNoText + Usage();
    const std::string sOver =
        "Unreasonable Filesize 60001 reported by ftell for configuration file over.cfg.";
    const std::string sNoFile = "The configure file content is NULL.\n";
    const struct {
        std::string sOptions;  // one blank between two
        int nExit;
        std::string sOut, sErr;
    } aRows[] = {
        {"-h", 255, sStart, Usage()},
        {"-help a b", 255, sStart, Usage()},
        {"", 255, sNone, sNoDefault},
        {"-f a.cfg", 255, sNone, sNoDefault},
        {"-d a.cfg -hx", 255, sDone, Usage()},
        {"-d a.cfg -d a.cfg", 255, sDone, Around(3, "-d")},
        {"-d a.cfg x", 255, sDone, Around(3, "x")},
        {"-d a.cfg -f", 255, sDone, Around(3, "-f")},
        {"-d a.cfg -f no", 4, sDone, "Cannot open configuration file no." + sNoFile},
        {"-d a.cfg -p -p", 255, sText + "'\nParsing command line string ''\n\n", sReached},
        {"-d a.cfg -params MD_DbgEn= 2", 255, sText + "MD_DbgEn = 2'.\n\n", sReached},
        {"-d a.cfg -p MD_DbgEn=1 x=2", 4, sText + "MD_DbgEn = 1x = 2'.", NoKey("=")},
        {"-d a.cfg -p MD_DbgEn=1 -1", 255, sText + "MD_DbgEn = 1'.\n", Around(5, "-1")},
        {"-d a.cfg -p FramesToBeProcessed=-2", 144, sText + "FramesToBeProcessed = -2'.\n\n",
         Outside("FramesToBeProcessed", "be in [-1, 100000] range.")},
        {"-d a.cfg -p " + std::string(2000, '='), 4, sText + Repeat(2000, " = ") + "'",
         "Parsing error in config file: more than 600 tokens.\n"},
        {"-d a.cfg -f full.cfg", 255, sDone + "Parsing Configfile...... full.cfg\n\n", sReached},
        {"-d a.cfg -f over.cfg", 4, sDone, sOver + sNoFile},
        {"-d full.cfg", 255, sFull + "\n", sReached},
        {"-d over.cfg", 255, sStart + "Parsing Configfile...... over.cfg\n",
         sOver + sNoText + Usage()},
    };
    const TempFolder tFolder;
    WriteAll(tFolder / "a.cfg", "MD_DbgEn = 0");
    WriteAll(tFolder / "full.cfg", std::string(60000, '\n'));
    WriteAll(tFolder / "over.cfg", std::string(60001, '\n'));
    for (const auto& t : aRows) {
        std::istringstream tWords(t.sOptions);
        std::vector<std::string> aOptions;
        for (std::string s; tWords >> s;) aOptions.push_back(s);
        const Outcome tRun = RunMd(tFolder.Path(), aOptions);
        EXPECT_EQ(tRun.nExit, t.nExit) << t.sOptions;
        EXPECT_EQ(tRun.sOut, t.sOut) << t.sOptions;
        EXPECT_EQ(tRun.sErr, t.sErr) << t.sOptions;
    }
    WriteAll(tFolder / "default.cfg", "");
    EXPECT_EQ(RunMd(tFolder.Path(), {"-d"}).sErr, Around(1, "-d"));
    const std::string sPiped = "echo | " MD_PROGRAM " -f /dev/stdin";
    EXPECT_EQ(RunProgram(tFolder.Path(), {"sh", "-c", sPiped}).sErr,
              "Cannot fseek in configuration file /dev/stdin." + sNoFile);
    EXPECT_TRUE(RunMd(tFolder.Path(), {"-d", "."}).sErr.ends_with(sNoText + Usage())) << "a folder";
}

TEST(CommandLine, LaterSettingsWinAndOnlyTheLastIsHeldToItsRange) {
    const TempFolder tFolder;
    const std::string sDefault = tFolder / "sub/a.cfg";
    const std::string sFile = tFolder / "b.cfg";
    fs::create_directory(tFolder / "sub");
    WriteAll(sDefault, "InputWidth = 1 InputHeight = 20000 MD_HogGradX = ,,bad");
    WriteAll(sFile, "InputWidth = 2 MD_HogGradX = 1,2");
    const std::pair<std::vector<std::string>, std::vector<int32_t>> aRows[] = {
        {{"-f", sFile, "-p", "InputWidth=3"}, {3, 1, 2}},
        {{"-p", "InputWidth=3", "-f", sFile}, {2, 1, 2}},
        {{"-p", "InputWidth=3", "-p", "InputWidth=4", "-p", "MD_HogGradX=7"}, {4, 7, 0}}};
    for (const auto& [aOptions, aExpected] : aRows) {
        std::vector<std::string> aAll = {"MD", "-d", sDefault, "-p", "InputHeight=9"};
        aAll.insert(aAll.end(), aOptions.begin(), aOptions.end());
        std::vector<char*> argv;
        for (std::string& s : aAll) argv.push_back(s.data());
        CfgArguments tArguments{static_cast<int32_t>(argv.size()), argv.data()};
        CfgResult tResult{};
        cfgConfigure(&tArguments, &tResult);
        const int32_t* pTaps = tSimParams.tMd.nMD_HogGradX;
        EXPECT_EQ((std::vector{tSimParams.nInputWidth, pTaps[0], pTaps[1]}), aExpected);
        EXPECT_EQ(tResult.szCfgDir, (tFolder / "sub").string()) << "never that of a -f file";
    }
}
