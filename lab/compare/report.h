// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What compare leaves: the report for people, json, JUnit for CI servers, and the map of blocks.
#pragma once

#include <string>

#include "lab/compare/comparison.h"
#include "lab/tool/result_file.h"

namespace lab {

// The whole text for standard output, lines ended.
std::string TextReport(const Comparison& comparison, bool colour);

// The keys of MD that reach a stage and none before it, for the report.
const char* SettingsOf(Stage stage);

// {"format": 1, ...}; docs/mdlab.md describes it.
std::string JsonReport(const Comparison& comparison);

// One suite; a case for each stage, one for the files and one for raw videos.
std::string JunitReport(const Comparison& comparison);

// The blocks that differ, for `export --yuview`: a line "frame,column,row,stage" and then one for
// each block, by frame, row and column. Frames count from 0, columns and rows in blocks; the stage
// is the name of the earliest that differs in the block. Frames in which nothing but the box
// differs have no line.
class MapFile {
  public:
    explicit MapFile(const std::string& path);
    void Add(int64_t frame, int x, int y, Stage stage);
    void Commit() { file_.Commit(); }

  private:
    ResultFile file_;
};

}  // namespace lab
