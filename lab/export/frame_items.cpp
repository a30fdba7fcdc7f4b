// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/export/frame_items.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lab {

namespace {

// Of the stages in their order: white for luma, then yellow, orange, brown, magenta, blue, cyan.
constexpr std::array<const char*, kStageCount> kStageColours = {
    "255;255;255", "255;230;0", "255;140;0", "150;90;30", "255;0;255", "60;60;255", "0;220;220"};

struct Place {
    int stride, width, height;  // pixels
};

// `values`: one a block, or none.
void AddBlocks(const Frame& frame, const std::vector<uint16_t>& values, int type,
               const Place& place, std::vector<StatisticsItem>* items) {
    if (values.empty()) return;
    for (const BlockRectangle& blocks : JoinEqual(values, frame.columns, frame.rows)) {
        const int x = blocks.x * place.stride;
        const int y = blocks.y * place.stride;
        const int w = std::min(blocks.width * place.stride, place.width - x);
        const int h = std::min(blocks.height * place.stride, place.height - y);
        if (w > 0 && h > 0) items->push_back({frame.index, x, y, w, h, type, {blocks.value}});
    }
}

// Four lines: a rectangle would be under the blocks and hide the video.
void AddBox(int64_t frame, const Box& box, const Place& place, std::vector<StatisticsItem>* items) {
    const int left = std::clamp(box.left, 0, place.width - 1);
    const int top = std::clamp(box.top, 0, place.height - 1);
    const int w = std::clamp(box.right, left + 1, place.width) - left;
    const int h = std::clamp(box.bottom, top + 1, place.height) - top;
    const std::vector<std::vector<int>> lines = {
        {0, 0, w, 0}, {w, 0, w, h}, {w, h, 0, h}, {0, h, 0, 0}};
    for (const std::vector<int>& line : lines) {
        items->push_back({frame, left, top, w, h, kBoxType, line});
    }
}

}  // namespace

std::vector<StatisticsType> FrameTypes(bool differences) {
    std::vector<StatisticsType> types = {
        {kActiveType, "Active", "map", {"mapColor;1;255;0;0;0", "gridColor;255;0;0"}},
        {kDistanceType, "Distance", "range", {"defaultRange;0;255;heat", "gridColor;90;90;90"}},
        {kBoxType, "Box", "line", {"vectorColor;0;255;0;255", "gridColor;0;255;0"}}};
    if (!differences) return types;
    StatisticsType difference{kDifferenceType, "Difference", "map", {"gridColor;255;255;255"}};
    for (std::size_t stage = 0; stage < kStageColours.size(); ++stage) {
        difference.properties.push_back("mapColor;" + std::to_string(stage + 1) + ";" +
                                        kStageColours[stage] + ";255");
    }
    types.insert(types.begin(), difference);
    return types;
}

std::vector<BlockRectangle> JoinEqual(const std::vector<uint16_t>& values, int columns, int rows) {
    std::vector<BlockRectangle> done;
    // For each column the rectangle that begins there and reaches down to the row above; -1: none.
    std::vector<int> above(static_cast<std::size_t>(columns), -1);
    for (int y = 0; y < rows; ++y) {
        const auto row = values.begin() + static_cast<std::ptrdiff_t>(y) * columns;
        std::vector<int> here(static_cast<std::size_t>(columns), -1);
        for (int x = 0, next = 0; x < columns; x = next) {
            const uint16_t value = row[x];
            next = static_cast<int>(
                std::find_if(row + x, row + columns, [value](uint16_t v) { return v != value; }) -
                row);
            if (value == 0) continue;
            int& mine = here[static_cast<std::size_t>(x)];
            mine = above[static_cast<std::size_t>(x)];
            if (mine >= 0) {
                BlockRectangle& upper = done[static_cast<std::size_t>(mine)];
                if (upper.width == next - x && upper.value == value) {
                    ++upper.height;
                    continue;
                }
            }
            mine = static_cast<int>(done.size());
            done.push_back({x, y, next - x, 1, value});
        }
        above = here;
    }
    return done;
}

std::vector<StatisticsItem> FrameItems(const Frame& frame, const std::vector<uint16_t>& differences,
                                       int stride, int width, int height) {
    const Place place{stride, width, height};
    std::vector<StatisticsItem> items;
    AddBlocks(frame, differences, kDifferenceType, place, &items);
    AddBlocks(frame, frame.values[kActive], kActiveType, place, &items);
    AddBlocks(frame, frame.values[kDistance], kDistanceType, place, &items);
    if (frame.report) {
        for (const Box& box : frame.report->boxes) AddBox(frame.index, box, place, &items);
    }
    return items;
}

}  // namespace lab
