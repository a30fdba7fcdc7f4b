// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The blocks that differ between two runs, as `mdlab compare --map` leaves them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "lab/dumps/frame.h"

namespace lab {

struct DifferingBlock {
    int x, y;
    Stage stage;  // the earliest that differs there
};

using DifferenceMap = std::map<int64_t, std::vector<DifferingBlock>>;  // by frame

// A line "frame,column,row,stage", then one for each block. Throws Error with the line that is
// something else.
DifferenceMap ReadDifferenceMap(const std::string& path);

// The stages as a map of the frame: 0 where nothing differs, else the stage's number and 1. Throws
// Error with `path` when a block is outside.
std::vector<uint16_t> DifferenceValues(const std::string& path, const Frame& frame,
                                       const std::vector<DifferingBlock>& blocks);

}  // namespace lab
