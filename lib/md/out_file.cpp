#include "md/out_file.h"

#include "md/print.h"

bool OutFileOpen(OutFile* pOut, const char* szPath, const char* szMode) {
    *pOut = {std::fopen(szPath, szMode), szPath, false};
    if (pOut->pFile == nullptr) return false;
    std::setvbuf(pOut->pFile, nullptr, _IONBF, 0);
    return true;
}

void OutFileWrite(OutFile* pOut, const void* pBytes, std::size_t nBytes) {
    if (std::fwrite(pBytes, 1, nBytes, pOut->pFile) != nBytes) pOut->bShort = true;
}

void OutFileClose(OutFile* pOut) {
    if (pOut->pFile == nullptr) return;
    const bool bClosed = std::fclose(pOut->pFile) == 0;
    if (pOut->bShort || !bClosed) {
        MdPrint("[Warning] %s is incomplete: not all of it could be written\n", pOut->szPath);
    }
    *pOut = OutFile{};
}
