// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/out_file.h"

#include <filesystem>

#include "md/print.h"

bool OutFileOpen(OutFile* pOut, const char* szPath, const char* szMode, char* pBuffer,
                 std::size_t nBuffer) {
    *pOut = {std::fopen(szPath, szMode), szPath, false};
    if (pOut->pFile == nullptr) return false;
    std::setvbuf(pOut->pFile, pBuffer, pBuffer != nullptr ? _IOFBF : _IONBF, nBuffer);
    return true;
}

void OutFileWrite(OutFile* pOut, const void* pBytes, std::size_t nBytes) {
    if (std::fwrite(pBytes, 1, nBytes, pOut->pFile) != nBytes) pOut->bShort = true;
}

void RefuseToOverwrite(const char* szPath, const char* szInput, ExitStatus status) {
    std::error_code tNone;  // a missing file is not the input
    if (szInput == nullptr || !std::filesystem::equivalent(szPath, szInput, tNone)) return;
    EndRun(stdout, status, "ERROR: %s is this run's input and would be overwritten\n", szPath);
}

void OutFileClose(OutFile* pOut) {
    if (pOut->pFile == nullptr) return;
    const bool bClosed = std::fclose(pOut->pFile) == 0;
    if (pOut->bShort || !bClosed) {
        MdPrint("[Warning] %s is incomplete: not all of it could be written\n", pOut->szPath);
    }
    *pOut = OutFile{};
}
