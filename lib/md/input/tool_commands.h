// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Commands of input preparation. A command that does not fit its buffer ends the run with status 1.
#pragma once

#include <string>

// Runs a command without printing it.
void RunSilently(const char* szFormat, ...) __attribute__((format(printf, 1, 2)));

// Prints the command, then runs it.
void PrintAndRun(const char* szFormat, ...) __attribute__((format(printf, 1, 2)));

// The folder as the first part of a path in a command, with the separator after it.
std::string InFolder(const char* szFolder);
