// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The engine's files, carried in the program. They are in lab/sweep/engine as they are written
// out; the build makes their texts.
#pragma once

namespace lab {

extern const char* const kSnakefile;
extern const char* const kSlurmConfig;
extern const char* const kSlurmStatus;

}  // namespace lab
