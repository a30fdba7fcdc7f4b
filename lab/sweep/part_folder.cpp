// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/part_folder.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string_view>

namespace fs = std::filesystem;

namespace lab {

namespace {

// Far longer than a conversion goes without writing, and than clocks of one network differ.
constexpr auto kLongQuiet = std::chrono::hours(24);

std::string MarkOfThisMachine() {
    std::array<char, 256> name{};
    gethostname(name.data(), name.size() - 1);
    return ".part-" + std::string(name.data()) + "-";
}

// True if the name holds this machine's mark and the id of no process that runs.
bool IsDeadHere(std::string_view name) {
    const std::string mark = MarkOfThisMachine();
    const size_t at = name.rfind(mark);
    if (at == std::string_view::npos) return false;
    const std::string_view digits = name.substr(at + mark.size());
    pid_t pid = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), pid);
    return read.ec == std::errc() && pid > 0 && kill(pid, 0) != 0 && errno == ESRCH;
}

// True also where it cannot be seen: then it is not for this sweep to remove.
bool ChangedLately(const fs::path& folder) {
    const auto since = fs::file_time_type::clock::now() - kLongQuiet;
    std::error_code fault;
    if (fs::last_write_time(folder, fault) > since || fault) return true;
    for (fs::recursive_directory_iterator at(folder, fault), end; !fault && at != end;
         at.increment(fault)) {
        if (fs::last_write_time(at->path(), fault) > since || fault) return true;
    }
    return static_cast<bool>(fault);
}

}  // namespace

std::string PartFolder(const std::string& folder) {
    return folder + MarkOfThisMachine() + std::to_string(getpid());
}

void RemoveDeadParts(const std::string& clips) {
    std::error_code fault;
    for (fs::directory_iterator at(clips, fault), end; !fault && at != end; at.increment(fault)) {
        const std::string name = at->path().filename().string();
        if (name.find(".part") == std::string::npos) continue;
        std::error_code ignored;  // another sweep may remove the same one
        if (IsDeadHere(name) || !ChangedLately(at->path())) fs::remove_all(at->path(), ignored);
    }
}

}  // namespace lab
