// Comma lists against a second reading of them: two bytes for room and fill, then the text.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "md/cfg_top/configure.h"
#include "tests/fuzz/exit_trap.h"

namespace {

int32_t Number(const std::string& s) {
    size_t i = 0;
    while (i < s.size() && (s[i] == ' ' || (s[i] >= '\t' && s[i] <= '\r'))) ++i;
    const bool bSign = i < s.size() && (s[i] == '-' || s[i] == '+');
    const bool bMinus = bSign && s[i] == '-';
    int64_t n = 0;
    for (i += bSign ? 1 : 0; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i) {
        n = std::min<int64_t>(n * 10 + (s[i] - '0'), int64_t{1} << 40);
    }
    return static_cast<int32_t>(std::clamp<int64_t>(bMinus ? -n : n, INT32_MIN, INT32_MAX));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nData) {
    if (nData < 2) return 0;
    const int32_t nRoom = pData[0] % 9;
    const int32_t nFill = pData[1] - 128;
    const std::string sText(reinterpret_cast<const char*>(pData) + 2, nData - 2);
    const std::string sSeen = sText.c_str();  // up to the first zero byte
    // On the heap, so that one value too many is seen.
    std::vector<int32_t> aValues(static_cast<size_t>(nRoom), 7);
    const int nStatus =
        RunTrapped([&] { cfgParseMultiParam(sText.c_str(), aValues.data(), nRoom, nFill); });
    std::vector<std::string> aFields(1);
    for (const char c : sSeen) {
        if (c == ',') {
            aFields.emplace_back();
        } else {
            aFields.back() += c;
        }
    }
    if (sSeen.empty()) aFields.clear();
    const bool bEmptyField = std::find(aFields.begin(), aFields.end(), "") != aFields.end();
    const bool bRefused = bEmptyField || aFields.size() > aValues.size();
    Require(nStatus == (bRefused ? -1 : kCameBack), "refused for an empty field or one too many");
    for (size_t i = 0; !bRefused && i < aValues.size(); ++i) {
        Require(aValues[i] == (i < aFields.size() ? Number(aFields[i]) : nFill), "a value");
    }
    return 0;
}
