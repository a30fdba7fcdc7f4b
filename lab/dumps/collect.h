// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Blocks in the order of a file, brought into the order of a frame.
#pragma once

#include <cstdint>
#include <vector>

#include "lab/dumps/frame.h"
#include "lab/dumps/scanner.h"

namespace lab {

constexpr uint32_t kPlaceLimit = 4095;  // of a block's column and row; MD's end at 238 and 133

// The values of `frame` are in the order of `places` (row * 65536 + column of each block). Puts
// them row by row and sets the grid, which is the largest column and row. Fails at the scanner's
// place if a block is missing or there twice.
void ArrangeBlocks(Scanner& scanner, const std::vector<uint32_t>& places, Frame* frame);

}  // namespace lab
