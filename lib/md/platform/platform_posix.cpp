// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "md/platform/platform.h"

const char kNativePathSep = '/';
const char* const kToolFile = "ffmpeg";

void KeepRunningAtFileLimit() {
    (void)std::signal(SIGXFSZ, SIG_IGN);
}

void GuardStandardStreams() {
    (void)std::signal(SIGPIPE, SIG_IGN);
    for (int nFile : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // open() returns the lowest free descriptor; read-only, so that printing to it fails.
        if (fcntl(nFile, F_GETFD) == -1) (void)open("/dev/null", O_RDONLY);
    }
}

std::FILE* OpenToRead(const char* szPath) {
    struct stat tStat;
    if (stat(szPath, &tStat) == 0 && S_ISDIR(tStat.st_mode)) return nullptr;
    return std::fopen(szPath, "rb");
}

bool FileSeek64(std::FILE* pFile, int64_t nOffset) {
    static_assert(sizeof(off_t) == 8);
    return fseeko(pFile, nOffset, SEEK_SET) == 0;
}

int64_t RegularFileSize(std::FILE* pFile) {
    struct stat tStat;
    if (fstat(fileno(pFile), &tStat) != 0 || !S_ISREG(tStat.st_mode)) return -1;
    return tStat.st_size;
}

bool PathExists(const char* szPath) {
    return access(szPath, F_OK) == 0;
}

void MakeFolder(const char* szPath) {
    (void)mkdir(szPath, 0777);
}

// Not std::system: it ignores the interrupt key while the command runs, and a user who stops the
// tool wants to stop the run.
int RunCommand(const char* szCommand) {
    std::fflush(stdout);
    std::string sLine = std::string(szCommand) + " </dev/null";
    char szShell[] = "sh", szOption[] = "-c";
    char* const aArguments[] = {szShell, szOption, sLine.data(), nullptr};
    pid_t nChild;
    if (posix_spawn(&nChild, "/bin/sh", nullptr, nullptr, aArguments, environ) != 0) return 127;
    int nStatus = 0;
    while (waitpid(nChild, &nStatus, 0) == -1 && errno == EINTR) continue;
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : 128 + WTERMSIG(nStatus);
}

std::string CommandWord(const char* szPath) {
    static const char szPlain[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-./:+,=@%";
    if (szPath[0] != '\0' && szPath[std::strspn(szPath, szPlain)] == '\0') return szPath;
    // Within single quotes the shell changes no byte; only the single quote itself needs escaping.
    std::string sWord = "'";
    for (const char* p = szPath; *p != '\0'; ++p) {
        if (*p == '\'') {
            sWord += "'\\''";
        } else {
            sWord += *p;
        }
    }
    return sWord + "'";
}
