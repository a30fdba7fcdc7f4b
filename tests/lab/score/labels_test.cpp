// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/score/labels.h"

#include <gtest/gtest.h>

#include "lab/tool/error.h"

namespace lab {
namespace {

TEST(Labels, MayHoldCommentsBlanksAndEmptyLines) {
    const Labels labels = ParseLabels(
        "first,last,left,top,right,bottom,what\r\n"
        "# a comment\n\n"
        " 3 , 3 , 0,1,2,3 , motion \r\n"
        "4,9,,,,,ignore",
        "x.csv");
    ASSERT_EQ(labels.size(), 2U);
    EXPECT_EQ(labels[0].first, 3);
    EXPECT_EQ(labels[0].box, (Box{0, 1, 2, 3}));
    EXPECT_FALSE(labels[0].ignore);
    EXPECT_EQ(labels[1].last, 9);
    EXPECT_FALSE(labels[1].box.has_value());
    EXPECT_TRUE(labels[1].ignore);
    EXPECT_TRUE(ParseLabels("", "x.csv").empty());
    EXPECT_EQ(ParseLabels("\xEF\xBB\xBF"
                          "1,2,,,,,motion\r\n",
                          "x.csv")
                  .size(),
              1U);
}

TEST(Labels, ARowThatCannotBeReadNamesItsLine) {
    const struct {
        const char* text;
        const char* message;
    } rows[] = {
        {"1,2,motion", "x.csv:1: a row has 7 columns"},
        {"1,2,,,,,motion,", "x.csv:1: a row has 7 columns"},
        {"\n1,two,,,,,motion", "x.csv:2: two is not a number"},
        {"-1,2,,,,,motion", "x.csv:1: -1 is not a number"},
        {"1,99999999999,,,,,motion", "is not a number from 0 to 2147483647"},
        {"2,1,,,,,motion", "the last frame is before the first"},
        {"1,2,3,,,,motion", "a box has all four edges or none"},
        {"1,2,9,0,8,5,motion", "the box ends before it begins"},
        {"1,2,,,,,moton", "moton is neither motion nor ignore"},
    };
    for (const auto& row : rows) {
        try {
            ParseLabels(row.text, "x.csv");
            ADD_FAILURE() << row.text;
        } catch (const Error& error) {
            EXPECT_NE(std::string(error.what()).find(row.message), std::string::npos)
                << error.what();
        }
    }
}

}  // namespace
}  // namespace lab
