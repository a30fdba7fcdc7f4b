// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a run comes to: the figures of the header, found from its frame table.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lab/report/frame_row.h"

namespace lab {

// Frame indexes, both included.
struct IndexRange {
    int first, last;
    [[nodiscard]] int Length() const { return last - first + 1; }
};

// A run of frames with a reported box; the peak is its frame with most active blocks.
struct Event {
    IndexRange range;
    int peak;
};

struct Summary {
    int frames = 0;
    int motion = 0;    // frames in which the method reports motion
    int reported = 0;  // frames with a box after the gate
    int held = 0;      // frames with motion, but no box
    std::vector<Event> events;
    std::optional<IndexRange> longest_gap;  // of frames without a box
    int most_active_frame = 0;              // index
    int most_active = 0;                    // blocks
    int largest_frame = 0;                  // index of the largest distance
    std::array<int64_t, kOutcomeCount> outcomes{};

    [[nodiscard]] int LongestEvent() const;  // frames; 0 without events

    // The frame at which the page opens: the peak of the longest event, else the frame with most
    // active blocks, else the one with the largest distance.
    [[nodiscard]] int Opening() const;
};

Summary Summarise(const std::vector<FrameRow>& rows);

}  // namespace lab
