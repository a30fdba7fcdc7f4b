// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The command line of mdlab: all subcommands with their options.
#pragma once

#include <memory>

namespace CLI {
class App;
}

namespace lab {

// Parsing a command line with it runs the chosen subcommand, which stores its exit status
// (lab/tool/error.h) in `*status`; the status must outlive the parser.
std::unique_ptr<CLI::App> MakeApp(int* status);

}  // namespace lab
