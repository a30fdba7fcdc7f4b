// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Files of a test: a folder of its own, and whole contents. Works on every platform.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;  // contents by name

// A new empty folder, removed with what it holds when the object goes.
class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const fs::path& Path() const { return tPath; }
    fs::path operator/(const std::string& sName) const { return tPath / sName; }

  private:
    fs::path tPath;
};

std::string ReadAll(const fs::path& tPath);
void WriteAll(const fs::path& tPath, const std::string& sBytes);

// Every file below a folder, by its path from there. None for a folder that is missing.
Files ReadFolder(const fs::path& tFolder);
