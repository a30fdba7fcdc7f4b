// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Texts built into fixed buffers: paths and commands. A text that does not fit is refused, never
// cut: a shortened name would read or write some other file. The compiler checks every format
// against its arguments.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>

#include "md/exit_status.h"

constexpr std::size_t kDumpPathSize = 640;  // bytes of a path in the feature folder, with end mark

// Formats into `szText`, `nSize` bytes; false if the text and its end mark do not fit.
[[nodiscard]] bool FitTextList(char* szText, std::size_t nSize, const char* szFormat,
                               std::va_list args) __attribute__((format(printf, 3, 0)));

// As FitTextList; a path that does not fit ends the run with `status` and a message on `pStream`.
void ComposePathList(std::FILE* pStream, char* szPath, std::size_t nSize, ExitStatus status,
                     const char* szFormat, std::va_list args) __attribute__((format(printf, 5, 0)));

// The forms that take the size of their array.
template <std::size_t N>
[[nodiscard]] __attribute__((format(printf, 2, 3))) bool FitText(char (&szText)[N],
                                                                 const char* szFormat, ...) {
    std::va_list args;
    va_start(args, szFormat);
    const bool bFits = FitTextList(szText, N, szFormat, args);
    va_end(args);
    return bFits;
}

template <std::size_t N>
__attribute__((format(printf, 4, 5))) void ComposePathOr(std::FILE* pStream, char (&szPath)[N],
                                                         ExitStatus status, const char* szFormat,
                                                         ...) {
    std::va_list args;
    va_start(args, szFormat);
    ComposePathList(pStream, szPath, N, status, szFormat, args);
    va_end(args);
}

// Refuses on standard output, as all stages do except configuration.
template <std::size_t N>
__attribute__((format(printf, 3, 4))) void ComposePath(char (&szPath)[N], ExitStatus status,
                                                       const char* szFormat, ...) {
    std::va_list args;
    va_start(args, szFormat);
    ComposePathList(stdout, szPath, N, status, szFormat, args);
    va_end(args);
}
