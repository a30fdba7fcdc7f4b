// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The row kernels, built for AVX2.
#include "md/decision/row_distances.inc"
#include "md/decision/row_kernels.h"
#include "md/feature/block_records.inc"
#include "md/feature/cell_sums.inc"

extern constinit const RowKernels kKernels_Avx2;
constinit const RowKernels kKernels_Avx2 = {"avx2", CellRowSums, BlockRowRecords, RowDistances};
