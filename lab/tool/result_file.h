// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A file that mdlab leaves. It is written under a temporary name in the same folder and renamed
// once it is whole, so that a reader never meets half a file. A file that is dropped without Commit
// is removed, also when a signal ends the process, and an older file of that name stays as it was.
// A pipe or a device is written to as it is.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "lab/tool/remove_on_signal.h"

namespace lab {

class ResultFile {
  public:
    // Throws Error if the file cannot be opened.
    explicit ResultFile(std::string path);
    ~ResultFile();
    ResultFile(const ResultFile&) = delete;
    ResultFile& operator=(const ResultFile&) = delete;

    // Buffered. A failed write is reported by Commit.
    void Write(std::string_view bytes);

    // For writers that want a stream. It is owned here.
    [[nodiscard]] std::FILE* Stream() { return file_; }

    // Flushes, closes and renames. Throws Error, with the reason, if not all of it arrived.
    void Commit();

  private:
    void Remove();

    std::string path_;
    std::string temporary_;  // path_ of a pipe or a device
    std::optional<RemoveOnSignal> on_signal_;
    std::FILE* file_ = nullptr;
    int reason_ = 0;  // errno of the first failed Write
};

}  // namespace lab
