// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The plan of a sweep: a YAML file that names clips, keys with the values to try, and what is
// expected of the scores. docs/sweep.md describes it. Reading it checks everything that can be
// checked before a run.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lab/score/labels.h"
#include "lab/settings/settings.h"

namespace lab {

struct PlanClip {
    std::string name;              // unique in the plan
    std::string file;              // absolute path
    std::string label_file;        // absolute path; empty: a clip without labels
    std::optional<Labels> labels;  // what that file holds
    // What the settings say of raw clips, where the plan says it of only this clip.
    std::optional<std::string> type, width, height;
};

struct PlanKey {
    int row = 0;                      // of aInputKeys
    std::vector<std::string> values;  // normal, in the plan's order, no two equal
};

struct PlanLimit {
    size_t score = 0;  // row of ScoreTable
    bool at_least = false;
    double value = 0;
    int clip = -1;  // index of the clip; -1: over all clips
};

struct Plan {
    std::string path;           // as given
    std::string settings_path;  // absolute
    Settings settings;          // to start from
    std::vector<PlanClip> clips;
    std::vector<PlanKey> keys;
    std::optional<uint64_t> take;  // points to draw of the product
    uint64_t seed = 1;
    std::vector<PlanLimit> limits;
};

// Throws Error with file, line and column.
Plan ReadPlan(const std::string& path);

// The values that a text of the plan means: "4..12 step 2" is 4, 6, 8, 10, 12; "0..3" counts
// in ones; any other text is one value. Throws Error.
std::vector<std::string> ValuesOf(const InputMapEntry& row, const std::string& text);

// Keys that the sweep sets itself: paths, kind of input, dumps.
bool SetBySweep(int row);

// "recall at least 0.9"
std::string LimitText(const PlanLimit& limit);

}  // namespace lab
