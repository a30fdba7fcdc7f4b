// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/summary.h"

#include <algorithm>

namespace lab {

namespace {

// Adds frame i to the events, or to the gap that ends there.
void AddFrame(const std::vector<FrameRow>& rows, int i, IndexRange* gap, Summary* sum) {
    const FrameRow& row = rows[static_cast<size_t>(i)];
    if (!Reported(row)) {
        const bool goes_on = gap->last == i - 1 && gap->Length() > 0;
        *gap = {goes_on ? gap->first : i, i};
        if (!sum->longest_gap || gap->Length() > sum->longest_gap->Length()) {
            sum->longest_gap = *gap;
        }
        return;
    }
    ++sum->reported;
    if (sum->events.empty() || sum->events.back().range.last != i - 1) {
        sum->events.push_back({{i, i}, i});
    }
    Event& event = sum->events.back();
    event.range.last = i;
    if (row.active > rows[static_cast<size_t>(event.peak)].active) event.peak = i;
}

}  // namespace

int Summary::LongestEvent() const {
    int longest = 0;
    for (const Event& event : events) longest = std::max(longest, event.range.Length());
    return longest;
}

int Summary::Opening() const {
    const auto longer = [](const Event& a, const Event& b) {
        return a.range.Length() < b.range.Length();
    };
    const auto longest = std::max_element(events.begin(), events.end(), longer);
    if (longest != events.end()) return longest->peak;
    return most_active > 0 ? most_active_frame : largest_frame;
}

Summary Summarise(const std::vector<FrameRow>& rows) {
    Summary sum;
    sum.frames = static_cast<int>(rows.size());
    IndexRange gap{0, -1};
    int largest = 0;
    for (int i = 0; i < sum.frames; ++i) {
        const FrameRow& row = rows[static_cast<size_t>(i)];
        sum.motion += row.motion != 0 ? 1 : 0;
        sum.held += row.motion != 0 && !Reported(row) ? 1 : 0;
        if (row.active > sum.most_active) {
            sum.most_active = row.active;
            sum.most_active_frame = i;
        }
        if (row.largest > largest) {
            largest = row.largest;
            sum.largest_frame = i;
        }
        for (size_t k = 0; k < kOutcomeCount; ++k) sum.outcomes[k] += row.outcomes[k];
        AddFrame(rows, i, &gap, &sum);
    }
    return sum;
}

}  // namespace lab
