// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Whole files as text.
#pragma once

#include <string>

namespace lab {

// Throws Error, with the reason, if the file cannot be read to its end.
std::string ReadTextFile(const std::string& path);

}  // namespace lab
