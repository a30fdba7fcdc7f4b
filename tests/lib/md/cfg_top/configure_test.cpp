#include "md/cfg_top/configure.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "md/cfg_top/input_map.h"
#include "md/run_state.h"
#include "tests/support/program.h"

namespace {

void Parse(std::string sText) {
    cfgParseContent(sText.data(), static_cast<int32_t>(sText.size()));
}

}  // namespace

TEST(ConfigValue, NumbersConvertAsFarAsTheyGo) {
    const char* const aRows[][2] = {{"0x10", "16"},
                                    {"010", "8"},
                                    {"08", "0"},
                                    {"5abc", "5"},
                                    {"-0x10", "-16"},
                                    {"1e3", "1"},
                                    {"\" 12 \"", "12"},
                                    {"6\r\n", "6"},
                                    {"+7", "7"},
                                    {"2147483648", "2147483647"},
                                    {"-2147483649", "-2147483648"},
                                    {"99999999999999999999", "2147483647"}};
    cfgInitParams();
    for (const auto& [szText, szValue] : aRows) {
        Parse(std::string("MD_DbgEn = ") + szText);
        EXPECT_EQ(std::to_string(tSimParams.tMd.nDbgEn), szValue) << szText;
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
