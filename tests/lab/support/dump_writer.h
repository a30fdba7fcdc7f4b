// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Dumps from frame records, as MD prints them: what a test reads back, and plants faults into.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "lab/dumps/frame.h"
#include "lab/dumps/run.h"

// A frame whose every field is there, filled by chance from `seed`. Two seeds share no values.
lab::Frame SomeFrame(int64_t index, int columns, int rows, uint32_t seed);

// A run as MD would leave it: the reference of frame n is frame n - 1, that of the first is itself.
std::vector<lab::Frame> SomeRun(int frames, int columns, int rows, uint32_t seed);

// The text of one file. Of a running file, the record of that frame.
std::string DumpText(const lab::Frame& frame, lab::FileKind kind);

// Every file of HOG_feature, in a folder that is made.
void WriteRun(const std::filesystem::path& folder, const std::vector<lab::Frame>& frames);
