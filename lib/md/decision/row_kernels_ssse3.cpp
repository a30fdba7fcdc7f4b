// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The row kernels, built for SSSE3.
#include "md/decision/row_distances.inc"
#include "md/decision/row_kernels.h"
#include "md/feature/block_records.inc"
#include "md/feature/cell_sums.inc"

extern constinit const RowKernels kKernels_Ssse3;
constinit const RowKernels kKernels_Ssse3 = {"ssse3", CellRowSums, BlockRowRecords, RowDistances};
