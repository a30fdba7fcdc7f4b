// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <direct.h>
#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstdlib>
#include <cstring>

#include "md/platform/platform.h"

const char kNativePathSep = '\\';
const char* const kToolFile = "ffmpeg.exe";

void KeepRunningAtFileLimit() {}

void GuardStandardStreams() {}  // no file takes the place of a closed stream here

std::FILE* OpenToRead(const char* szPath) {
    return std::fopen(szPath, "rb");
}

bool FileSeek64(std::FILE* pFile, int64_t nOffset) {
    return _fseeki64(pFile, nOffset, SEEK_SET) == 0;
}

int64_t RegularFileSize(std::FILE* pFile) {
    struct _stat64 tStat;
    if (_fstat64(_fileno(pFile), &tStat) != 0 || (tStat.st_mode & _S_IFREG) == 0) return -1;
    return tStat.st_size;
}

bool PathExists(const char* szPath) {
    return _access(szPath, 0) == 0;
}

void MakeFolder(const char* szPath) {
    (void)_mkdir(szPath);
}

int RunCommand(const char* szCommand) {
    std::fflush(stdout);
    // The command processor strips one pair of quotes around the whole line; without that pair it
    // would strip those of the first and the last path.
    std::string sLine = "\"";
    sLine += szCommand;
    sLine += " <NUL\"";
    return std::system(sLine.c_str());
}

namespace {

// Ends a quoted part. The child's own parser takes backslashes straight before a quote for an
// escape, unless they are doubled.
void CloseQuotes(std::string* pWord) {
    const size_t nKept = pWord->find_last_not_of('\\') + 1;
    pWord->append(pWord->size() - nKept, '\\');
    *pWord += '"';
}

}  // namespace

std::string CommandWord(const char* szPath) {
    static const char szPlain[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-./:+,=@\\";
    if (szPath[0] != '\0' && szPath[std::strspn(szPath, szPlain)] == '\0') return szPath;
    // Quotes protect every mark except '%', so that one is put outside of them: the name between
    // two such marks then holds a quote, and no variable has that name.
    std::string sWord = "\"";
    for (const char* p = szPath; *p != '\0'; ++p) {
        if (*p == '%') {
            CloseQuotes(&sWord);
            sWord += "%\"";
        } else if (*p != '"') {  // no file name holds one
            sWord += *p;
        }
    }
    CloseQuotes(&sWord);
    return sWord;
}
