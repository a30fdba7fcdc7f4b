// Which kernels a run uses: the fastest that the processor offers, or the one that the environment
// variable MD_KERNELS names: "plain" (the definitions, on every processor), "ssse3" or "avx2" (on
// x86-64). All give the same bytes.
#pragma once

#include <vector>

#include "md/feature/cell_sums.h"

struct KernelPath {
    const char* szName;
    CellRowSumsFn* pCellRowSums;            // null on the plain path
    BlockRowFeaturesFn* pBlockRowFeatures;  // null on the plain path
};

// Those that this processor offers, fastest first; the plain path is the last.
std::vector<KernelPath> OfferedKernels();

// Chosen on the first call. A name that is unknown, or that this processor does not offer, ends the
// run with status -1.
const KernelPath& SelectedKernels();
