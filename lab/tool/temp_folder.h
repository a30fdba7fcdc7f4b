// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A folder for what is needed only while the program works. It is removed with all it holds when
// the object goes.
#pragma once

#include <string>

namespace lab {

class TempFolder {
  public:
    // A new folder below the one that TMPDIR names, else, or where MD could not take a path in that
    // one, below /tmp. Throws Error if none can be made.
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace lab
