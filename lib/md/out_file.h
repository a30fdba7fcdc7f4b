// A file that a run writes. A write that comes up short (full disk, size limit) does not stop
// the run: it is remembered, and closing the file prints one warning with its path.
#pragma once

#include <cstddef>
#include <cstdio>

struct OutFile {
    std::FILE* pFile = nullptr;    // null while closed
    const char* szPath = nullptr;  // the opener's buffer; must outlive the open file
    bool bShort = false;           // some write did not arrive whole
};

// Opens for binary writing, without a buffer: what is written comes in large pieces. `szMode` is
// "wb" or "ab". False if the file cannot be opened.
[[nodiscard]] bool OutFileOpen(OutFile* pOut, const char* szPath, const char* szMode = "wb");

void OutFileWrite(OutFile* pOut, const void* pBytes, std::size_t nBytes);

// Closes and resets the record; does nothing if it is closed already.
void OutFileClose(OutFile* pOut);
