// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/cfg_top/configure.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "md/cfg_top/cfg_text.h"
#include "md/cfg_top/input_map.h"
#include "md/compose_path.h"
#include "md/print.h"
#include "md/run_state.h"

namespace {

InputMapEntry aWorkMap[kMaxKeys + 1];  // the copy that all look-ups use

bool IsEnd(const InputMapEntry& tRow) {
    return std::strcmp(tRow.TokenName, "END") == 0;
}

bool IsOption(const char* szArgument, const char* szOption) {
    return std::strncmp(szArgument, szOption, 2) == 0;
}

// One of the options that may follow the default file.
bool IsAnyOption(const char* szArgument) {
    return IsOption(szArgument, "-h") || IsOption(szArgument, "-f") || IsOption(szArgument, "-p");
}

// The base that a number's prefix asks for: "0x" and a digit 16, else a leading zero 8, else 10.
// The library is not the same everywhere: with base 0 newer ones also read binary ("0b11"), and
// with base 16 some find no number in "0xg", where others find the zero.
int NumberBase(const char* szText) {
    const char* p = szText + std::strspn(szText, " \t\n\v\f\r");
    if (*p == '+' || *p == '-') ++p;
    if (*p != '0') return 10;
    const bool bHex =
        (p[1] == 'x' || p[1] == 'X') && std::isxdigit(static_cast<unsigned char>(p[2])) != 0;
    return bHex ? 16 : 8;
}

// strtol, saturated at the int32_t limits on every platform.
int32_t ToInt32(const char* szText, char** ppEnd, int nBase) {
    const long long nValue = std::strtoll(szText, ppEnd, nBase);
    return static_cast<int32_t>(std::clamp<long long>(nValue, INT32_MIN, INT32_MAX));
}

[[noreturn]] void RefuseNumber(const InputMapEntry& tRow, const char* szValue) {
    EndRun(stderr, kExitParse,
           " Parsing error: Expected numerical value for Parameter of %s, found '%s'.",
           tRow.TokenName, szValue);
}

void StoreValue(const InputMapEntry& tRow, const char* szValue) {
    switch (tRow.Type) {
        case kTypeInteger: {
            char* pEnd = nullptr;
            const int32_t nValue = ToInt32(szValue, &pEnd, NumberBase(szValue));
            if (pEnd == szValue) RefuseNumber(tRow, szValue);
            *static_cast<int32_t*>(tRow.Place) = nValue;
            break;
        }
        case kTypeString:
            if (std::strlen(szValue) >= kPathSize) {
                EndRun(stderr, kExitParse,
                       "Parsing error in config file: value of %s is longer than %d bytes: '%s'.\n",
                       tRow.TokenName, kPathSize - 1, szValue);
            }
            std::strncpy(static_cast<char*>(tRow.Place), szValue, kPathSize);
            break;
        case kTypeDouble: {
            double dValue = 0.0;
            if (std::sscanf(szValue, "%lf", &dValue) != 1) RefuseNumber(tRow, szValue);
            *static_cast<double*>(tRow.Place) = dValue;
            break;
        }
    }
}

// Assigns the triples of a text. With `bOpenEnd` a key and '=' without a value at the text's end
// store nothing; else they are refused.
void AssignTriples(char* szText, int32_t nLength, bool bOpenEnd) {
    char* aTokens[kMaxTokens];
    const int32_t nTokens = cfgTokenise(szText, nLength, aTokens);
    // Threes, regardless of lines; one token left over at the end is ignored.
    for (int32_t i = 0; i < nTokens - 1; i += 3) {
        const int32_t nRow = cfgParamNameToIndex(aTokens[i]);
        if (nRow < 0) {
            EndRun(stderr, kExitParse,
                   "Parsing error in config file: Parameter Name '%s' not recognized.", aTokens[i]);
        }
        if (std::strcmp(aTokens[i + 1], "=") != 0) {
            EndRun(stderr, kExitParse,
                   " Parsing error in config file: '=' expected as the second token in each line.");
        }
        if (i + 2 >= nTokens) {
            if (bOpenEnd) return;
            EndRun(stderr, kExitParse, "Parsing error in config file: no value behind '%s ='.\n",
                   aTokens[i]);
        }
        StoreValue(aWorkMap[nRow], aTokens[i + 2]);
        MdPrint(".");
    }
}

void ParseText(char* szText, bool bOpenEnd = false) {
    AssignTriples(szText, static_cast<int32_t>(std::strlen(szText)), bOpenEnd);
}

// The text of a -p option: the arguments from `nFirst` up to `nEnd` in a row, with blanks around
// each '='.
char* JoinOverrides(char** argv, int32_t nFirst, int32_t nEnd) {
    size_t nLength = 0;
    size_t nEquals = 0;
    for (int32_t i = nFirst; i < nEnd; ++i) {
        nLength += std::strlen(argv[i]);
        nEquals += static_cast<size_t>(std::count(argv[i], argv[i] + std::strlen(argv[i]), '='));
    }
    char* szText =
        static_cast<char*>(std::malloc(nLength + std::max<size_t>(1000, 2 * nEquals + 1)));
    if (szText == nullptr) {
        EndRun(stderr, kExitArgMemory, "Can't get additional 1000 bytes space.\n");
    }
    char* pOut = szText;
    for (int32_t i = nFirst; i < nEnd; ++i) {
        for (const char* p = argv[i]; *p != '\0'; ++p) {
            if (*p == '=') {
                *pOut++ = ' ';
                *pOut++ = '=';
                *pOut++ = ' ';
            } else {
                *pOut++ = *p;
            }
        }
    }
    *pOut = '\0';
    return szText;
}

[[noreturn]] void RefuseArgument(const CfgArguments& tArgs, int32_t nIndex) {
    std::fprintf(stderr,
                 "Error in command line, ac %d, around string '%s', missing -f or -p parameters?\n",
                 nIndex, tArgs.argv[nIndex]);
    cfgUsage(tArgs.argv[0]);
}

// The options from `nIndex` on. Only the first two characters of an option count.
void WalkArguments(const CfgArguments& tArgs, int32_t nIndex) {
    while (nIndex < tArgs.argc) {
        const char* szArgument = tArgs.argv[nIndex];
        if (IsOption(szArgument, "-h")) {
            cfgUsage(tArgs.argv[0]);
        } else if (IsOption(szArgument, "-f") && nIndex + 1 < tArgs.argc) {
            const char* szName = tArgs.argv[nIndex + 1];
            char* szText = cfgGetConfigFileContent(szName);
            if (szText == nullptr) {
                EndRun(stderr, kExitParse, "The configure file content is NULL.\n");
            }
            MdPrint("Parsing Configfile...... %s", szName);
            ParseText(szText);
            MdPrint("\n");
            std::free(szText);
            nIndex += 2;
        } else if (IsOption(szArgument, "-p")) {
            int32_t nEnd = nIndex + 1;
            while (nEnd < tArgs.argc && tArgs.argv[nEnd][0] != '-') ++nEnd;
            char* szText = JoinOverrides(tArgs.argv, nIndex + 1, nEnd);
            MdPrint("Parsing command line string '%s'", szText);
            // A value cut off because it begins with '-' ("Key = -1") is refused as an argument.
            ParseText(szText, nEnd < tArgs.argc && !IsAnyOption(tArgs.argv[nEnd]));
            std::free(szText);
            MdPrint("\n");
            nIndex = nEnd;
        } else {
            RefuseArgument(tArgs, nIndex);
        }
    }
}

}  // namespace

void cfgConfigure(CfgArguments* pArguments, CfgResult* pResult) {
    const CfgArguments& tArgs = *pArguments;
    const std::new_handler pOuterHandler =
        std::set_new_handler([] { EndRun(stderr, kExitInput, "ERROR: no memory for a text\n"); });
    tSimParams = SimParams{};
    tGradientTexts = GradientTexts{};
    MdPrint("Setting Default Parameters...\n");
    cfgInitParams();

    const char* szDefaultFile = "default.cfg";
    int32_t nFirst = 1;
    if (tArgs.argc == 2 && IsOption(tArgs.argv[1], "-h")) cfgUsage(tArgs.argv[0]);
    if (tArgs.argc >= 3) {
        if (IsOption(tArgs.argv[1], "-d")) {
            szDefaultFile = tArgs.argv[2];
            nFirst = 3;
        } else if (IsOption(tArgs.argv[1], "-h")) {
            cfgUsage(tArgs.argv[0]);
        }
    }
    MdPrint("Parsing Configfile...... %s\n", szDefaultFile);
    ComposePathOr(stderr, pResult->szCfgDir, kExitRefused, "%s", cfgDirName(szDefaultFile).c_str());
    char* szText = cfgGetConfigFileContent(szDefaultFile);
    if (szText == nullptr) {
        std::fprintf(stderr, "The configuraton file buffer is NULL.\n");
        cfgUsage(tArgs.argv[0]);
    }
    ParseText(szText);
    MdPrint("\n");
    std::free(szText);

    WalkArguments(tArgs, nFirst);
    MdPrint("\n");
    cfgTestParams();
    cfgParseMultiParam(tGradientTexts.MD_HogGradX, tSimParams.tMd.nMD_HogGradX, kGradientTaps, 0);
    cfgParseMultiParam(tGradientTexts.MD_HogGradY, tSimParams.tMd.nMD_HogGradY, kGradientTaps, 0);
    pResult->pSimParams = &tSimParams;
    std::set_new_handler(pOuterHandler);
}

void cfgInitParams() {
    std::copy(aInputMap.begin(), aInputMap.end(), aWorkMap);
    for (const InputMapEntry& tRow : aInputKeys) {
        if (tRow.Type == kTypeInteger) {
            *static_cast<int32_t*>(tRow.Place) = static_cast<int32_t>(tRow.Default);
        } else if (tRow.Type == kTypeDouble) {
            *static_cast<double*>(tRow.Place) = tRow.Default;
        }
    }
}

int32_t cfgParamNameToIndex(const char* szName) {
    for (int32_t i = 0; !IsEnd(aWorkMap[i]); ++i) {
        if (std::strcmp(aWorkMap[i].TokenName, szName) == 0) return i;
    }
    return -1;
}

void cfgParseContent(char* szText, int32_t nLength) {
    AssignTriples(szText, nLength, false);
}

void cfgTestParams() {
    for (const InputMapEntry* pRow = aWorkMap; !IsEnd(*pRow); ++pRow) {
        const InputMapEntry& tRow = *pRow;
        const bool bUpper = tRow.LimitKind == kLimitBoth;
        if (tRow.LimitKind == kLimitNone) continue;
        if (tRow.Type == kTypeInteger) {
            const int32_t nValue = *static_cast<const int32_t*>(tRow.Place);
            const int32_t nMin = static_cast<int32_t>(tRow.MinLimit);
            const int32_t nMax = static_cast<int32_t>(tRow.MaxLimit);
            if (bUpper && (nValue < nMin || nValue > nMax)) {
                EndRun(stderr, kExitLimit,
                       "Error in input parameter %s. Check configuration file. "
                       "Value should be in [%d, %d] range.",
                       tRow.TokenName, nMin, nMax);
            }
            if (!bUpper && nValue < nMin) {
                EndRun(stderr, kExitLimit,
                       "Error in input parameter \"%s\". Check configuration file. "
                       "Value should not be smaller than %d.",
                       tRow.TokenName, nMin);
            }
        } else if (tRow.Type == kTypeDouble) {
            const double dValue = *static_cast<const double*>(tRow.Place);
            if (bUpper && (dValue < tRow.MinLimit || dValue > tRow.MaxLimit)) {
                EndRun(stderr, kExitLimit,
                       "Error in input parameter %s. Check configuration file. "
                       "Value should be in [%.2f, %.2f] range.",
                       tRow.TokenName, tRow.MinLimit, tRow.MaxLimit);
            }
            if (!bUpper && dValue < tRow.MinLimit) {
                EndRun(stderr, kExitLimit,
                       "Error in input parameter %s. Check configuration file. "
                       "Value should not be smaller than %2.f.",
                       tRow.TokenName, tRow.MinLimit);
            }
        }
    }
}

void cfgParseMultiParam(const char* szText, int32_t* pValues, int32_t nCount, int32_t nFill) {
    std::fill_n(pValues, nCount, nFill);
    if (szText[0] == '\0') return;
    int32_t nFound = 0;
    const char* pField = szText;
    while (true) {
        const char* pEnd = pField + std::strcspn(pField, ",");
        if (pEnd == pField || nFound >= nCount) {
            EndRun(stdout, kExitRefused, "parsing mulit-param str %s error\n", szText);
        }
        pValues[nFound++] = ToInt32(pField, nullptr, 10);
        if (*pEnd == '\0') return;
        pField = pEnd + 1;
    }
}

void cfgUsage(const char* szProgram) {
    const char* szName = szProgram != nullptr ? szProgram : "MD.exe";
    EndRun(stderr, kExitRefused,
           "\n\nUsage:  %s [-h] [-d xxx.cfg] [-p XXX=N]## Parameters\n\n"
           "## Options\n"
           "   -h :  prints function usage\n"
           "   -d :  use <xxx.cfg> as default file for parameter initializations.\n"
           "         If not used then file defaults to default.cfg in local directory.\n"
           "   -p :  Set parameter <Param> to <Value>. OverWrite the setting in cfg file\n"
           "Example:\n"
           "   %s  -h\n"
           "   %s  -d default.cfg\n"
           "   %s  -d default.cfg -p ThW=5 -p ThH=6\n",
           szName, szName, szName, szName);
}
