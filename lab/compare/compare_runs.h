// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The walk over two runs, frame by frame.
#pragma once

#include <functional>

#include "lab/compare/comparison.h"

namespace lab {

// Called for each block that differs, frame by frame and in raster order, with the earliest stage
// that differs in it.
using BlockSink = std::function<void(int64_t frame, int x, int y, Stage stage)>;

// Compares. Files that cannot be read end up in `trouble`, the others are compared all the same.
// Throws Error when nothing can be compared at all.
Comparison CompareRuns(const CompareOptions& options, const BlockSink& sink);

}  // namespace lab
