// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/probe/tools.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace lab {

namespace {

bool HasTools(const std::filesystem::path& folder) {
    std::error_code error;
    return std::filesystem::exists(folder / "ffmpeg", error) &&
           std::filesystem::exists(folder / "ffprobe", error);
}

}  // namespace

std::string ToolFolder() {
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error && HasTools(self.parent_path())) return self.parent_path();
    const char* path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (!folder.empty() && HasTools(folder)) return folder;
    }
    return "";
}

std::string MdProgramName() {
    const std::string folder = ToolFolder();
    return folder.empty() ? "MD" : folder + "/MD";
}

std::string OutputOf(const std::string& command) {
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return "";
    std::string out;
    char buffer[4096];
    for (size_t n = 0; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
    return pclose(pipe) == 0 ? out : "";
}

}  // namespace lab
