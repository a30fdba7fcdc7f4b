// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/text_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "lab/tool/error.h"

namespace lab {

std::string ReadTextFile(const std::string& path) {
    const auto close = [](std::FILE* file) { std::fclose(file); };
    const std::unique_ptr<std::FILE, decltype(close)> file(std::fopen(path.c_str(), "rb"), close);
    std::string text;
    if (file != nullptr) {
        char part[65536];
        for (size_t n = 0; (n = std::fread(part, 1, sizeof part, file.get())) > 0;) {
            text.append(part, n);
        }
        if (std::ferror(file.get()) == 0) return text;
    }
    throw Error(path + ": cannot be read: " + std::strerror(errno));
}

}  // namespace lab
