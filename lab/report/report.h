// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Makes a report: runs MD's code on a clip, once or twice, and writes the page.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/report/summary.h"

namespace lab {

struct ReportRequest {
    std::string out;                     // the page
    std::vector<std::string> arguments;  // MD's, without the program name
    std::vector<std::string> against;    // what the second run has on top; empty: one run
    std::optional<std::string> title;    // instead of the clip's name
    std::optional<IndexRange> detail;    // numbers of the log
    std::string log;                     // file for MD's printed log; empty: none
    int64_t budget = int64_t{16} << 20;  // bytes; 0: no limit
    bool quiet = false;
};

// The arguments of the second run. An item of `against` that is KEY=VALUE and no file is added at
// the end as -p, every other one is a settings file, put before the first -p: what the command line
// sets stays set.
std::vector<std::string> SecondArguments(const std::vector<std::string>& arguments,
                                         const std::vector<std::string>& against);

// Returns the exit status: that of MD where it refuses. Throws Error. No file is left but the page,
// and none at all on failure. `page` is the template.
int MakeReport(const ReportRequest& request, std::string_view page);

}  // namespace lab
