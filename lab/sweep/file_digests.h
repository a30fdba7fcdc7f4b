// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Digests of large files, remembered, so that a file is read again only after someone wrote to it.
#pragma once

#include <string>

namespace lab {

// Path, size, time and number of a file: equal as long as nobody touched it. Throws Error.
std::string FileStamp(const std::string& path);

class FileDigests {
  public:
    // `folder` is where digests are kept; nothing is written there unless `keep` is set.
    FileDigests(std::string folder, bool keep);
    // Throws Error if the file cannot be read.
    std::string Of(const std::string& path);

  private:
    std::string folder_;
    bool keep_;
};

}  // namespace lab
