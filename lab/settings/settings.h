// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The settings of a run as texts, by the rows of MD's own table. Reading and checking them here
// gives errors where MD would end the process.
#pragma once

#include <string>
#include <vector>

#include "md/cfg_top/input_map.h"
#include "md/sim_params.h"

namespace lab {

// A value for each row of aInputKeys. Values are in the form that
// NormalValue gives, so that equal settings are equal texts.
using Settings = std::vector<std::string>;

inline int KeyCount() {
    return static_cast<int>(aInputKeys.size());
}

// Row of a key; -1 for a text that is no key.
int RowOf(const std::string& key);

// The key that resembles the text most, for messages.
std::string NearestKey(const std::string& text);

// The value in one form, whatever way it is written: 0x10 is 16, 1.30 is 1.3, and the taps of a
// gradient lose what surrounds their numbers. Throws Error if MD could not read it or would refuse
// it, with a message that begins with the key.
std::string NormalValue(const InputMapEntry& row, const std::string& text);

// "0 to 3", "at least 1", "any number", "text".
std::string RangeOf(const InputMapEntry& row);

// What a file leaves out.
Settings DefaultSettings();

// The defaults with the assignments of a settings file of MD. Throws Error with file and line.
Settings ReadSettings(const std::string& path);

// The settings as MD's record holds them, paths included; derived members stay zero.
SimParams Record(const Settings& settings);

// One assignment as a settings file has it, with its line end.
std::string Assignment(int row, const std::string& value);

}  // namespace lab
