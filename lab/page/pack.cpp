// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/page/pack.h"

#include <zlib.h>

#include <nlohmann/json.hpp>

#include "lab/tool/error.h"

namespace lab {

std::string Deflate(std::string_view bytes) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        throw Error("no memory to compress the report");
    }
    std::string out(deflateBound(&stream, bytes.size()), '\0');
    // zlib's input is not written, its pointer is not const for old compilers.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    const int status = deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    if (status != Z_STREAM_END) throw Error("internal error: a chunk could not be compressed");
    return out;
}

std::string Base64(std::string_view bytes) {
    static constexpr char kDigits[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve(static_cast<size_t>(Base64Size(static_cast<int64_t>(bytes.size()))));
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t n = std::min<size_t>(bytes.size() - i, 3);
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k) {
            group = group << 8 | (k < n ? static_cast<uint8_t>(bytes[i + k]) : 0u);
        }
        for (size_t k = 0; k < 4; ++k) {
            out += k <= n ? kDigits[group >> (18 - 6 * k) & 63] : '=';
        }
    }
    return out;
}

void PutVarint(uint32_t value, std::string* out) {
    for (; value >= 128; value >>= 7) *out += static_cast<char>(value | 128);
    *out += static_cast<char>(value);
}

void PutZigzag(int32_t value, std::string* out) {
    PutVarint(static_cast<uint32_t>(value) << 1 ^ static_cast<uint32_t>(value >> 31), out);
}

std::string EscapeHtml(std::string_view text) {
    // The json writer repairs what is not UTF-8.
    const nlohmann::json json = std::string(text);
    const std::string valid =
        nlohmann::json::parse(json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
    std::string out;
    for (const char c : valid) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

}  // namespace lab
