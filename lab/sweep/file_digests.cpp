// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/file_digests.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <utility>

#include "lab/tool/digest.h"
#include "lab/tool/error.h"
#include "lab/tool/result_file.h"
#include "lab/tool/text_file.h"

namespace fs = std::filesystem;

namespace lab {

namespace {

// A file written a moment ago may be written again within the same tick of its clock.
constexpr time_t kSettled = 2;  // seconds

struct stat StatOf(const std::string& path) {
    struct stat facts {};
    if (stat(path.c_str(), &facts) != 0) {
        throw Error(path + ": cannot be read: " + std::strerror(errno));
    }
    return facts;
}

}  // namespace

std::string FileStamp(const std::string& path) {
    const struct stat facts = StatOf(path);
    return path + "\n" + std::to_string(facts.st_size) + " " +
           std::to_string(facts.st_mtim.tv_sec) + "." + std::to_string(facts.st_mtim.tv_nsec) +
           " " + std::to_string(facts.st_ino) + "\n";
}

FileDigests::FileDigests(std::string folder, bool keep) : folder_(std::move(folder)), keep_(keep) {}

std::string FileDigests::Of(const std::string& path) {
    const std::string stamp = FileStamp(path);
    const std::string note = folder_ + "/" + DigestOf(path);
    if (fs::exists(note)) {
        const std::string text = ReadTextFile(note);
        if (text.starts_with(stamp)) return text.substr(stamp.size(), 32);
    }
    std::string digest = DigestOfFile(path);
    if (keep_ && std::time(nullptr) - StatOf(path).st_mtim.tv_sec > kSettled &&
        FileStamp(path) == stamp) {
        fs::create_directories(folder_);
        ResultFile file(note);
        file.Write(stamp + digest + "\n");
        file.Commit();
    }
    return digest;
}

}  // namespace lab
