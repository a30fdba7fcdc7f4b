// The one way to standard output, and the one way to end a run early.
//
// MdPrint adds nothing to the text: line ends are the caller's. Configuration refusals go to
// standard error, all other messages to standard output; EndRun takes the stream for that reason.
// Neither returns an error: output that cannot be printed is lost with its stream.
#pragma once

#include <cstdio>

#include "md/exit_status.h"

void MdPrint(const char* szFormat, ...) __attribute__((format(printf, 1, 2)));

// Prints the message on `pStream` and ends the process with `status`. Releases nothing.
[[noreturn]] void EndRun(std::FILE* pStream, ExitStatus status, const char* szFormat, ...)
    __attribute__((format(printf, 3, 4)));

// Ends the run (status 1, message on standard output) when an allocation gave null. Takes the test
// and not the pointer: a pointer to const is taken for a read of memory that nobody has written
// yet.
void RequireMemory(bool bGiven, const char* szWhat);
