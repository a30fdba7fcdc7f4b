// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/frame_row.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace lab {

namespace {

constexpr std::array<int, kDistanceClasses> kClassEdges = {0,  1,  2,  3,  4,  6,   8,   12, 16,
                                                           24, 32, 48, 64, 96, 128, 192, 255};

}  // namespace

int DistanceClass(int distance) {
    const auto* end = std::upper_bound(kClassEdges.begin(), kClassEdges.end(), distance);
    return static_cast<int>(std::distance(kClassEdges.begin(), end)) - 1;
}

std::vector<std::string> ColumnNames() {
    std::vector<std::string> names = {
        "motion",     "reason",      "p0",           "p1",           "p2",
        "p3",         "before_left", "before_right", "before_top",   "before_bottom",
        "after_left", "after_right", "after_top",    "after_bottom", "active",
        "counted",    "largest",     "luma",         "gate",         "g0",
        "g1"};
    const auto AddMany = [&](char letter, int count) {
        for (int i = 0; i < count; ++i) {
            names.emplace_back(1, letter);
            names.back() += std::to_string(i);
        }
    };
    AddMany('o', kOutcomeCount);
    AddMany('d', kDistanceClasses);
    return names;
}

std::string FrameTable(const std::vector<FrameRow>& rows) {
    std::string out(rows.size() * sizeof(FrameRow), '\0');
    char* at = out.data();
    for (size_t column = 0; column < kFrameColumns; ++column) {
        for (const FrameRow& row : rows) {
            const auto* bytes = reinterpret_cast<const char*>(&row);
            std::memcpy(at, bytes + column * sizeof(int32_t), sizeof(int32_t));
            at += sizeof(int32_t);
        }
    }
    return out;
}

}  // namespace lab
