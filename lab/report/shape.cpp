// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/shape.h"

#include <algorithm>

namespace lab {

namespace {

constexpr int kAroundMotion = 5;  // frames

}  // namespace

std::vector<Shape> Shapes() {
    std::vector<Shape> shapes(8);
    for (size_t i = 0; i < shapes.size(); ++i) {
        shapes[i].vectors = i < 1;
        shapes[i].luma = i < 2;
        shapes[i].crf = i < 3 ? 27 : 31;
        shapes[i].half_video = i >= 4;
        shapes[i].blocks = i < 5   ? BlockValues::kAll
                           : i < 7 ? BlockValues::kMotion
                                   : BlockValues::kNone;
        shapes[i].video = i < 6;
    }
    return shapes;
}

std::vector<LeftOut> LeftOutOf(const Shape& shape) {
    static const std::string kHow =
        "mdlab report --budget 0 keeps everything, --detail FROM-TO everything of those frames.";
    static const std::string kHowVideo = "mdlab report --budget 0 keeps everything.";
    std::vector<LeftOut> left;
    if (!shape.vectors) {
        left.push_back(
            {"Vectors", "The block panel shows no vectors and no sum of squares.", kHow});
    }
    if (!shape.luma) {
        left.push_back({"Mean luma", "There is no Luma layer, and no mean luma of a block.", kHow});
    }
    if (!shape.video) {
        left.push_back({"Picture", "Blocks are shown without the picture.", kHowVideo});
    } else if (shape.half_video) {
        left.push_back({"Picture size", "The picture is half as wide and high.", kHowVideo});
    } else if (shape.crf != Shape{}.crf) {
        left.push_back({"Picture quality", "The picture is coded more coarsely.", kHowVideo});
    }
    if (shape.blocks == BlockValues::kMotion) {
        left.push_back({"Quiet frames",
                        "Frames more than five frames away from motion have no block values.",
                        kHow});
    } else if (shape.blocks == BlockValues::kNone) {
        left.push_back({"Block values", "No block can be looked into.", kHow});
    }
    return left;
}

std::vector<bool> KeptFrames(BlockValues blocks, const std::vector<FrameRow>& rows,
                             const std::optional<IndexRange>& detail) {
    std::vector<bool> kept(rows.size(), blocks == BlockValues::kAll);
    const auto Keep = [&](int64_t first, int64_t last) {
        const auto count = static_cast<int64_t>(rows.size());
        for (int64_t i = std::max<int64_t>(first, 0); i <= std::min(last, count - 1); ++i) {
            kept[static_cast<size_t>(i)] = true;
        }
    };
    if (detail) Keep(detail->first, detail->last);
    if (blocks != BlockValues::kMotion) return kept;
    for (size_t i = 0; i < rows.size(); ++i) {
        const auto at = static_cast<int64_t>(i);
        if (rows[i].motion != 0) Keep(at - kAroundMotion, at + kAroundMotion);
    }
    return kept;
}

}  // namespace lab
