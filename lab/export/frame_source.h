// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The frames of a run with what an export shows of them, one after the other.
#pragma once

#include <functional>

#include "lab/dumps/frame.h"
#include "lab/dumps/run.h"

namespace lab {

// Calls `use` in ascending order for each frame within `range` that has distances, or, in a run
// without any, a box. The running distance file decides which frames there are, where the run has
// one: files of an earlier, longer run may be beside it. Throws Error for a broken file.
void EachFrame(const Run& run, FrameRange range, const std::function<void(const Frame&)>& use);

}  // namespace lab
