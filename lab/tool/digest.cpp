// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/digest.h"

#include <xxhash.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "lab/tool/error.h"

namespace lab {

namespace {

std::string Hex(XXH128_hash_t hash) {
    char text[40];
    std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(hash.high64),
                  static_cast<unsigned long long>(hash.low64));
    return text;
}

}  // namespace

std::string DigestOf(std::string_view bytes) {
    return Hex(XXH3_128bits(bytes.data(), bytes.size()));
}

std::string DigestOfFile(const std::string& path) {
    const auto close = [](std::FILE* file) { std::fclose(file); };
    const auto free_state = [](XXH3_state_t* state) { XXH3_freeState(state); };
    const std::unique_ptr<std::FILE, decltype(close)> file(std::fopen(path.c_str(), "rb"), close);
    const std::unique_ptr<XXH3_state_t, decltype(free_state)> state(XXH3_createState(), free_state);
    if (file != nullptr && state != nullptr) {
        XXH3_128bits_reset(state.get());
        std::vector<char> part(1 << 20);
        for (size_t n = 0; (n = std::fread(part.data(), 1, part.size(), file.get())) > 0;) {
            XXH3_128bits_update(state.get(), part.data(), n);
        }
        if (std::ferror(file.get()) == 0) return Hex(XXH3_128bits_digest(state.get()));
    }
    throw Error(path + ": cannot be read: " + std::strerror(errno));
}

}  // namespace lab
