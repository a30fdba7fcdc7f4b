// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/cfg_top/configure.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "md/run_state.h"

namespace {

void Parse(std::string sText) {
    cfgParseContent(sText.data(), static_cast<int32_t>(sText.size()));
}

}  // namespace

TEST(ConfigValue, NumbersConvertAsFarAsTheyGo) {
    const char* const aRows[][2] = {{"0x10", "16"},
                                    {"010", "8"},
                                    {"08", "0"},
                                    {"0b11", "0"},  // binary is read nowhere
                                    {"\" -0B1\"", "0"},
                                    {"0", "0"},
                                    {"0xg", "0"},
                                    {"0x", "0"},
                                    {"-010", "-8"},
                                    {"+0X1f", "31"},
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
