// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Reads a report file back as the page's script does, by nothing but lab/report/FORMAT.md: nothing
// here is shared with the writer.
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// The template of the tests: the four marks and nothing that runs.
extern const std::string kStubPage;

struct PageFrame {
    bool has_blocks = false;
    std::vector<int> thresholds;
    std::vector<int> distance, state, outcome;  // per block
    std::vector<int> luma;
    std::vector<int> cases;                   // of method 2
    std::map<int, std::vector<int>> vectors;  // by block: ten or eleven values
    std::map<std::string, int> columns;
};

struct Page {
    std::string title, verdict, header;
    nlohmann::json head;
    std::map<std::string, std::string> blocks;  // by id, unpacked; md-video as it is

    // All frames of a run. Throws std::runtime_error where the data does not fit the format.
    [[nodiscard]] std::vector<PageFrame> Frames(int run = 0) const;
};

// Throws std::runtime_error for a file that is not of this format.
Page ReadPage(const std::string& path);
