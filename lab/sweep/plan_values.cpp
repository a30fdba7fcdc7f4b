// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "lab/sweep/plan.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

constexpr size_t kMaxValues = 10000;

double NumberOf(const std::string& text, const std::string& whole) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    while (*end == ' ') ++end;
    if (end == text.c_str() || *end != '\0' || !std::isfinite(value)) {
        throw Error(whole + ": a range is written as 4..12 or 4..12 step 2");
    }
    return value;
}

}  // namespace

std::vector<std::string> ValuesOf(const InputMapEntry& row, const std::string& text) {
    const size_t dots = text.find("..");
    if (row.Type == kTypeString || dots == std::string::npos) return {NormalValue(row, text)};
    const size_t word = text.find(" step ", dots);
    const double first = NumberOf(text.substr(0, dots), text);
    const double last =
        NumberOf(text.substr(dots + 2, word == std::string::npos ? word : word - dots - 2), text);
    const double step = word == std::string::npos ? 1 : NumberOf(text.substr(word + 6), text);
    if (step <= 0 || last < first) throw Error(text + ": a range counts upwards");
    if (row.Type == kTypeInteger && (first != std::floor(first) || step != std::floor(step))) {
        throw Error(text + ": " + row.TokenName + " takes whole numbers");
    }
    // A little beyond, so that 0.1 steps reach a last value that doubles miss by a hair.
    const double count = std::floor((last - first) / step + 1e-9) + 1;
    if (count > kMaxValues) throw Error(text + ": more than 10000 values");
    std::vector<std::string> values;
    for (double i = 0; i < count; ++i) {
        char number[64];
        std::snprintf(number, sizeof number, "%.10g", first + i * step);
        values.push_back(NormalValue(row, number));
    }
    return values;
}

bool SetBySweep(int row) {
    static const std::vector<std::string> keys = {
        "InputFileType",  "InputFilePath", "InputWidth",  "InputHeight",
        "OutputFilePath", "MD_DbgEn",      "EnableBatch",
    };
    const std::string key = aInputKeys[static_cast<size_t>(row)].TokenName;
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

}  // namespace lab
