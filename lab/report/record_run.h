// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// One run of MD's own code, recorded. MD keeps its state in one place and ends the process where it
// fails, so each run has a process of its own.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "lab/tool/interrupt.h"
#include "md/sim_params.h"

namespace lab {

// MD refused its arguments or its input: what it prints has reached the user as MD prints it, and
// the program is to end with MD's status.
struct Refusal {
    int status;  // as a parent process sees it
};

struct RunRequest {
    std::vector<std::string> arguments;  // MD's, without the program name
    std::string folder;                  // empty folder, for all that the run leaves
    std::string log;                     // file that takes MD's printed log; it is appended
    bool quiet = false;                  // no progress
};

// Runs it to its end and returns RunFacts. `folder` then holds the recording (recorder.h) and
// "working", a link to the file of MD's working frames. Throws Refusal, or Error.
nlohmann::json RecordRun(const RunRequest& request, const InterruptGuard& interrupt);

// The settings that MD's arguments give, found without running anything; paths are complete. False
// if MD refuses them: the run itself then says why.
bool SettingsOf(const std::vector<std::string>& arguments, const InterruptGuard& interrupt,
                SimParams* settings);

}  // namespace lab
