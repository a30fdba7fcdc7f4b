// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <algorithm>
#include <cstring>
#include <limits>

#include "lab/sweep/sweep.h"

namespace lab {

namespace {

std::optional<double> Score(const Counts& counts, const char* name) {
    for (const ScoreRow& row : ScoreTable()) {
        if (std::strcmp(row.name, name) == 0) return row.value(counts);
    }
    return std::nullopt;
}

// A limit on a score that is not defined is missed: nothing shows that it is kept.
bool Meets(const PointResult& point, const PlanLimit& limit) {
    const Counts& counts =
        limit.clip < 0 ? point.total : point.runs[static_cast<size_t>(limit.clip)].judgement.counts;
    const auto score = ScoreTable()[limit.score].value(counts);
    if (!score) return false;
    return limit.at_least ? *score >= limit.value : *score <= limit.value;
}

}  // namespace

void JudgePoints(SweepResults* sweep) {
    struct Place {
        double recall, false_frames;
        PointResult* point;
    };
    std::vector<Place> places;
    for (PointResult& point : sweep->results) {
        for (size_t i = 0; i < sweep->plan.limits.size(); ++i) {
            const bool met =
                point.status == RunStatus::kDone && Meets(point, sweep->plan.limits[i]);
            if (!met) point.missed.push_back(static_cast<int>(i));
        }
        const auto recall = Score(point.total, "recall");
        const auto false_frames = Score(point.total, "false_per_1000");
        if (point.status == RunStatus::kDone && recall && false_frames) {
            places.push_back({*recall, *false_frames, &point});
        }
    }
    // From the fewest misses on, a point is on the front if it has fewer false frames than all
    // before it.
    std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
        return a.recall != b.recall ? a.recall > b.recall : a.false_frames < b.false_frames;
    });
    double fewest = std::numeric_limits<double>::infinity();
    double recall_of_fewest = -1;
    for (const Place& place : places) {
        const bool equal = place.false_frames == fewest && place.recall == recall_of_fewest;
        place.point->on_front = place.false_frames < fewest || equal;
        if (!place.point->on_front) continue;
        fewest = place.false_frames;
        recall_of_fewest = place.recall;
    }
}

}  // namespace lab
