// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The facts of a run once it has been configured: clip, grid, settings. As json, because it
// crosses from the process of the run to that of the report, and most of it goes into the page.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "lab/report/recorder.h"

namespace lab {

// Of the run in this process, after its last frame. `arguments` are MD's. Members:
//     clip      name, path, first, requested, width, height, input_width, input_height, video
//     source    path, offset of the first frame, frame_bytes: where its pictures are
//     run       members of a run in the head that need no look at its frames (FORMAT.md)
//     hash      of the luma of all frames
nlohmann::json RunFacts(const std::vector<std::string>& arguments, const Recorder& recorder);

// All keys with group, meaning, range and default, in the order of the settings file.
nlohmann::json KeyTexts();

}  // namespace lab
