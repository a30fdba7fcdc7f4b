// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A value of each block of a frame as lines of characters, with the box around blocks and block
// numbers at the edges. Two drawings: pixels of colour, two in a character, and digits.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lab {

// In block edges: 0 is left of column 0 or above row 0, n after column or row n - 1.
struct BlockEdges {
    int left, top, right, bottom;  // left < right, top < bottom
};

enum class Ramp {
    kHeat,  // 0 dark grey, then purple, red, yellow, white
    kGrey,
};

struct BlockMap {
    int columns, rows;             // at least 1
    std::vector<uint16_t> values;  // row by row from the top left
    int full;                      // end of the scale, 1 or 255; a larger value counts as it
    Ramp ramp;
    std::optional<BlockEdges> box;
};

// What both drawings do with a map that is too wide for `width` columns, 20 or more: squares of
// blocks share a place, which shows their largest value.

// Three digits a block where they fit, else one: 1 to 9 are ninths of the scale, a dot is zero. The
// box runs between the digits.
std::string DrawDigits(const BlockMap& whole, int width);

// A character shows two pixels, one above the other; a block is one pixel, or two by two where they
// fit into `width` and `height`. Every other pixel of the outer blocks of the box is green.
// `true_colour`: 24-bit colours, else the fixed 216 colours and greys of a 256-colour terminal.
std::string DrawColours(const BlockMap& whole, int width, int height, bool true_colour);

}  // namespace lab
