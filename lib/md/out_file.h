// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A file that a run writes. A write that comes up short (full disk, size limit) does not stop
// the run: it is remembered, and closing the file prints one warning with its path.
#pragma once

#include <cstddef>
#include <cstdio>

#include "md/exit_status.h"

struct OutFile {
    std::FILE* pFile = nullptr;    // null while closed
    const char* szPath = nullptr;  // the opener's buffer; must outlive the open file
    bool bShort = false;           // some write did not arrive whole
};

// Opens for binary writing. `szMode` is "wb" or "ab". Writes are large, so there is no
// buffer unless one is given, which must outlive the open file. False if it cannot be opened.
[[nodiscard]] bool OutFileOpen(OutFile* pOut, const char* szPath, const char* szMode = "wb",
                               char* pBuffer = nullptr, std::size_t nBuffer = 0);

void OutFileWrite(OutFile* pOut, const void* pBytes, std::size_t nBytes);

// Ends the run with `status` if `szPath` and `szInput` are the same file, under whatever names:
// opened for writing, the input would be emptied before it is read. A null input is no file.
void RefuseToOverwrite(const char* szPath, const char* szInput, ExitStatus status);

// Closes and resets the record; does nothing if it is closed already.
void OutFileClose(OutFile* pOut);
