// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/compose_path.h"

#include "md/print.h"

bool FitTextList(char* szText, std::size_t nSize, const char* szFormat, std::va_list args) {
    const int nLength = std::vsnprintf(szText, nSize, szFormat, args);
    return nLength >= 0 && static_cast<std::size_t>(nLength) < nSize;
}

void ComposePathList(std::FILE* pStream, char* szPath, std::size_t nSize, ExitStatus status,
                     const char* szFormat, std::va_list args) {
    if (FitTextList(szPath, nSize, szFormat, args)) return;
    EndRun(pStream, status, "[ERROR] path is longer than %d bytes: %s...\n",
           static_cast<int>(nSize) - 1, szPath);
}
