#include "md/feature/kernel_path.h"

#include <cstring>

#include "md/print.h"
#include "md/run_switches.h"

namespace {

KernelPath Select() {
    const char* szForced = Switches().szKernels;
    for (const KernelPath& tPath : OfferedKernels()) {
        if (szForced == nullptr || std::strcmp(szForced, tPath.szName) == 0) return tPath;
    }
    EndRun(stdout, kExitRefused,
           "ERROR: MD_KERNELS=%s: expected plain, or ssse3 or avx2 where the processor has it\n",
           szForced);
}

}  // namespace

std::vector<KernelPath> OfferedKernels() {
    std::vector<KernelPath> aPaths;
#ifdef MD_X86_KERNELS
    if (__builtin_cpu_supports("avx2") != 0) {
        aPaths.push_back({"avx2", CellRowSums_Avx2, BlockRowFeatures_Avx2});
    }
    if (__builtin_cpu_supports("ssse3") != 0) {
        aPaths.push_back({"ssse3", CellRowSums_Ssse3, BlockRowFeatures_Ssse3});
    }
#endif
    aPaths.push_back({"plain", nullptr, nullptr});
    return aPaths;
}

const KernelPath& SelectedKernels() {
    static const KernelPath tPath = Select();
    return tPath;
}
