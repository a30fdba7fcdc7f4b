// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// How much of the recording goes into the page. A page that is to be mailed has a budget; what is
// left out goes in an order that keeps what answers "why" longest.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lab/report/summary.h"

namespace lab {

enum class BlockValues { kAll, kMotion, kNone };

struct Shape {
    bool vectors = true;
    bool luma = true;
    int crf = 27;             // of the video
    bool half_video = false;  // half as wide and high
    BlockValues blocks = BlockValues::kAll;
    bool video = true;
};

// The steps, each with all before it; the first leaves nothing out.
std::vector<Shape> Shapes();

// What the page says about a part that is missing.
struct LeftOut {
    std::string part, effect, how;
};
std::vector<LeftOut> LeftOutOf(const Shape& shape);

// Which frames keep their block values: all, those within five frames of motion, or none; and
// always those of `detail`.
std::vector<bool> KeptFrames(BlockValues blocks, const std::vector<FrameRow>& rows,
                             const std::optional<IndexRange>& detail);

}  // namespace lab
