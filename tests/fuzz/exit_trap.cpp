// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/fuzz/exit_trap.h"

#include <unistd.h>

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>

int64_t nFailingAllocation = -1;

namespace {

std::jmp_buf tReturn;
bool bTrapped;
int nExitStatus;
std::set<void*> aBlocks;
std::set<std::FILE*> aFiles;

bool Refused(size_t nBytes) {
    return bTrapped && (nBytes > size_t{64} << 20 || nFailingAllocation-- == 0);
}

template <typename T>
T* Note(T* p, std::set<T*>* pKept) {
    if (bTrapped && p != nullptr) pKept->insert(p);
    return p;
}

}  // namespace

extern "C" {
[[noreturn]] void __real_exit(int nStatus);
void* __real_malloc(size_t nBytes);
void* __real_calloc(size_t nCount, size_t nBytes);
void __real_free(void* p);
std::FILE* __real_fopen(const char* szPath, const char* szMode);
int __real_fclose(std::FILE* pFile);

[[noreturn]] void __wrap_exit(int nStatus) {
    if (!bTrapped) __real_exit(nStatus);
    nExitStatus = nStatus;
    std::longjmp(tReturn, 1);
}
void* __wrap_malloc(size_t nBytes) {
    return Refused(nBytes) ? nullptr : Note(__real_malloc(nBytes), &aBlocks);
}
void* __wrap_calloc(size_t nCount, size_t nBytes) {
    return Refused(nCount * nBytes) ? nullptr : Note(__real_calloc(nCount, nBytes), &aBlocks);
}
void __wrap_free(void* p) {
    if (bTrapped) aBlocks.erase(p);
    __real_free(p);
}
std::FILE* __wrap_fopen(const char* szPath, const char* szMode) {
    return Note(__real_fopen(szPath, szMode), &aFiles);
}
int __wrap_fclose(std::FILE* pFile) {
    if (bTrapped) aFiles.erase(pFile);
    return __real_fclose(pFile);
}
}

int RunTrapped(const std::function<void()>& fnRun) {
    nExitStatus = kCameBack;
    bTrapped = true;
    if (setjmp(tReturn) == 0) fnRun();
    bTrapped = false;
    // A run that came back has released all it took; one that ended need not.
    Require(nExitStatus != kCameBack || (aBlocks.empty() && aFiles.empty()), "all released");
    for (void* p : aBlocks) __real_free(p);
    for (std::FILE* p : aFiles) __real_fclose(p);
    aBlocks.clear();
    aFiles.clear();
    return nExitStatus;
}

void Require(bool bHolds, const char* szWhat) {
    if (bHolds) return;
    // Standard error may be closed to keep a fuzz run quiet; the stack shows the rest.
    (void)!write(STDERR_FILENO, szWhat, std::strlen(szWhat));
    std::abort();
}

void RequireKnownStatus(int nStatus) {
    Require(nStatus == kCameBack || nStatus == -1 || nStatus == 1 || nStatus == 4 ||
                nStatus == 100 || nStatus == 400,
            "a status of the program");
}
