// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The outside video tools: where they are, and running them.
#pragma once

#include <string>

namespace lab {

// The folder that holds ffmpeg and ffprobe: that of this program if it does, as for MD, else the
// first of PATH that does; empty when there is none.
std::string ToolFolder();

// What a program name has to be for MD's code to find its tools there.
std::string MdProgramName();

// Runs a command line through the shell and gives its standard output; empty if it failed.
std::string OutputOf(const std::string& command);

}  // namespace lab
