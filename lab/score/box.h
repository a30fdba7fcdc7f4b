// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A rectangle of pixels, all four edges inclusive, and how much two of them have in common.
#pragma once

#include <algorithm>
#include <cstdint>

namespace lab {

struct Box {
    int32_t left = 0, top = 0, right = 0, bottom = 0;  // pixels; right >= left, bottom >= top
    bool operator==(const Box&) const = default;
};

// The same in any unit, edges as lines between pixels: right is one past the last pixel.
struct Area {
    double left = 0, top = 0, right = 0, bottom = 0;
    [[nodiscard]] double Size() const { return (right - left) * (bottom - top); }
};

inline Area AreaOf(const Box& box, double scale_x = 1, double scale_y = 1) {
    return {box.left * scale_x, box.top * scale_y, (box.right + 1) * scale_x,
            (box.bottom + 1) * scale_y};
}

inline Area Around(const Area& a, const Area& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

// Size of what both cover over the size of what either covers: 0 to 1.
inline double Overlap(const Area& a, const Area& b) {
    const double width = std::min(a.right, b.right) - std::max(a.left, b.left);
    const double height = std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
    if (width <= 0 || height <= 0) return 0;
    const double common = width * height;
    return common / (a.Size() + b.Size() - common);
}

}  // namespace lab
