// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The settings as a reader wants them: rows of the input map joined with the comments of
// cfg/default.cfg, so that manual pages repeat nothing by hand.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "md/cfg_top/input_map.h"

// A key of the file. Keys that follow one another without a comment share the first one's.
struct SettingDoc {
    const InputMapEntry* pRow;
    std::string sMeaning;  // the comment before the key, as one paragraph; may be empty
    std::string sShipped;  // the value that the file gives
};

// A section of the file, "# ---- Title ----".
struct SettingGroup {
    std::string sTitle;
    std::string sIntro;  // the comment right after the title, if a blank line follows it
    std::vector<SettingDoc> aSettings;
};

// Reads the shipped file. Throws std::runtime_error with the line that does not fit.
std::vector<SettingGroup> ReadSettingsDoc(const std::string& sPath);
std::vector<SettingGroup> ReadSettingsDoc(std::istream& tFile);

// "0 to 3, default 1" of a row.
std::string RangeText(const InputMapEntry& tRow);
