// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/score/labels.h"

#include <array>
#include <charconv>

#include "lab/tool/error.h"
#include "lab/tool/text_file.h"

namespace lab {

namespace {

constexpr size_t kColumns = 7;
constexpr std::string_view kHead = "first,last,left,top,right,bottom,what";

std::string_view Trim(std::string_view text) {
    const size_t from = text.find_first_not_of(" \t\r");
    if (from == std::string_view::npos) return {};
    return text.substr(from, text.find_last_not_of(" \t\r") - from + 1);
}

[[noreturn]] void Refuse(const std::string& where, const std::string& why) {
    throw Error(where + ": " + why);
}

int32_t Number(std::string_view text, const std::string& where) {
    int32_t value = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc{} || end != text.data() + text.size() || value < 0) {
        Refuse(where, std::string(text).append(" is not a number from 0 to 2147483647"));
    }
    return value;
}

std::array<std::string_view, kColumns> Columns(std::string_view line, const std::string& where) {
    std::array<std::string_view, kColumns> columns;
    for (size_t i = 0; i < kColumns; ++i) {
        const size_t comma = line.find(',');
        if ((comma == std::string_view::npos) != (i + 1 == kColumns)) {
            Refuse(where, "a row has 7 columns: " + std::string(kHead));
        }
        columns[i] = Trim(line.substr(0, comma));
        if (comma != std::string_view::npos) line.remove_prefix(comma + 1);
    }
    return columns;
}

std::optional<Box> ReadBox(const std::array<std::string_view, kColumns>& columns,
                           const std::string& where) {
    size_t given = 0;
    for (size_t i = 2; i < 6; ++i) given += columns[i].empty() ? 0 : 1;
    if (given == 0) return std::nullopt;
    if (given != 4) Refuse(where, "a box has all four edges or none");
    const Box box{Number(columns[2], where), Number(columns[3], where), Number(columns[4], where),
                  Number(columns[5], where)};
    if (box.right < box.left || box.bottom < box.top) {
        Refuse(where, "the box ends before it begins");
    }
    return box;
}

LabelRow ReadRow(std::string_view line, const std::string& where) {
    const auto columns = Columns(line, where);
    LabelRow row;
    row.first = Number(columns[0], where);
    row.last = Number(columns[1], where);
    if (row.last < row.first) Refuse(where, "the last frame is before the first");
    row.box = ReadBox(columns, where);
    row.ignore = columns[6] == "ignore";
    if (!row.ignore && columns[6] != "motion") {
        Refuse(where, std::string(columns[6]).append(" is neither motion nor ignore"));
    }
    return row;
}

}  // namespace

Labels ParseLabels(std::string_view text, const std::string& name) {
    Labels labels;
    // Spreadsheets put this mark before a text in UTF-8.
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    for (int number = 1; !text.empty(); ++number) {
        const size_t end = text.find('\n');
        const std::string_view line = Trim(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#' || line == kHead) continue;
        labels.push_back(ReadRow(line, name + ":" + std::to_string(number)));
    }
    return labels;
}

Labels ReadLabels(const std::string& path) {
    return ParseLabels(ReadTextFile(path), path);
}

}  // namespace lab
