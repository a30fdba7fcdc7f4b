// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Names that follow from content. 128 bits of XXH3 as 32 hexadecimal digits: equal content, equal
// name; different content, different name, but for an accident nobody will see. Not meant against
// someone who forges content.
#pragma once

#include <string>
#include <string_view>

namespace lab {

std::string DigestOf(std::string_view bytes);

// Throws Error if the file cannot be read to its end.
std::string DigestOfFile(const std::string& path);

}  // namespace lab
