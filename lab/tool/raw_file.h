// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Bytes of a regular file at any place.
#pragma once

#include <cstdint>
#include <string>

namespace lab {

class RawFile {
  public:
    // Throws Error, with the reason, if the path is no regular file or cannot be opened.
    explicit RawFile(std::string path);
    ~RawFile();
    RawFile(const RawFile&) = delete;
    RawFile& operator=(const RawFile&) = delete;

    [[nodiscard]] int64_t Size() const { return size_; }
    [[nodiscard]] const std::string& Path() const { return path_; }

    // Reads up to `bytes` from `offset` into `to`; gives how many there were, fewer only at the
    // end of the file. Throws Error when reading fails.
    int64_t Read(int64_t offset, char* to, int64_t bytes) const;
    [[nodiscard]] std::string Read(int64_t offset, int64_t bytes) const;

  private:
    std::string path_;
    int file_ = -1;
    int64_t size_ = 0;
};

}  // namespace lab
