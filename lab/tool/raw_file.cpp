// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/raw_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "lab/tool/error.h"

namespace lab {

namespace {

[[noreturn]] void Unreadable(const std::string& path) {
    throw Error(path + ": cannot be read: " + std::strerror(errno));
}

}  // namespace

RawFile::RawFile(std::string path) : path_(std::move(path)) {
    struct stat status {};
    // Asked before opening: a pipe would wait for its other end.
    if (stat(path_.c_str(), &status) != 0) Unreadable(path_);
    if (!S_ISREG(status.st_mode)) throw Error(path_ + ": is no regular file");
    size_ = status.st_size;
    file_ = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (file_ < 0) Unreadable(path_);
}

RawFile::~RawFile() {
    if (file_ >= 0) close(file_);
}

int64_t RawFile::Read(int64_t offset, char* to, int64_t bytes) const {
    int64_t done = 0;
    while (done < bytes) {
        const ssize_t got =
            pread(file_, to + done, static_cast<std::size_t>(bytes - done), offset + done);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) Unreadable(path_);
        if (got == 0) break;
        done += got;
    }
    return done;
}

std::string RawFile::Read(int64_t offset, int64_t bytes) const {
    std::string text(static_cast<std::size_t>(bytes), '\0');
    text.resize(static_cast<std::size_t>(Read(offset, text.data(), bytes)));
    return text;
}

}  // namespace lab
