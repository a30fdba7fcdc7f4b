// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/show/block_table.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace lab {

namespace {

// Of all fields; the others repeat what is here.
constexpr std::array<Field, 7> kRows = {
    kLuma, kVector, kLength, kReferenceLuma, kReferenceVector, kDistance, kActive};

constexpr std::size_t kValueWidth = 6;

using Row = std::vector<std::string>;  // the name of a value, then the value in each frame

std::vector<Row> TableRows(const std::vector<Frame>& frames, int x, int y) {
    std::vector<Row> rows = {{"frame"}};
    for (const Frame& frame : frames) rows.front().push_back(std::to_string(frame.index));
    for (const Field field : kRows) {
        const bool known = std::any_of(frames.begin(), frames.end(),
                                       [&](const Frame& frame) { return frame.Has(field); });
        for (int element = 0; known && element < Info(field).per_block; ++element) {
            Row row = {ValueName(field, element)};
            for (const Frame& frame : frames) {
                row.push_back(frame.Has(field) ? std::to_string(frame.At(field, x, y, element))
                                               : "-");
            }
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

}  // namespace

std::string BlockTable(const std::vector<Frame>& frames, int x, int y) {
    const std::vector<Row> rows = TableRows(frames, x, y);
    std::size_t names = 0;
    for (const Row& row : rows) names = std::max(names, row.front().size());
    std::string text;
    for (const Row& row : rows) {
        text += row.front();
        text.append(names - row.front().size(), ' ');
        for (std::size_t i = 1; i < row.size(); ++i) {
            text.append(kValueWidth - std::min(kValueWidth - 1, row[i].size()), ' ');
            text += row[i];
        }
        text += "\n";
    }
    return text;
}

}  // namespace lab
