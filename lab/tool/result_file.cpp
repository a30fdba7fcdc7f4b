// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/result_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "lab/tool/error.h"

namespace lab {

namespace {

// The name to write to at first. A renamed file would take the place of a pipe or /dev/null, so
// those are written to themselves.
std::string NameUntilWhole(const std::string& path) {
    struct stat status {};
    const bool there = stat(path.c_str(), &status) == 0;
    if (there && S_ISDIR(status.st_mode)) {
        throw Error(path + ": cannot be written: " + std::strerror(EISDIR));
    }
    if (there && !S_ISREG(status.st_mode)) return path;
    return path + ".part" + std::to_string(getpid());
}

}  // namespace

ResultFile::ResultFile(std::string path)
    : path_(std::move(path)), temporary_(NameUntilWhole(path_)) {
    if (temporary_ != path_) on_signal_.emplace(temporary_);
    file_ = std::fopen(temporary_.c_str(), "wb");
    if (file_ == nullptr) throw Error(path_ + ": cannot be written: " + std::strerror(errno));
}

ResultFile::~ResultFile() {
    if (file_ == nullptr) return;
    std::fclose(file_);
    Remove();
}

void ResultFile::Remove() {
    if (temporary_ != path_) std::remove(temporary_.c_str());
}

void ResultFile::Write(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size() && reason_ == 0) {
        reason_ = errno;
    }
}

void ResultFile::Commit() {
    errno = 0;
    const bool whole = std::fflush(file_) == 0 && std::ferror(file_) == 0;
    int reason = reason_ != 0 ? reason_ : errno;
    const bool closed = std::fclose(std::exchange(file_, nullptr)) == 0;
    if (whole && !closed) reason = errno;
    if (whole && closed) {
        if (temporary_ == path_) return;
        if (std::rename(temporary_.c_str(), path_.c_str()) == 0) return;
        reason = errno;
    }
    Remove();
    // A writer to the stream may have failed earlier, for a reason that is gone.
    throw Error(path_ + ": cannot be written: " + std::strerror(reason != 0 ? reason : EIO));
}

}  // namespace lab
