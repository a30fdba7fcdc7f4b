#include "lab/export/statistics_file.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "lab/tool/error.h"

namespace {

const std::string kHead =
    "%;syntax-version;v1.2\n"
    "%;seq-specs;NAME;0;48;40;25;\n"
    "%;type;0;Dist;range;\n"
    "%;defaultRange;0;255;heat\n"
    "%;type;3;Box;line;\n";

std::string Refusal(const std::string& text) {
    try {
        lab::ParseStatistics("f", text);
    } catch (const lab::Error& error) {
        return error.what();
    }
    return "none";
}

// Each of these the viewer takes without a word and then crashes or draws something else.
TEST(StatisticsFile, EveryRuleIsHeld) {
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", "f:1: the line has no end"},
        {"%;syntax-version;v1.1\n", "f:1: expected %;syntax-version;v1.2"},
        {kHead, "f:5: no item follows"},
        {kHead + "0;0;0;8;8;0;1", "f:6: the line has no end"},
        {kHead + "0;0;0;8;8;0; 1\n", "f:6: holds a blank"},
        {kHead + "0;0;0;8;8;0;1\r\n", "f:6: holds a blank"},
        {kHead + "0;0;0;8;8;1;1\n", "f:6: type 1 is not declared"},
        {kHead + "0;0;0;8;8;0;0.5\n", "f:6: found \"0.5\", expected a whole number"},
        {kHead + "0;0;0;8;8;0;\n", "f:6: an item has seven fields or more"},
        {kHead + "0;0;0;8;8;0;1;2\n", "f:6: too few or too many values"},
        {kHead + "0;0;0;8;8;3;1;2;3\n", "f:6: too few or too many values"},
        {kHead + "0;41;0;8;8;0;1\n", "f:6: the rectangle is not inside the frame"},
        {kHead + "0;0;-1;8;8;0;1\n", "f:6: the rectangle is not inside the frame"},
        {kHead + "0;0;0;0;8;0;1\n", "f:6: the rectangle is not inside the frame"},
        {kHead + "-1;0;0;8;8;0;1\n", "f:6: frames count from 0"},
        {kHead + "0;0;0;8;8;0;1\n1;0;0;8;8;0;1\n0;8;0;8;8;0;1\n",
         "f:8: the frame's items are torn apart"},
        {kHead + "0;0;0;8;8;0;1\n%;type;4;A;map;\n", "f:7: a header line follows an item"},
        {kHead + "%;type;3;A;map;\n", "f:6: the type is declared twice"},
        {kHead + "%;type;4;A;blob;\n", "f:6: no kind \"blob\""},
        {"%;syntax-version;v1.2\n%;seq-specs;N;0;48;40\n",
         "f:2: seq-specs has fewer than seven fields"},
        {kHead + "0;40;32;8;8;0;1\n0;0;0;48;40;3;0;0;48;40\n", "none"}};
    for (const auto& [text, message] : rows) EXPECT_EQ(Refusal(text), message) << text;
}

TEST(StatisticsFile, WhatIsWrittenReadsBack) {
    const lab::StatisticsHeader header{
        48,
        40,
        {{0, "Dist", "range", {"defaultRange;0;255;heat", "gridColor;1;2;3"}},
         {1, "Box", "line", {}}}};
    const std::vector<lab::StatisticsItem> items = {{7, 0, 8, 16, 24, 0, {213}},
                                                    {7, 0, 0, 48, 40, 1, {0, 0, 48, 40}},
                                                    {9, 40, 32, 8, 8, 0, {1}}};
    std::string text = HeaderText(header);
    for (const lab::StatisticsItem& item : items) text += ItemText(item);
    const lab::Statistics read = lab::ParseStatistics("f", text);
    EXPECT_EQ(read.items, items);
    EXPECT_EQ(read.header.width, 48);
    EXPECT_EQ(read.header.height, 40);
    ASSERT_EQ(read.header.types.size(), 2U);
    EXPECT_EQ(read.header.types[0].properties, header.types[0].properties);
    EXPECT_EQ(read.header.types[1].kind, "line");
}

}  // namespace
