// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Completion of paths, folder part, word of a command, and the marks in names. An input is the
// base folder, a zero byte, the path.
#include <algorithm>
#include <cstring>
#include <regex>
#include <string>
#include <vector>

#include "md/cfg_top/cfg_text.h"
#include "md/cfg_top/chip_limits.h"
#include "md/input/name_marks.h"
#include "md/platform/platform.h"
#include "tests/fuzz/exit_trap.h"

namespace {

// What a shell makes of one word, where an unquoted byte that means something to it is a fault.
std::string Unquoted(const std::string& sWord) {
    std::string s;
    bool bQuoted = false;
    for (size_t i = 0; i < sWord.size(); ++i) {
        const char c = sWord[i];
        if (c == '\'') {
            bQuoted = !bQuoted;
        } else if (!bQuoted && c == '\\' && i + 1 < sWord.size()) {
            s += sWord[++i];
        } else {
            const bool bSafe = (std::isalnum(static_cast<unsigned char>(c)) != 0 && c > 0) ||
                               std::strchr("_-./:+,=@%", c) != nullptr;
            Require(bQuoted || bSafe, "no bare mark in a command word");
            s += c;
        }
    }
    Require(!bQuoted && !sWord.empty(), "a closed word");
    return s;
}

void CheckCompletion(const std::string& sBase, const std::string& sPath) {
    char szPath[kPathSize] = {};
    std::copy(sPath.begin(), sPath.end(), szPath);
    const bool bKept = sPath.empty() || std::strchr("\\/~", sPath[0]) != nullptr ||
                       sPath.find(":\\") != std::string::npos;
    const std::string sFull = bKept ? sPath : sBase + "/" + sPath;
    const int nStatus = RunTrapped([&] { cfgCompletePath(sBase.c_str(), szPath); });
    Require(nStatus == (sFull.size() < kPathSize ? kCameBack : -1), "refused when it does not fit");
    Require(nStatus != kCameBack || sFull == szPath, "the completed path");
}

void CheckMarks(const std::string& sPath) {
    std::vector<std::pair<int32_t, int32_t>> aFound, aWanted;
    ForEachNameSize(sPath.c_str(), [&](int32_t w, int32_t h) { aFound.emplace_back(w, h); });
    static const std::regex tSize("_0*([1-9][0-9]*)x0*([1-9][0-9]*)(?=_)");
    const auto Value = [](const std::string& s) {
        return s.size() > 10 ? INT32_MAX
                             : static_cast<int32_t>(std::min<int64_t>(std::stoll(s), INT32_MAX));
    };
    for (std::sregex_iterator t(sPath.begin(), sPath.end(), tSize), tEnd; t != tEnd; ++t) {
        aWanted.emplace_back(Value((*t)[1]), Value((*t)[2]));
    }
    Require(aFound == aWanted, "the sizes in a name");
    const int32_t nType = InputTypeFromName(sPath.c_str());
    Require(nType >= 0 && nType <= 3, "an input type");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nData) {
    const std::string s(reinterpret_cast<const char*>(pData), nData);
    const size_t nCut = std::min(s.find('\0'), s.size());
    const std::string sBase = s.substr(0, nCut);
    const std::string sPath = std::string(s, std::min(nCut + 1, s.size()), kPathSize - 1).c_str();
    CheckCompletion(sBase, sPath);
    CheckMarks(sPath);
    Require(Unquoted(CommandWord(sPath.c_str())) == sPath, "the path that a command word quotes");
    const std::string sDir = cfgDirName(sBase.c_str());
    Require(!sDir.empty() && (sDir == "." || sBase.starts_with(sDir)), "the folder part");
    return 0;
}
