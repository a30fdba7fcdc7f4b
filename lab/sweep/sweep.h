// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A sweep from plan to results: finds what is not in the cache yet, has the engine run it, and
// judges all runs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lab/score/scores.h"
#include "lab/sweep/clip_store.h"
#include "lab/sweep/points.h"

namespace lab {

struct SweepOptions {
    std::string plan, into;
    std::string cache;    // folder; empty: "cache" below into
    std::string md;       // program; empty: the MD beside mdlab
    std::string profile;  // of the engine; empty: this machine
    int cores = 0;        // 0: all
    bool only_plan = false;
    bool quiet = false;
};

enum class RunStatus { kDone, kRefused, kFailed };

struct RunResult {
    RunStatus status = RunStatus::kFailed;
    std::string message;  // of MD that refuses; why it failed
    FrameSize working;    // 0 where it is not known
    Judgement judgement;  // of a done run
};

struct PointResult {
    RunStatus status = RunStatus::kDone;  // the worst of its runs
    std::vector<RunResult> runs;          // one a clip
    Counts total;                         // over the done runs
    bool on_front = false;                // no other point has fewer misses and fewer false frames
    std::vector<int> missed;              // limits of the plan that it does not meet
};

struct SweepResults {
    Plan plan;
    Points points;
    std::string md, md_digest;
    std::vector<FrameSize> clip_sizes;  // of the input; 0 where it is not known
    std::vector<PointResult> results;   // one a point
    int64_t runs = 0, from_cache = 0;
    bool interrupted = false;
};

const char* StatusName(RunStatus status);

// "-p KEY=VALUE -p ..." for the plan's keys that the point reads.
std::string OptionLine(const Plan& plan, const Point& point);

// A name for a point that follows from all settings it reads.
std::string PointId(const Point& point);

// Throws Error for a plan that cannot run. Points that fail are results with that status. With
// only_plan it prints what would run and gives no results.
SweepResults RunSweep(const SweepOptions& options);

// Marks the front and the limits that are missed.
void JudgePoints(SweepResults* sweep);

}  // namespace lab
