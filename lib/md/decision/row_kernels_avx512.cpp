// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The row kernels, built for AVX-512.
#include "md/decision/row_distances.inc"
#include "md/decision/row_kernels.h"
#include "md/feature/block_records.inc"
#include "md/feature/cell_sums.inc"

extern constinit const RowKernels kKernels_Avx512;
constinit const RowKernels kKernels_Avx512 = {"avx512", CellRowSums, BlockRowRecords, RowDistances};
