// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Where two whole runs first differ, said as a developer looks for it.
#pragma once

#include <string>

#include "tests/support/files.h"

// Compares two sets of files, the log among them as "stdout" and those of the feature folder by
// their bare names. Empty when they are equal. Else the first frame that differs, and in it the
// first stage that does: "frame 4, block (9,8), avail: expected 1, got 0 (stage: decision)". Where
// all that the stages hand on is equal, the file and its line.
std::string FirstDifference(const Files& aWant, const Files& aGot);
