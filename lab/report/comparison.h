// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Two runs over one clip, compared as far as the header of the page needs it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lab/report/recorded_run.h"

namespace lab {

struct FirstDifference {
    int frame;          // index
    int block;          // -1 for a box
    const char* stage;  // "luma", "vectors", "distances", "decision", "box" or "gate"
};

struct Comparison {
    int frames = 0;  // in which mask or box differ
    std::optional<FirstDifference> first;
    std::vector<std::string> keys;  // with different values, read by at least one of the runs
    bool same_luma = false;         // of all blocks in all frames
    bool same_vectors = false;      // of all that were kept
};

// Throws Error, naming what differs, when the runs are not over the same pictures.
Comparison Compare(const RecordedRun& a, const RecordedRun& b);

}  // namespace lab
