// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/lab/export/statistics_reader.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

const std::string kHead =
    "%;syntax-version;v1.2\n"
    "%;seq-specs;NAME;0;48;40;25;\n"
    "%;type;0;Dist;range;\n"
    "%;defaultRange;0;255;heat\n"
    "%;type;3;Box;line;\n";

std::string Refusal(const std::string& text) {
    try {
        ReadStatistics(text);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "none";
}

// Each of these the viewer takes without a word and then crashes or draws something else.
TEST(StatisticsReader, RefusesWhatBreaksARule) {
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", "line 1: the line has no end"},
        {"%;syntax-version;v1.1\n", "line 1: expected %;syntax-version;v1.2"},
        {kHead, "line 5: no item follows"},
        {kHead + "0;0;0;8;8;0;1", "line 6: the line has no end"},
        {kHead + "0;0;0;8;8;0; 1\n", "line 6: holds a blank"},
        {kHead + "0;0;0;8;8;0;1\r\n", "line 6: holds a blank"},
        {kHead + "0;0;0;8;8;1;1\n", "line 6: type 1 is not declared"},
        {kHead + "0;0;0;8;8;0;0.5\n", "line 6: found \"0.5\", expected a whole number"},
        {kHead + "0;0;0;8;8;0;\n", "line 6: an item has seven fields or more"},
        {kHead + "0;0;0;8;8;0;1;2\n", "line 6: too few or too many values"},
        {kHead + "0;0;0;8;8;3;1;2;3\n", "line 6: too few or too many values"},
        {kHead + "0;41;0;8;8;0;1\n", "line 6: the rectangle is not inside the frame"},
        {kHead + "0;0;-1;8;8;0;1\n", "line 6: the rectangle is not inside the frame"},
        {kHead + "0;0;0;0;8;0;1\n", "line 6: the rectangle is not inside the frame"},
        {kHead + "-1;0;0;8;8;0;1\n", "line 6: frames count from 0"},
        {kHead + "0;0;0;8;8;0;1\n1;0;0;8;8;0;1\n0;8;0;8;8;0;1\n",
         "line 8: the frame's items are torn apart"},
        {kHead + "0;0;0;8;8;0;1\n%;type;4;A;map;\n", "line 7: a header line follows an item"},
        {kHead + "%;type;3;A;map;\n", "line 6: the type is declared twice"},
        {kHead + "%;type;4;A;blob;\n", "line 6: no kind \"blob\""},
        {"%;syntax-version;v1.2\n%;seq-specs;N;0;48;40\n",
         "line 2: seq-specs has fewer than seven fields"},
        {kHead + "0;40;32;8;8;0;1\n0;0;0;48;40;3;0;0;48;40\n", "none"}};
    for (const auto& [text, message] : rows) EXPECT_EQ(Refusal(text), message) << text;
}

}  // namespace
