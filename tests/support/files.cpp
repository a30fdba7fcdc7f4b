// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/support/files.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

TempFolder::TempFolder() {
    std::random_device tRandom;
    do {
        tPath = fs::temp_directory_path() / ("md_test_" + std::to_string(tRandom()));
    } while (!fs::create_directory(tPath));
}

TempFolder::~TempFolder() {
    std::error_code tIgnored;
    fs::remove_all(tPath, tIgnored);
}

std::string ReadAll(const fs::path& tPath) {
    std::ifstream tFile(tPath, std::ios::binary);
    if (!tFile) throw std::runtime_error("cannot read " + tPath.string());
    std::ostringstream tText;
    tText << tFile.rdbuf();
    return tText.str();
}

void WriteAll(const fs::path& tPath, const std::string& sBytes) {
    std::ofstream(tPath, std::ios::binary) << sBytes;
}

Files ReadFolder(const fs::path& tFolder) {
    Files a;
    if (!fs::is_directory(tFolder)) return a;
    for (const auto& t : fs::recursive_directory_iterator(tFolder)) {
        if (!t.is_regular_file()) continue;
        a[t.path().lexically_relative(tFolder).generic_string()] = ReadAll(t.path());
    }
    return a;
}
