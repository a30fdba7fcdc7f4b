// Paths built into fixed buffers. A path that does not fit is refused, never cut: a shortened
// name would read or write some other file.
#pragma once

#include <cstdio>

#include "md/print.h"

// Formats into `szPath`; false if the text and its end mark do not fit.
template <std::size_t N, typename... Args>
[[nodiscard]] bool FitText(char (&szPath)[N], const char* szFormat, Args... args) {
    const int nLength = std::snprintf(szPath, N, szFormat, args...);
    return nLength >= 0 && static_cast<std::size_t>(nLength) < N;
}

// As FitText, but a text that does not fit ends the run with `status` and a message on `pStream`.
template <std::size_t N, typename... Args>
void ComposePathOr(std::FILE* pStream, char (&szPath)[N], ExitStatus status, const char* szFormat,
                   Args... args) {
    if (!FitText(szPath, szFormat, args...)) {
        EndRun(pStream, status, "[ERROR] path is longer than %d bytes: %s...\n",
               static_cast<int>(N) - 1, szPath);
    }
}

// The form of all stages but configuration, which refuses on standard error.
template <std::size_t N, typename... Args>
void ComposePath(char (&szPath)[N], ExitStatus status, const char* szFormat, Args... args) {
    ComposePathOr(stdout, szPath, status, szFormat, args...);
}
