// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a sweep leaves: results.csv, results.sqlite, results.json, and sweep.html, which shows the
// last. docs/sweep.md describes their columns, tables and members. All hold the same; none holds a
// time, so that two sweeps of the same plan are equal.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lab/sweep/sweep.h"

namespace lab {

// A row a point and clip, with its columns as texts; empty where there is nothing.
struct ResultTable {
    std::vector<std::string> columns;
    std::vector<bool> numeric;  // the column holds numbers
    std::vector<std::vector<std::string>> rows;
};
ResultTable TableOf(const SweepResults& sweep);

// A strip with runs of a letter counted: "12.3m80h".
std::string PackStrip(const std::string& strip);

// Writes the files into the folder; no sweep.html in a build without the pages. Throws Error.
void WriteResults(const SweepResults& sweep, const std::string& folder);

void WriteCsv(const SweepResults& sweep, const std::string& path);
void WriteSqlite(const SweepResults& sweep, const std::string& path);
void WriteJson(const SweepResults& sweep, const std::string& path);

// The page of the results in `json_path`, filled into `page`, the template (lab/page/template.h).
void WriteSweepPage(const SweepResults& sweep, std::string_view page, const std::string& json_path,
                    const std::string& path);

}  // namespace lab
