// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The points of a plan: settings to run each clip with. Points that differ only in keys that
// nothing reads are one point.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lab/sweep/plan.h"

namespace lab {

struct Point {
    std::vector<std::string> values;  // of the plan's keys; empty where this point does not read it
    Settings settings;                // with the default in every key that is not read
};

struct Points {
    std::vector<Point> points;      // in the order of the product, or drawn
    uint64_t product = 0;           // all combinations of the plan's values
    uint64_t chosen = 0;            // of these, before folding
    std::vector<std::string> idle;  // "KEY: why", for keys that no point reads
};

// Throws Error if the plan has more points than a sweep can hold and draws none.
Points PointsOf(const Plan& plan);

// `take` different numbers below `product`. The same seed gives the same numbers, and a larger
// `take` begins with those of a smaller one.
std::vector<uint64_t> Draw(uint64_t product, uint64_t take, uint64_t seed);

}  // namespace lab
