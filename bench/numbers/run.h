// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Runs a command and measures what it used.
#pragma once

#include <string>
#include <vector>

namespace bench {

// One for what is one process, so that it does not wander; all for what starts several at once.
enum class Cores { kOne, kAll };

struct Command {
    std::vector<std::string> words;  // the program, then its arguments
    int status = 0;                  // with which it must end
    Cores cores = Cores::kOne;
    std::vector<std::string> environment = {};  // "NAME=VALUE", on top of this process's own
};

// Of the process and of all below it that were waited for.
struct Used {
    double cpu_s = 0;      // processor time, user and system together
    double elapsed_s = 0;  // by the clock
    double peak_mib = 0;   // resident memory of the largest single process
};

// Runs it to its end with its output thrown away. Throws std::runtime_error if it ends otherwise
// than with `status`.
Used Run(const Command& command);

// The same, keeping what it writes to standard output.
std::string OutputOf(const Command& command);

}  // namespace bench
