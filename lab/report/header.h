// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The parts of the page that are there before any script runs: the sentence of the verdict and the
// cells of the header (FORMAT.md, section 2).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lab/report/comparison.h"
#include "lab/report/recorded_run.h"

namespace lab {

// What header and head say about the clip.
struct ClipTexts {
    std::string title;  // plain text
    double fps = 0;     // 0: not known
    bool variable_rate = false;
    bool ended_early = false;
};

struct HeaderInput {
    const ClipTexts& clip;
    const std::vector<RecordedRun>& runs;         // one or two
    const std::optional<Comparison>& comparison;  // of two
    bool shortened;
};

// "vtest.avi: motion in 676 of 795 frames, a box reported in 618, in 21 events; first in frame 16."
// Plain text, of the first run.
std::string Verdict(const HeaderInput& in);

// Html.
std::string HeaderCells(const HeaderInput& in);

// "85 %". Rounded, but to 0 or 100 only if it is exactly that.
std::string Share(int64_t part, int64_t whole);

// "0:01.6", with hours from one hour on.
std::string TimeText(double seconds);

}  // namespace lab
