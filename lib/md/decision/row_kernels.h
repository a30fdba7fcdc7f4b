// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The row kernels of one instruction set, and the table of those that this program holds.
//
// A run uses the fastest that its processor offers, or what the environment variable MD_KERNELS
// names: a path of the table, or "plain" for the block walk. All give the same bytes.
//
// To add a path: a row in the table (row_kernels.cpp), a file row_kernels_NAME.cpp, and its line in
// the build (cmake/kernel_paths.cmake), which gives the file its instruction set. A set that is no
// x86 also needs its few vector operations (feature/lanes.h). Tests and benchmarks take every path
// of the table.
#pragma once

#include <vector>

#include "md/decision/row_distances.h"
#include "md/feature/block_records.h"
#include "md/feature/cell_sums.h"

struct RowKernels {
    const char* szName;
    CellRowSumsFn* pCellRowSums;
    BlockRowRecordsFn* pBlockRowRecords;
    RowDistancesFn* pRowDistances;
};

// Those that this processor runs, fastest first; the last is "scalar", which every processor runs.
std::vector<RowKernels> OfferedKernels();

// The kernels of this run, null for the block walk. Chosen on the first call; a name that is
// unknown, or that this processor does not offer, ends the run with status -1.
const RowKernels* SelectedKernels();
