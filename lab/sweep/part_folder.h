// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Folders of conversions under way, ID.part-HOST-PID next to the finished ones. A process that is
// killed leaves its folder; a later sweep removes it.
#pragma once

#include <string>

namespace lab {

// The name under which this process makes `folder`.
std::string PartFolder(const std::string& folder);

// Removes from `clips` the part folders of processes that are dead: of this machine if there is no
// such process, of others if nothing in the folder has changed for a day. `clips` may be missing.
void RemoveDeadParts(const std::string& clips);

}  // namespace lab
