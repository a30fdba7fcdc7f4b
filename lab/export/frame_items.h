// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a frame shows over the video: differing and active blocks, distances and the box.
#pragma once

#include <cstdint>
#include <vector>

#include "lab/dumps/frame.h"
#include "lab/export/statistics_file.h"

namespace lab {

enum FrameType : int { kDifferenceType, kActiveType, kDistanceType, kBoxType };

// In the order of their ids, with or without that of the differences.
std::vector<StatisticsType> FrameTypes(bool differences);

// In blocks.
struct BlockRectangle {
    int x, y, width, height;
    uint16_t value;
};

// Rectangles of equal values that are not 0. They cover each such block once.
std::vector<BlockRectangle> JoinEqual(const std::vector<uint16_t>& values, int columns, int rows);

// A block is shown as a square of `stride` pixels at its corner: its real 16 pixels overlap with
// those of its neighbours, and the viewer would mix them. All is cut to a frame of width x height
// pixels. `differences`: a value of each block, 0 or a stage's number and 1; empty for none.
std::vector<StatisticsItem> FrameItems(const Frame& frame, const std::vector<uint16_t>& differences,
                                       int stride, int width, int height);

}  // namespace lab
