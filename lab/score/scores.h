// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Scores of a run against the labels of its clip. docs/scores.md defines each by its formula.
//
// Judging a run gives counts, which can be added up over clips; a score is worked out of counts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lab/score/labels.h"
#include "lab/score/log.h"

namespace lab {

struct Counts {
    int64_t frames = 0;         // of the run
    int64_t motion_frames = 0;  // of the run, with a box
    int64_t longest_gap = 0;    // frames without a box between two with one
    int64_t box_pairs = 0;      // neighbouring frames that both have a box
    int64_t jumps = 0;          // such pairs whose boxes overlap by less than a half
    // The rest is of labelled clips, over the frames that are judged.
    int64_t hits = 0, misses = 0, false_frames = 0, quiet_frames = 0;
    int64_t ranges = 0, ranges_found = 0;
    std::vector<int32_t> delays;  // of the ranges found, frames
    int64_t boxed_hits = 0;       // hits in frames that have a labelled box
    int64_t on_target = 0;        // of these, the ones whose box touches a labelled one
    double iou_sum = 0;           // of these, with the best labelled box
    double iou_all_sum = 0;       // of these, with the box around all labelled ones

    // `longest_gap` becomes the larger one, all else adds up.
    Counts& operator+=(const Counts& other);
};

// How a frame came out, one letter each: 'h' hit, 'm' miss, 'f' false, '.' quiet, 'i' ignored; in
// a clip without labels 'r' for a box and '-' for none.
struct Judgement {
    Counts counts;
    std::string strip;  // one letter a frame of the run
};

// `labels` is null for a clip without labels. The boxes of the run are carried from `working` to
// `input` pixels; with equal sizes they stay as they are.
Judgement Judge(const std::vector<FrameReport>& run, const Labels* labels, const Scaling& scaling);

enum class Better { kHigher, kLower, kNeither };

struct ScoreRow {
    const char* name;
    Better better;
    const char* what;  // one line
    // Nothing where it is not defined: no label, no hit.
    std::optional<double> (*value)(const Counts& counts);
};

// All scores, in the order of tables and columns.
const std::vector<ScoreRow>& ScoreTable();

// A score as files and tables show it: at most 4 places after the point; "" for nothing.
std::string ScoreText(const std::optional<double>& score);

}  // namespace lab
