// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a sweep consists of: each point on each clip, and each clip once at every working size.
// Names follow from content, so that what an earlier sweep left in the cache is found.
#pragma once

#include <string>
#include <vector>

#include "lab/sweep/clip_store.h"
#include "lab/sweep/points.h"
#include "lab/sweep/run_store.h"

namespace lab {

// The MD that runs, by its path and the digest of its bytes, and what its converter says of itself.
struct MdProgram {
    std::string path, digest, converter;
};

// A clip at one working size.
struct Conversion {
    size_t clip = 0;
    ClipJob job;
    std::string id;
    std::string runs;  // folder of the finished runs
    bool whole = false;
    WorkingClip made;
};

// Places in the plan's points and clips and in the list's conversions.
struct PlannedRun {
    size_t point = 0, clip = 0, conversion = 0;
    std::string id;
};

struct RunList {
    std::vector<Conversion> conversions;
    std::vector<PlannedRun> runs;
};

// The value of a key. Rows as in settings.h.
std::string ValueOf(const Settings& settings, const char* key);

// 0 to 3, as InputFileType.
std::string TypeOf(const PlanClip& clip, const Settings& base);

// Assignments of the rows that are the point's, not the clip's, and differ from `base`.
std::string PointAssignments(const Settings& settings, const Settings& base);

// Reads all clips. Their digests are written to the cache only if `keep_digests` is set. Throws
// Error for a clip that cannot be read or that MD's settings cannot name.
RunList ListRuns(const Plan& plan, const std::vector<Point>& points, const MdProgram& md,
                 const std::string& cache, bool keep_digests);

// The finished runs of the list's clips.
RunIndex LoadStore(const RunList& list);

// Those that are not in the store, in the list's order. They point into the list.
std::vector<const PlannedRun*> MissingRuns(const RunList& list, const RunIndex& store);

}  // namespace lab
