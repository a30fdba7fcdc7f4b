// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Who set a key: its default, a settings file or the command line.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace lab {

enum KeySource : int { kFromDefault = 0, kFromFile = 1, kFromLine = 2 };

// The keys that MD's arguments set, each with the source that came last. Keys that are not there
// have their default. The arguments are those of a run that MD has accepted; a file that can no
// longer be read is passed over.
std::map<std::string, KeySource> KeySources(const std::vector<std::string>& arguments);

}  // namespace lab
