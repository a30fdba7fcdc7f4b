// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Records of any length in a temporary file, written one after the other and read back by number.
// It keeps the memory of a report bounded however long the clip is.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lab {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

class SpoolWriter {
  public:
    // Throws Error if the file cannot be made.
    explicit SpoolWriter(std::string path);

    // Throws Error when the disk is full.
    void Append(std::string_view record);

    // Flushes and closes. Throws Error if not all of it arrived.
    void Finish();

  private:
    std::string path_;
    File file_;
};

class SpoolReader {
  public:
    // Throws Error if the file cannot be read or ends within a record.
    explicit SpoolReader(const std::string& path);

    [[nodiscard]] size_t Count() const { return offsets_.size(); }
    [[nodiscard]] int64_t Size(size_t index) const { return sizes_[index]; }
    [[nodiscard]] std::string Read(size_t index) const;

  private:
    std::string path_;
    File file_;
    std::vector<int64_t> offsets_, sizes_;
};

// Whether two spools hold the same records.
bool SameSpools(const SpoolReader& a, const SpoolReader& b);

}  // namespace lab
