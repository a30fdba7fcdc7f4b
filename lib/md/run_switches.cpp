// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/run_switches.h"

#include <cstdlib>
#include <cstring>

#include "md/print.h"

namespace {

bool IsPlain(const char* szValue) {
    return szValue != nullptr && std::strcmp(szValue, "plain") == 0;
}

RunSwitches Read() {
    const char* const szKernels = std::getenv("MD_KERNELS");
    const char* const szText = std::getenv("MD_TEXT");
    if (szText != nullptr && !IsPlain(szText)) {
        EndRun(stdout, kExitRefused, "ERROR: MD_TEXT=%s: expected plain\n", szText);
    }
    return {szKernels, IsPlain(szKernels) || IsPlain(szText)};
}

}  // namespace

const RunSwitches& Switches() {
    static const RunSwitches tSwitches = Read();
    return tSwitches;
}
