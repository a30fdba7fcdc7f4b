// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Which files two runs have in common, and what to say of the others.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "lab/compare/comparison.h"

namespace lab {

struct FileLists {
    Sources kinds = 0;                // kinds that both runs have
    std::map<int64_t, Sources> both;  // per-frame kinds that both have of a frame
    std::map<int64_t, Sources> golden_only, other_only;  // of the kinds in common
};

// Fills the lists within the frames and stages of the options. Left-over files are taken out of
// `golden` and `other`. What is left over or cannot be compared goes into the notes. Throws Error
// when the runs have no kind of file in common.
FileLists ListFiles(const CompareOptions& options, Run* golden, Run* other, Comparison* result);

// Lines for the frames that one run lacks, in ranges: "frames 39..41 in rtl/" where it has nothing
// of them, else with the files. `lists` holds running files too by now.
void DescribeMissing(const FileLists& lists, Comparison* result);

}  // namespace lab
