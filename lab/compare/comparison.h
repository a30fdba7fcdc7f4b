// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What comparing two runs found: the record that the walk fills and the reports print.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "lab/dumps/frame.h"
#include "lab/dumps/run.h"

namespace lab {

using StageSet = std::array<bool, kStageCount>;
constexpr StageSet kAllStages = {true, true, true, true, true, true, true};

struct CompareOptions {
    std::string golden, other;
    int64_t first_frame = 0, last_frame = INT64_MAX;
    StageSet stages = kAllStages;         // which of them count
    bool all_stages = true;               // --stages was not given: raw videos count as well
    int limit = 5;                        // blocks in full, after the first
    int stride = 0;                       // pixels from block to block; 0: from the videos, or 8
    std::optional<VideoSize> video_size;  // for raw videos without a size in their name
    std::string json, junit, map;         // files to leave; empty: none
    bool quiet = false;                   // no progress
};

// Where a value can be: bit k is file kind k; two more for the repeats in _Full.json.
using Sources = uint16_t;
constexpr Sources kFromCellData = 1 << 12;
constexpr Sources kFromReference = 1 << 13;

// One value that differs.
struct Difference {
    int64_t frame = 0;
    Stage stage{};
    Field field{};       // not of the box
    int element = 0;     // of the block's values; of the box: see BoxValueName
    int x = -1, y = -1;  // block; -1 of the box
    int golden = 0, other = 0;
    Sources shown = 0;  // files that show it
    Sources same = 0;   // files that hold this value and agree
};

// What is said of a value: "y moment of cell 2", "left", ...
std::string NameOf(const Difference& difference);
std::string BoxValueName(int element);
constexpr int kBoxesListed = 1 << 20;  // as an element: the number of boxes in the list
// "1 frame", "17 frames".
std::string Counted(int64_t count, const char* what);
// The files of a frame: "hogmd_golden.txt, 0018_Full.csv, 0018_Full.json (CellData)".
std::string NameSources(Sources sources, int64_t frame);

// Blocks of one frame that differ.
struct FrameCount {
    int64_t frame = 0;
    int blocks = 0;  // in any stage
    bool box = false;
};

// The block of the first difference, stage by stage.
struct StageThere {
    bool known = false;                 // both runs show the stage
    std::vector<Difference> different;  // what differs in it
    int values = 0;                     // of the stage's main field
};

struct VideoDifference {
    std::string name;
    bool differs = false;  // in a pixel; else only in length
    int64_t frame = 0;     // first frame that differs, counted from 0 in the file
    int64_t frames = 0;    // that differ
    char plane = 'Y';      // Y, U or V
    int x = 0, y = 0;      // in samples of the plane
    int golden = 0, other = 0;
    int64_t golden_frames = 0, other_frames = 0;  // whole ones in the files
    bool golden_cut = false, other_cut = false;   // the file ends within a frame
};

struct Comparison {
    std::string golden, other;  // as given
    int64_t frames = 0;         // of the golden run
    int columns = 0, rows = 0;  // 0: not known
    int stride = 8;
    bool stride_known = false;

    // The leading one, then the first of each of up to `limit` more blocks or boxes.
    std::vector<Difference> first;
    std::array<StageThere, kStageCount> there;                    // at the block of the leading one
    std::array<std::optional<Difference>, kStageCount> first_of;  // of each stage
    std::array<bool, kStageCount> shown{};      // some file shows the stage in both runs
    std::array<int64_t, kStageCount> blocks{};  // that differ; of the box: frames
    std::vector<FrameCount> frame_counts;       // frames that differ, in order
    std::vector<std::string> hints;
    std::vector<VideoDifference> videos;

    // Each becomes a line of its own: label and text.
    using Line = std::pair<std::string, std::string>;
    std::vector<Line> findings;  // make the runs differ: missing, extra, grids, settings
    std::vector<Line> notes;     // do not: left over, not compared, other line ends
    std::vector<Line> trouble;   // status 2: cut off, unreadable

    [[nodiscard]] bool Differs() const {
        return !first.empty() || !findings.empty() || !videos.empty();
    }
    // kSame, kDiffer or kTrouble.
    [[nodiscard]] int Status() const;
};

}  // namespace lab
