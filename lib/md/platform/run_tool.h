// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Command lines of the outside tools.
#pragma once

#include <cstddef>
#include <string>

constexpr std::size_t kCommandSize = 1536;  // bytes of a command line, with its end mark

// What every command of the video converter begins with.
constexpr const char* szToolFlags = "-y -hide_banner -loglevel warning";

// Runs a command line. A tool is judged by the file it leaves; one that ends with a status other
// than 0 (killed, disk full) is reported on standard error with its command, which names the file
// that may be incomplete.
void RunTool(const char* szCommand);

// A folder as the first part of a path in a command line, with the separator after it. An empty
// folder stays empty: the path then begins with the separator.
std::string CommandFolder(const char* szFolder, char cSep);
