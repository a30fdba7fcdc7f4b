// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Labels of a clip: a csv that says in which frames motion is to be found, and where.
//
//     first,last,left,top,right,bottom,what
//     12,80,300,120,410,396,motion
//     81,90,,,,,ignore
//
// Frames count from 0, both included. The box is in pixels of the input, edges included, and may be
// left empty as a whole. `what` is `motion` or `ignore`; frames that a row ignores are judged by
// nothing. Outside its rows a clip expects no motion. Blank lines and lines that begin with '#' are
// passed over, and so is the head line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/score/box.h"

namespace lab {

struct LabelRow {
    int32_t first = 0, last = 0;  // frames, 0 <= first <= last
    std::optional<Box> box;       // pixels of the input
    bool ignore = false;
};

using Labels = std::vector<LabelRow>;

// `name` is used in messages. Throws Error with name and line for a row that cannot be read.
Labels ParseLabels(std::string_view text, const std::string& name);

// Throws Error if the file cannot be read.
Labels ReadLabels(const std::string& path);

}  // namespace lab
