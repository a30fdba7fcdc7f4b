#include "md/input/name_marks.h"

#include <algorithm>
#include <cstring>

namespace {

bool HasMark(const char* szPath, const char* szUpper, const char* szLower) {
    return std::strstr(szPath, szUpper) != nullptr || std::strstr(szPath, szLower) != nullptr;
}

// Reads decimal digits; returns the place behind them.
const char* ReadDigits(const char* p, const char* pEnd, int32_t* pValue) {
    int64_t nValue = 0;
    for (; p < pEnd && *p >= '0' && *p <= '9'; ++p) {
        nValue = std::min<int64_t>(nValue * 10 + (*p - '0'), INT32_MAX);
    }
    *pValue = static_cast<int32_t>(nValue);
    return p;
}

}  // namespace

int32_t InputTypeFromName(const char* szPath) {
    const char* pDot = std::strrchr(szPath, '.');
    if (pDot == nullptr || std::strncmp(pDot + 1, "yuv", 3) != 0) return 1;
    if (HasMark(szPath, "_P420", "_p420")) return 0;
    if (HasMark(szPath, "_P422", "_p422")) return 3;
    if (HasMark(szPath, "_P400", "_p400")) return 2;
    return 1;
}

bool ParseNameSize(const char* pFrom, const char* pEnd, int32_t* pWidth, int32_t* pHeight) {
    // A number without digits reads as 0 and fails with the size.
    const char* p = ReadDigits(pFrom, pEnd, pWidth);
    if (p == pEnd || *p != 'x') return false;
    return ReadDigits(p + 1, pEnd, pHeight) == pEnd && *pWidth >= 1 && *pHeight >= 1;
}
