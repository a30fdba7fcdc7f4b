// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What the dumps hold of one block in several frames, as a table: a row for each value, a column
// for each frame.
#pragma once

#include <string>
#include <vector>

#include "lab/dumps/frame.h"

namespace lab {

// Requires the block to be inside the grid of each frame. Values that no frame has are left out,
// missing ones are "-".
std::string BlockTable(const std::vector<Frame>& frames, int x, int y);

}  // namespace lab
