// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The statuses with which a run ends. exit() gets these numbers; what a parent process sees depends
// on the platform (POSIX keeps the low eight bits: -1 shows as 255, 400 as 144).
#pragma once

enum ExitStatus : int {
    kExitRefused = -1,     // usage, refused settings, a comma list, a file that cannot be opened
    kExitInput = 1,        // input preparation and its tools; an allocation that failed
    kExitParse = 4,        // configuration text that cannot be parsed, an unreadable -f file
    kExitArgMemory = 100,  // no memory for the text of a -p option
    kExitLimit = 400,      // a value outside the range of its key
};
