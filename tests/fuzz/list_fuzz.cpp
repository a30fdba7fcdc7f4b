// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Comma lists against a second reading of them: two bytes for room and fill, then the text.
#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "md/cfg_top/configure.h"
#include "tests/fuzz/exit_trap.h"

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
    std::vector<std::string> aFields;
    std::istringstream tSeen(sSeen.ends_with(',') ? sSeen + "," : sSeen);
    for (std::string s; std::getline(tSeen, s, ',');) aFields.push_back(s);
    const bool bEmptyField = std::find(aFields.begin(), aFields.end(), "") != aFields.end();
    const bool bRefused = bEmptyField || aFields.size() > aValues.size();
    Require(nStatus == (bRefused ? -1 : kCameBack), "refused for an empty field or one too many");
    for (size_t i = 0; !bRefused && i < aValues.size(); ++i) {
        const int64_t n =
            i < aFields.size() ? std::strtoll(aFields[i].c_str(), nullptr, 10) : nFill;
        Require(aValues[i] == std::clamp<int64_t>(n, INT32_MIN, INT32_MAX), "a value");
    }
    return 0;
}
