#include "md/feature/kernel_path.h"

#include <cstdlib>
#include <cstring>

#include "md/print.h"

namespace {

#ifdef MD_X86_KERNELS
bool HasAvx2() {
    return __builtin_cpu_supports("avx2") != 0;
}
#endif

// Fastest first; the plain path is always there.
const KernelPath aPaths[] = {
#ifdef MD_X86_KERNELS
    {"avx2", CellRowSums_Avx2, BlockRowFeatures_Avx2},
    {"sse2", CellRowSums_Sse2, BlockRowFeatures_Sse2},
#endif
    {"plain", nullptr, nullptr},
};

bool Offered([[maybe_unused]] const KernelPath& tPath) {
#ifdef MD_X86_KERNELS
    if (tPath.pCellRowSums == CellRowSums_Avx2) return HasAvx2();
#endif
    return true;
}

const KernelPath& Select() {
    const char* szForced = std::getenv("MD_KERNELS");
    for (const KernelPath& tPath : aPaths) {
        if (!Offered(tPath)) continue;
        if (szForced == nullptr || std::strcmp(szForced, tPath.szName) == 0) return tPath;
    }
    EndRun(stdout, kExitRefused,
           "ERROR: MD_KERNELS=%s is not available here: plain, or sse2 or avx2 on a processor that "
           "has it\n",
           szForced);
}

}  // namespace

const KernelPath& SelectedKernels() {
    static const KernelPath& tPath = Select();
    return tPath;
}
