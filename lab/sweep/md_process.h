// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// MD as a child process: its way of ending the process at a fault stays outside of mdlab.
#pragma once

#include <string>

#include "lab/score/log.h"

namespace lab {

struct MdOutcome {
    LogReader log;
    int status = 0;         // exit status, 0 to 255; of no meaning after a signal
    int signal = 0;         // not 0: what killed it
    bool warned = false;    // a "[Warning]" on standard error: something may be incomplete
    std::string complaint;  // why it refused, one line; empty if it printed nothing of the kind
    double seconds = 0;
};

// Runs `program -d settings` and reads all it prints. `scratch` is a folder for a passing file.
// Throws Error if it cannot be started.
MdOutcome RunMd(const std::string& program, const std::string& settings,
                const std::string& scratch);

// Statuses with which MD refuses settings; the others are faults of the machine or of the input.
bool IsRefusal(const MdOutcome& outcome);

// Writes a passing file in place. Throws Error if not all of it arrives.
void WritePlain(const std::string& path, const std::string& text);

}  // namespace lab
