// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/input/tool_commands.h"

#include <cstdarg>

#include "md/compose_path.h"
#include "md/platform/run_tool.h"
#include "md/print.h"
#include "md/run_state.h"

namespace {

__attribute__((format(printf, 2, 0))) void ComposeCommand(char (&cmd)[kCommandSize],
                                                          const char* szFormat, std::va_list args) {
    if (FitTextList(cmd, kCommandSize, szFormat, args)) return;
    EndRun(stdout, kExitInput, "[ERROR] command is longer than %d bytes: %s...\n",
           static_cast<int>(kCommandSize) - 1, cmd);
}

}  // namespace

void RunSilently(const char* szFormat, ...) {
    char cmd[kCommandSize];
    std::va_list args;
    va_start(args, szFormat);
    ComposeCommand(cmd, szFormat, args);
    va_end(args);
    RunTool(cmd);
}

void PrintAndRun(const char* szFormat, ...) {
    char cmd[kCommandSize];
    std::va_list args;
    va_start(args, szFormat);
    ComposeCommand(cmd, szFormat, args);
    va_end(args);
    MdPrint("INFO: exec: %s\n", cmd);
    RunTool(cmd);
}

std::string InFolder(const char* szFolder) {
    return CommandFolder(szFolder, cPathSep);
}
