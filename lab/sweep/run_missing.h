// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Has the engine convert the clips and run the points that are not in the cache.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "lab/sweep/run_list.h"
#include "lab/sweep/sweep.h"

namespace lab {

// Why a conversion or a run has no result, by its id.
using Faults = std::map<std::string, std::string>;

// Converts the clips that are not whole yet and fills in what was made. False if the user
// interrupted it. A clip that cannot be converted gets a fault. `options` with cores and cache set.
bool ConvertClips(const SweepOptions& options, RunList* list, Faults* faults);

// Runs `missing`, as far as their clips are whole. False if the user interrupted it. Each run that
// was handed to the engine gets a fault, which counts only if it has no result afterwards.
bool RunMissing(const SweepOptions& options, const RunList& list, const std::vector<Point>& points,
                std::vector<const PlannedRun*> missing, Faults* faults);

}  // namespace lab
