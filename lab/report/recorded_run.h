// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A recording, read back by the report.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "lab/report/frame_row.h"
#include "lab/report/replay.h"
#include "lab/report/summary.h"

namespace lab {

struct RecordedRun {
    std::string folder;    // recorder.h lists what is in it
    nlohmann::json facts;  // RunFacts
    std::vector<FrameRow> rows;
    Summary summary;

    [[nodiscard]] int Frames() const { return summary.frames; }
    [[nodiscard]] int Blocks() const;
    [[nodiscard]] int Thresholds() const { return facts["run"]["thresholds"]; }
};

// Throws Error if the run had no frame at all.
RecordedRun ReadRun(const std::string& folder, nlohmann::json facts);

// The reverse of EncodeBlocks. Throws Error for a record that does not fit.
ReplayedFrame DecodeBlocks(const std::string& record, int blocks, int thresholds);

}  // namespace lab
