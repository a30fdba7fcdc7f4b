// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Statistics files of YUView: blocks and lines with values, drawn over a video. Text, one item a
// line. The viewer checks little and crashes on much, so a caller keeps to its rules: integers
// only, no blanks, every type declared, rectangles inside the frame.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lab {

struct StatisticsType {
    int id;
    std::string name;  // no blanks, no semicolon
    // How many values an item has, and what they are. "map": one, each with a colour of its own.
    // "range": one on a colour scale. "vector": two. "line": x1, y1, x2, y2 from the item's corner.
    std::string kind;
    // What follows "%;" in the lines below the type's own: "mapColor;1;255;0;0;200".
    std::vector<std::string> properties;
};

struct StatisticsHeader {
    int width, height;                  // of the video, pixels
    std::vector<StatisticsType> types;  // the viewer draws the first on top, but lines above all
};

struct StatisticsItem {
    int64_t frame;            // from 0
    int x, y, width, height;  // pixels, inside the frame
    int type;                 // an id
    std::vector<int> values;  // as many as the kind has

    bool operator==(const StatisticsItem&) const = default;
};

// Lines with their ends. At least one item must follow a header, and the items of a frame come
// one after another.
std::string HeaderText(const StatisticsHeader& header);
std::string ItemText(const StatisticsItem& item);

}  // namespace lab
