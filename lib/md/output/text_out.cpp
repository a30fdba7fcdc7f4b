// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/output/text_out.h"

#include "md/print.h"

bool bTextPlain = false;

void TextOpen(TextOut* pOut, const char* szPath, const char* szKind) {
    pOut->nUsed = 0;
    char* const pBuffer = bTextPlain ? pOut->aBuffer : nullptr;  // else TextPrint fills it
    if (!OutFileOpen(&pOut->tFile, szPath, "wb", pBuffer, kTextBuffer)) {
        EndRun(stdout, kExitRefused, "Can't open %s: %s\n", szKind, szPath);
    }
}

void TextFlush(TextOut* pOut) {
    OutFileWrite(&pOut->tFile, pOut->aBuffer, pOut->nUsed);
    pOut->nUsed = 0;
}

void TextForget(TextOut* pOut) {
    pOut->tFile = OutFile{};
    pOut->nUsed = 0;
}

void TextClose(TextOut* pOut) {
    if (pOut->tFile.pFile == nullptr) return;
    TextFlush(pOut);
    OutFileClose(&pOut->tFile);
}
