// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/lab/export/statistics_reader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <set>
#include <stdexcept>
#include <utility>

namespace {

// Values of a kind; 0: no such kind.
std::size_t ValueCount(std::string_view kind) {
    if (kind == "map" || kind == "range") return 1;
    if (kind == "vector") return 2;
    return kind == "line" ? 4 : 0;
}

// Each field ends in a semicolon; the last may lack it.
std::vector<std::string_view> Split(std::string_view line) {
    std::vector<std::string_view> fields;
    for (bool more = true; more;) {
        const std::size_t end = line.find(';');
        fields.push_back(line.substr(0, end));
        more = end != std::string_view::npos && end + 1 < line.size();
        if (more) line.remove_prefix(end + 1);
    }
    return fields;
}

constexpr std::string_view kVersion = "%;syntax-version;v1.2";

class Parser {
  public:
    explicit Parser(std::string_view text) : text_(text) {}

    Statistics Parse() {
        if (NextLine() != kVersion) Fail("expected " + std::string(kVersion));
        while (!text_.empty()) {
            const std::string_view line = NextLine();
            if (line.find_first_of(" \t\r") != std::string_view::npos) Fail("holds a blank");
            const std::vector<std::string_view> fields = Split(line);
            if (fields.front() == "%") {
                AddHeaderLine(fields, line);
            } else {
                AddItem(fields);
            }
        }
        if (result_.items.empty()) Fail("no item follows");
        return std::move(result_);
    }

  private:
    [[noreturn]] void Fail(const std::string& what) const {
        throw std::runtime_error("line " + std::to_string(line_) + ": " + what);
    }

    std::string_view NextLine() {
        ++line_;
        const std::size_t end = text_.find('\n');
        if (end == std::string_view::npos) Fail("the line has no end");
        const std::string_view line = text_.substr(0, end);
        text_.remove_prefix(end + 1);
        return line;
    }

    template <typename Number>
    Number ToNumber(std::string_view field) const {
        Number number{};
        const char* past = field.data() + field.size();
        const auto [end, error] = std::from_chars(field.data(), past, number);
        if (error != std::errc() || end != past) {
            Fail("found \"" + std::string(field) + "\", expected a whole number");
        }
        return number;
    }

    void AddHeaderLine(const std::vector<std::string_view>& fields, std::string_view line) {
        if (!result_.items.empty()) Fail("a header line follows an item");
        lab::StatisticsHeader& header = result_.header;
        if (fields.size() > 1 && fields[1] == "seq-specs") {
            if (fields.size() < 7) Fail("seq-specs has fewer than seven fields");
            header.width = ToNumber<int>(fields[4]);
            header.height = ToNumber<int>(fields[5]);
        } else if (fields.size() > 1 && fields[1] == "type") {
            if (fields.size() != 5) Fail("a type has a number, a name and a kind");
            if (ValueCount(fields[4]) == 0) Fail("no kind \"" + std::string(fields[4]) + "\"");
            const int id = ToNumber<int>(fields[2]);
            if (Find(id) != nullptr) Fail("the type is declared twice");
            header.types.push_back({id, std::string(fields[3]), std::string(fields[4]), {}});
        } else {
            if (header.types.empty()) Fail("belongs to no type");
            header.types.back().properties.emplace_back(line.substr(2));
        }
    }

    void AddItem(const std::vector<std::string_view>& fields) {
        if (fields.size() < 7) Fail("an item has seven fields or more");
        lab::StatisticsItem item{ToNumber<int64_t>(fields[0]),
                                 ToNumber<int>(fields[1]),
                                 ToNumber<int>(fields[2]),
                                 ToNumber<int>(fields[3]),
                                 ToNumber<int>(fields[4]),
                                 ToNumber<int>(fields[5]),
                                 {}};
        const lab::StatisticsType* type = Find(item.type);
        if (type == nullptr) Fail("type " + std::to_string(item.type) + " is not declared");
        if (fields.size() != 6 + ValueCount(type->kind)) Fail("too few or too many values");
        for (std::size_t i = 6; i < fields.size(); ++i) {
            item.values.push_back(ToNumber<int>(fields[i]));
        }
        const lab::StatisticsHeader& header = result_.header;
        if (item.x < 0 || item.y < 0 || item.width < 1 || item.height < 1 ||
            item.width > header.width - item.x || item.height > header.height - item.y) {
            Fail("the rectangle is not inside the frame");
        }
        CheckOrder(item);
        result_.items.push_back(std::move(item));
    }

    void CheckOrder(const lab::StatisticsItem& item) {
        const bool same = !result_.items.empty() && result_.items.back().frame == item.frame;
        if (item.frame < 0) Fail("frames count from 0");
        if (!same && !frames_.insert(item.frame).second) Fail("the frame's items are torn apart");
    }

    [[nodiscard]] const lab::StatisticsType* Find(int id) const {
        const std::vector<lab::StatisticsType>& types = result_.header.types;
        const auto found = std::find_if(types.begin(), types.end(),
                                        [id](const auto& type) { return type.id == id; });
        return found == types.end() ? nullptr : &*found;
    }

    std::string_view text_;  // what is left
    int64_t line_ = 0;
    Statistics result_{};
    std::set<int64_t> frames_;
};

}  // namespace

Statistics ReadStatistics(std::string_view text) {
    return Parser(text).Parse();
}
