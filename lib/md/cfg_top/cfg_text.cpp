// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/cfg_top/cfg_text.h"

#include <cstdio>
#include <cstdlib>

#include "md/print.h"

namespace {

// Stores the size of the file and goes back to its start. False, after a message, when the size is
// not that of a configuration file. *pSize holds the low 32 bits of the position only: a file
// beyond 2 GiB shows as negative or as a remainder.
bool FetchSize(std::FILE* pFile, const char* szPath, int32_t* pSize) {
    if (std::fseek(pFile, 0, SEEK_END) != 0) {
        std::fprintf(stderr, "Cannot fseek in configuration file %s.", szPath);
        return false;
    }
    *pSize = static_cast<int32_t>(std::ftell(pFile));
    if (*pSize < 0 || *pSize > kMaxConfigBytes) {
        std::fprintf(stderr,
                     "Unreasonable Filesize %ld reported by ftell for configuration file %s.",
                     static_cast<long>(*pSize), szPath);
        return false;
    }
    if (std::fseek(pFile, 0, SEEK_SET) != 0) {
        std::fprintf(stderr, "Cannot fseek in configuration file %s.", szPath);
        return false;
    }
    return true;
}

}  // namespace

char* cfgGetConfigFileContent(const char* szPath) {
    std::FILE* pFile = std::fopen(szPath, "r");
    if (pFile == nullptr) {
        std::fprintf(stderr, "Cannot open configuration file %s.", szPath);
        return nullptr;
    }
    int32_t nSize = 0;
    if (!FetchSize(pFile, szPath, &nSize)) {
        std::fclose(pFile);
        return nullptr;
    }
    char* szText = static_cast<char*>(std::malloc(static_cast<size_t>(nSize) + 1));
    if (szText == nullptr) EndRun(stderr, kExitInput, "cfgGetConfigFileContent: buf");
    szText[std::fread(szText, 1, static_cast<size_t>(nSize), pFile)] = '\0';
    std::fclose(pFile);
    return szText;
}

std::string cfgDirName(const char* szPath) {
    std::string sDir = szPath;
    if (sDir.empty()) return ".";
    if (sDir.size() == 1) return sDir;
    if (sDir.back() == '/' || sDir.back() == '\\') sDir.pop_back();
    const size_t nSep = sDir.find_last_of("/\\");
    if (nSep == std::string::npos) return ".";
    return sDir.substr(0, nSep == 0 ? 1 : nSep);
}

int32_t cfgTokenise(char* szText, int32_t nLength, char* aTokens[kMaxTokens]) {
    int32_t nTokens = 0;
    bool bInItem = false;
    bool bInString = false;
    const auto Record = [&](char* pStart) {
        if (nTokens == kMaxTokens) {
            EndRun(stderr, kExitParse, "Parsing error in config file: more than %d tokens.\n",
                   kMaxTokens);
        }
        aTokens[nTokens++] = pStart;
    };

    char* const pEnd = szText + nLength;
    for (char* p = szText; p < pEnd;) {
        switch (*p) {
            case '\r':  // stays part of the token around it
                ++p;
                break;
            case '#':
                *p = '\0';
                while (p < pEnd && *p != '\n') ++p;
                bInItem = false;
                bInString = false;
                break;
            case '\n':
                *p++ = '\0';
                bInItem = false;
                bInString = false;
                break;
            case ' ':
            case '\t':
                if (!bInString) {
                    *p = '\0';
                    bInItem = false;
                }
                ++p;
                break;
            case '"':
                *p++ = '\0';
                if (bInString) {
                    bInItem = false;
                } else {
                    Record(p);
                    // Flipped, not set: a quote right after an item clears the flag, and the next
                    // byte records the token a second time.
                    bInItem = !bInItem;
                }
                bInString = !bInString;
                break;
            default:
                if (!bInItem) {
                    Record(p);
                    bInItem = true;
                }
                ++p;
                break;
        }
    }
    return nTokens;
}
