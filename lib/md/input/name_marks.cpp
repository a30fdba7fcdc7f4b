// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/input/name_marks.h"

#include <algorithm>
#include <cstring>

#include "md/input/input_types.h"

namespace {

// Reads decimal digits; returns the place after them.
const char* ReadDigits(const char* p, const char* pEnd, int32_t* pValue) {
    int64_t nValue = 0;
    for (; p < pEnd && *p >= '0' && *p <= '9'; ++p) {
        nValue = std::min<int64_t>(nValue * 10 + (*p - '0'), INT32_MAX);
    }
    *pValue = static_cast<int32_t>(nValue);
    return p;
}

}  // namespace

InputType InputTypeFromName(const char* szPath) {
    const char* pDot = std::strrchr(szPath, '.');
    if (pDot == nullptr || std::strncmp(pDot + 1, "yuv", 3) != 0) return kAnyVideo;
    for (const InputTypeRow& tRow : aInputTypes) {
        if (tRow.szMark == nullptr) continue;
        if (std::strstr(szPath, tRow.szMark) != nullptr) return tRow.nType;
        if (std::strstr(szPath, tRow.szSmallMark) != nullptr) return tRow.nType;
    }
    return kAnyVideo;
}

bool ParseNameSize(const char* pFrom, const char* pEnd, int32_t* pWidth, int32_t* pHeight) {
    // A number without digits reads as 0 and fails with the size.
    const char* p = ReadDigits(pFrom, pEnd, pWidth);
    if (p == pEnd || *p != 'x') return false;
    return ReadDigits(p + 1, pEnd, pHeight) == pEnd && *pWidth >= 1 && *pHeight >= 1;
}
