#include "md/print.h"

#include <cstdarg>
#include <cstdlib>

void MdPrint(const char* szFormat, ...) {
    std::va_list args;
    va_start(args, szFormat);
    std::vfprintf(stdout, szFormat, args);
    va_end(args);
}

void EndRun(std::FILE* pStream, ExitStatus status, const char* szFormat, ...) {
    std::va_list args;
    va_start(args, szFormat);
    std::vfprintf(pStream, szFormat, args);
    va_end(args);
    std::exit(status);
}

void RequireMemory(bool bGiven, const char* szWhat) {
    if (!bGiven) EndRun(stdout, kExitInput, "ERROR: no memory for %s\n", szWhat);
}
