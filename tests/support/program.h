// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Running MD as a child process in a folder of its own, and looking at what it left.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tests/support/files.h"

struct Outcome {
    int nExit;         // exit status as a parent sees it; 128 + signal for a killed process
    std::string sOut;  // standard output
    std::string sErr;  // standard error
};

// Runs a program (argv[0] is its name as it sees it) with its working folder at tFolder.
Outcome RunProgram(const fs::path& tFolder, const std::vector<std::string>& aArguments);

// Runs the MD that was built with the tests. `aOptions` are the arguments after its name.
Outcome RunMd(const fs::path& tFolder, const std::vector<std::string>& aOptions);

// The names of this processor's paths for MD_KERNELS, fastest first; the last is "plain".
std::vector<std::string> KernelNames();

// All that a run of "a.cfg" in that folder leaves: standard output as "stdout", and every file of
// its output folder "out". `sKernels` is one of KernelNames(). Throws what a run that fails
// printed.
Files WholeRun(const fs::path& tFolder, const std::string& sKernels);

// Settings under which a small raw clip "in.yuv" of W x H runs into the folder "out"; later
// assignments win, so a test appends its own.
std::string BaseConfig(int nWidth, int nHeight);

// Puts a copy of that MD into tFolder, without its tools; "./MD" runs it there.
void CopyMd(const fs::path& tFolder);

// One line for a table's failure message: status and both streams.
std::ostream& operator<<(std::ostream& tOut, const Outcome& t);
