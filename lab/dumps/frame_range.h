// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The frames that a user asks for.
#pragma once

#include <string>

#include "lab/dumps/run.h"

namespace lab {

// Reads "17", "10:20", "10:" or ":20", as --frames takes them; an empty text is all frames. Throws
// Error for anything else.
FrameRange ParseFrames(const std::string& text);

}  // namespace lab
