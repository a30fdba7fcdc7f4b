#include "md/platform/run_tool.h"

#include <cstdio>

#include "md/platform/platform.h"

void RunTool(const char* szCommand) {
    const int nStatus = RunCommand(szCommand);
    if (nStatus == 0) return;
    std::fprintf(stderr, "[Warning] status %d, what it makes may be incomplete: %s\n", nStatus,
                 szCommand);
}
