// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/show/block_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

namespace {

lab::BlockMap SmallMap() {
    return {5,
            4,
            {0, 1,   0,   0, 0,  //
             0, 29,  28,  0, 0,  //
             0, 133, 255, 2, 0,  //
             0, 0,   0,   0, 0},
            255,
            lab::Ramp::kHeat,
            lab::BlockEdges{1, 1, 4, 3}};
}

// Characters of the longest line: escape sequences take no place, later bytes of a character none.
int Width(const std::string& text) {
    int longest = 0, width = 0;
    bool escape = false;
    for (const char c : text) {
        if (c == '\033') escape = true;
        if (c == '\n') width = 0;
        if (!escape && c != '\n' && (c & 0xC0) != 0x80) ++width;
        if (escape && c == 'm') escape = false;
        longest = std::max(longest, width);
    }
    return longest;
}

TEST(BlockMap, DigitsAreNinthsAndTheBoxRunsBetweenThem) {
    EXPECT_EQ(lab::DrawDigits(SmallMap(), 20),
              "  0\n"
              "0 . 1 . . .\n"
              "   +-----+\n"
              "1 .|1 1 .|.\n"
              "2 .|5 9 1|.\n"
              "   +-----+\n"
              "3 . . . . .\n"
              ". is 0, 1 to 9 are ninths of 255\n");
}

TEST(BlockMap, NumbersAreWholeWhereTheyFit) {
    lab::BlockMap map = SmallMap();
    map.box = lab::BlockEdges{0, 0, 5, 3};
    const std::string exact =
        "    0\n"
        " +-------------------+\n"
        "0|  .   1   .   .   .|\n"
        "1|  .  29  28   .   .|\n"
        "2|  . 133 255   2   .|\n"
        " +-------------------+\n"
        "3   .   .   .   .   .\n"
        ". is 0\n";
    EXPECT_EQ(lab::DrawDigits(map, 22), exact);
    EXPECT_NE(lab::DrawDigits(map, 21), exact);
}

TEST(BlockMap, SquaresShareAPlaceThatShowsTheLargest) {
    lab::BlockMap map{
        40, 3, std::vector<uint16_t>(120), 255, lab::Ramp::kHeat, lab::BlockEdges{1, 0, 40, 2}};
    map.values[13] = 255;
    map.values[40 + 12] = 7;
    map.values[80 + 38] = 7;
    EXPECT_EQ(lab::DrawDigits(map, 30),
              "  0         15        30\n"
              " +---------------------------+\n"
              "0|. . . . 9 . . . . . . . 1 .|\n"
              " +---------------------------+\n"
              ". is 0, 1 to 9 are ninths of 255, largest of 3 x 3 blocks\n");
}

TEST(BlockMap, NoLineIsWiderThanAllowed) {
    for (int columns = 1; columns <= 300; columns += columns < 100 ? 1 : 37) {
        for (int width = 20; width <= 200; width += 7) {
            for (const int full : {1, 255}) {
                lab::BlockMap map{
                    columns, 12, {}, full, lab::Ramp::kGrey, lab::BlockEdges{0, 0, columns, 12}};
                map.values.assign(static_cast<std::size_t>(columns * 12), 300);
                std::string digits = lab::DrawDigits(map, width);
                digits.erase(digits.rfind(". is"));  // the legend may wrap
                EXPECT_LE(Width(digits), width) << columns;
                std::string colours = lab::DrawColours(map, width, 24, false);
                colours.erase(colours.rfind("\n   0"));
                EXPECT_LE(Width(colours), width) << columns;
            }
        }
    }
}

// Two pixels a character, one above the other; where twice the size fits, four characters a pair of
// blocks.
TEST(BlockMap, ACharacterHasTheColoursOfTwoPixels) {
    const lab::BlockMap map{2, 3, {0, 255, 0, 255, 1, 0}, 255, lab::Ramp::kGrey, {}};
    const std::string upper_half = "\u2580";
    std::istringstream small(lab::DrawColours(map, 80, 2, true));
    std::string line;
    std::getline(small, line);
    EXPECT_EQ(line, "  0");
    std::getline(small, line);
    EXPECT_EQ(line, "0 \033[38;2;0;0;0;48;2;0;0;0m" + upper_half +
                        "\033[38;2;255;255;255;48;2;255;255;255m" + upper_half + "\033[0m");
    std::getline(small, line);
    EXPECT_EQ(line, "2 \033[38;2;1;1;1;49m" + upper_half + "\033[38;2;0;0;0;49m" + upper_half +
                        "\033[0m");

    std::istringstream large(lab::DrawColours(map, 80, 3, false));
    std::getline(large, line);
    std::getline(large, line);
    EXPECT_EQ(line, "0 \033[38;5;16;48;5;16m" + upper_half + upper_half +
                        "\033[38;5;231;48;5;231m" + upper_half + upper_half + "\033[0m");
}

TEST(BlockMap, TheBoxIsADottedRingInItsOuterBlocks) {
    const lab::BlockMap map{
        4, 4, std::vector<uint16_t>(16), 255, lab::Ramp::kHeat, lab::BlockEdges{0, 0, 3, 3}};
    std::string text = lab::DrawColours(map, 80, 1, true);
    text = text.substr(0, text.rfind("  0 "));
    int green = 0;
    for (std::size_t at = text.find("2;0;215;95"); at != std::string::npos;
         at = text.find("2;0;215;95", at + 1)) {
        ++green;
    }
    EXPECT_EQ(green, 4) << "the corners; the dots between them are left for the values";
}

}  // namespace
