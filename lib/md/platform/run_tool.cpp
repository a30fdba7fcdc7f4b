// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/platform/run_tool.h"

#include <cstdio>

#include "md/platform/platform.h"

void RunTool(const char* szCommand) {
    const int nStatus = RunCommand(szCommand);
    if (nStatus == 0) return;
    std::fprintf(stderr, "[Warning] status %d, what it makes may be incomplete: %s\n", nStatus,
                 szCommand);
}

std::string CommandFolder(const char* szFolder, char cSep) {
    const std::string sFolder = szFolder[0] == '\0' ? "" : CommandWord(szFolder);
    return sFolder + cSep;
}
