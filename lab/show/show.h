// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// mdlab show: one frame of a run as a map of characters, or one block's record over some frames.
#pragma once

#include "lab/tool/command.h"

namespace lab {

AddCommand AddShow;

}  // namespace lab
