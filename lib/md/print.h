// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The one way to standard output, and the one way to end a run early.
//
// MdPrint adds nothing to the text: the caller ends its lines. Configuration refusals go to
// standard error, all other messages to standard output; EndRun takes the stream for that reason.
// Neither returns an error. A run whose standard output cannot be written (full disk, closed, its
// reader gone) goes on, so that its files are complete; one line on standard error says so at the
// end.
#pragma once

#include <cstdio>

#include "md/exit_status.h"

void MdPrint(const char* szFormat, ...) __attribute__((format(printf, 1, 2)));

// The end of standard output: writes out what is buffered; false, and the line on standard error,
// if not all that was printed arrived.
bool MdPrintEnd();

// Prints the message on `pStream` and ends the process with `status`. Releases nothing.
[[noreturn]] void EndRun(std::FILE* pStream, ExitStatus status, const char* szFormat, ...)
    __attribute__((format(printf, 3, 4)));

// Ends the run (status 1, message on standard output) when an allocation gave null. Takes a bool,
// not the pointer: GCC's -Wmaybe-uninitialized misfires on a const pointer to fresh memory.
void RequireMemory(bool bGiven, const char* szWhat);
