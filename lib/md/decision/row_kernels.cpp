// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/decision/row_kernels.h"

#include <cstring>
#include <string>

#include "md/print.h"
#include "md/run_switches.h"

extern const RowKernels kKernels_Avx512, kKernels_Avx2, kKernels_Ssse3, kKernels_Neon;

namespace {

constexpr RowKernels kKernels_Scalar = {"scalar", CellRowSums_Scalar, BlockRowRecords_Scalar,
                                        RowDistances_Scalar};

struct Path {
    const RowKernels* pKernels;
    bool (*pIsOffered)();  // by the processor
};

// Fastest first.
constexpr Path aPaths[] = {
#ifdef MD_KERNELS_AVX512
    {&kKernels_Avx512, [] { return __builtin_cpu_supports("avx512bw") != 0; }},
#endif
#ifdef MD_KERNELS_AVX2
    {&kKernels_Avx2, [] { return __builtin_cpu_supports("avx2") != 0; }},
#endif
#ifdef MD_KERNELS_SSSE3
    {&kKernels_Ssse3, [] { return __builtin_cpu_supports("ssse3") != 0; }},
#endif
#ifdef MD_KERNELS_NEON
    {&kKernels_Neon, [] { return true; }},
#endif
    {&kKernels_Scalar, [] { return true; }},
};

const RowKernels* Select() {
    const char* szForced = Switches().szKernels;
    if (szForced != nullptr && std::strcmp(szForced, "plain") == 0) return nullptr;
    std::string sNames;
    for (const Path& tPath : aPaths) {
        if (!tPath.pIsOffered()) continue;
        const char* szName = tPath.pKernels->szName;
        if (szForced == nullptr || std::strcmp(szForced, szName) == 0) return tPath.pKernels;
        sNames += std::string(", ") + szName;
    }
    EndRun(stdout, kExitRefused, "ERROR: MD_KERNELS=%s: expected plain%s\n", szForced,
           sNames.c_str());
}

}  // namespace

std::vector<RowKernels> OfferedKernels() {
    std::vector<RowKernels> aOffered;
    for (const Path& tPath : aPaths) {
        if (tPath.pIsOffered()) aOffered.push_back(*tPath.pKernels);
    }
    return aOffered;
}

const RowKernels* SelectedKernels() {
    static const RowKernels* const pKernels = Select();
    return pKernels;
}
