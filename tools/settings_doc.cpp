// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/settings_doc.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char kTitleMark[] = "# ---- ";

const InputMapEntry* FindRow(const std::string& sKey) {
    for (const InputMapEntry& tRow : aInputKeys) {
        if (sKey == tRow.TokenName) return &tRow;
    }
    return nullptr;
}

SettingDoc ParseSetting(const std::string& sLine, const std::string& sMeaning) {
    std::istringstream tWords(sLine.substr(0, sLine.find(" # ")));
    std::string sKey, sEqual, sValue;
    tWords >> sKey >> sEqual >> sValue;
    const InputMapEntry* pRow = FindRow(sKey);
    if (pRow == nullptr || sEqual != "=") throw std::runtime_error("not a setting: " + sLine);
    return {pRow, sMeaning, sValue};
}

}  // namespace

std::vector<SettingGroup> ReadSettingsDoc(const std::string& sPath) {
    std::ifstream tFile(sPath);
    if (!tFile) throw std::runtime_error(sPath + ": cannot be read");
    return ReadSettingsDoc(tFile);
}

std::vector<SettingGroup> ReadSettingsDoc(std::istream& tFile) {
    std::vector<SettingGroup> aGroups;
    std::string sComment;
    for (std::string sLine; std::getline(tFile, sLine);) {
        if (sLine.starts_with(kTitleMark)) {
            const size_t nStart = sizeof kTitleMark - 1;
            aGroups.push_back({sLine.substr(nStart, sLine.rfind(" ----") - nStart), "", {}});
            sComment.clear();
        } else if (sLine.starts_with('#')) {
            if (!sComment.empty()) sComment += ' ';
            if (sLine.size() > 2) sComment += sLine.substr(2);
        } else if (sLine.empty()) {
            const bool bIntro = !aGroups.empty() && aGroups.back().aSettings.empty();
            if (bIntro) aGroups.back().sIntro = sComment;
            sComment.clear();
        } else {
            if (aGroups.empty()) throw std::runtime_error("a setting before any title: " + sLine);
            aGroups.back().aSettings.push_back(ParseSetting(sLine, sComment));
            sComment.clear();
        }
    }
    return aGroups;
}

std::string RangeText(const InputMapEntry& tRow) {
    if (tRow.Type == kTypeString) return "text, default empty";
    std::ostringstream t;
    if (tRow.LimitKind == kLimitBoth) t << tRow.MinLimit << " to " << tRow.MaxLimit;
    if (tRow.LimitKind == kLimitLower) t << "at least " << tRow.MinLimit;
    if (tRow.LimitKind == kLimitNone) t << "any value";
    t << ", default " << tRow.Default;
    return t.str();
}
