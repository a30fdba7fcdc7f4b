// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/temp_folder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "lab/tool/error.h"

namespace lab {

TempFolder::TempFolder() {
    const char* wish = std::getenv("TMPDIR");
    // A settings file of MD can hold neither a quote nor the mark of a comment.
    const bool usable = wish != nullptr && *wish != '\0' && std::strpbrk(wish, "\"#\n") == nullptr;
    std::error_code error;
    // Absolute: MD takes a relative path from the folder of its settings.
    const auto folder = std::filesystem::absolute(usable ? wish : "/tmp", error);
    path_ = folder / "mdlab.XXXXXX";
    if (error || mkdtemp(path_.data()) == nullptr) {
        throw Error(path_ + ": temporary folder cannot be made: " + std::strerror(errno));
    }
}

TempFolder::~TempFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}

}  // namespace lab
