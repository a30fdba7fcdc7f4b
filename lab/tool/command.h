// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a subcommand gives to main, and the look of its help.
//
// A subcommand lives in the folder of its name. Its function adds it to the parser, with its
// options and a callback that does the work and stores the exit status (lab/tool/error.h). One row
// of the table in lab/commands.cpp registers it.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace lab {

using AddCommand = void(CLI::App* app, int* status);

// Puts `examples`, whole lines, before everything else in the help of `command`.
void BeginHelpWith(const std::string& examples, CLI::App* command);

}  // namespace lab
