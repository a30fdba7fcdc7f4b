// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// MD: bit-exact simulator of the motion-detection block.
#include <new>

#include "app/md_sim_run.h"
#include "md/platform/platform.h"
#include "md/print.h"

int main(int argc, char** argv) {
    KeepRunningAtFileLimit();
    GuardStandardStreams();
    std::set_new_handler([] { RequireMemory(false, "a text"); });
    SetPathSep(argv[0]);
    MdSimRun(argc, argv);
    MdPrint("finish.\n");
    MdPrintEnd();
    return 0;
}
