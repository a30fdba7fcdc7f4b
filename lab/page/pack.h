// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// How data is stored in the page: raw deflate, base64, and the two kinds of variable-length
// numbers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lab {

// Raw deflate, without a header, at the best level.
std::string Deflate(std::string_view bytes);

// Without line breaks, padded with '='.
std::string Base64(std::string_view bytes);

// Length of the base64 text of that many bytes.
constexpr int64_t Base64Size(int64_t bytes) {
    return (bytes + 2) / 3 * 4;
}

// 7 bits a byte, lowest first, bit 7 on all but the last.
void PutVarint(uint32_t value, std::string* out);

// Small numbers of either sign become small varints.
void PutZigzag(int32_t value, std::string* out);

// Text for html: & < > " ' become entities, bytes that are not UTF-8 the replacement character.
std::string EscapeHtml(std::string_view text);

}  // namespace lab
