// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/print.h"

#include <cstdarg>
#include <cstdlib>

void MdPrint(const char* szFormat, ...) {
    std::va_list args;
    va_start(args, szFormat);
    std::vfprintf(stdout, szFormat, args);
    va_end(args);
}

bool MdPrintEnd() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
    std::fprintf(stderr, "[Warning] standard output is incomplete: not all could be written\n");
    return false;
}

void EndRun(std::FILE* pStream, ExitStatus status, const char* szFormat, ...) {
    std::va_list args;
    va_start(args, szFormat);
    std::vfprintf(pStream, szFormat, args);
    va_end(args);
    if (!MdPrintEnd() && pStream == stdout) {
        // Why the run ends must not be lost with the log.
        va_start(args, szFormat);
        std::vfprintf(stderr, szFormat, args);
        va_end(args);
    }
    std::exit(status);
}

void RequireMemory(bool bGiven, const char* szWhat) {
    if (!bGiven) EndRun(stdout, kExitInput, "ERROR: no memory for %s\n", szWhat);
}
