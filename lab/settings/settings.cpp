// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/settings/settings.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lab/tool/error.h"
#include "lab/tool/text_file.h"
#include "md/cfg_top/cfg_text.h"
#include "md/run_state.h"

namespace lab {

namespace {

[[noreturn]] void RefuseValue(const InputMapEntry& row, const std::string& text,
                              const std::string& why) {
    throw Error(std::string(row.TokenName) + " = " + text + ": " + why);
}

// The shortest digits that read as the same number, without an exponent.
std::string RealText(double value) {
    char text[400];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr;
    return {text, end};
}

bool InRange(const InputMapEntry& row, double value) {
    if (row.LimitKind == kLimitNone) return true;
    if (value < row.MinLimit) return false;
    return row.LimitKind == kLimitLower || value <= row.MaxLimit;
}

bool IsTaps(const InputMapEntry& row) {
    return row.Place == tGradientTexts.MD_HogGradX || row.Place == tGradientTexts.MD_HogGradY;
}

// "-1, 0,1" as MD splits it: decimal numbers between commas, what is left out is 0.
std::string NormalTaps(const InputMapEntry& row, const std::string& text) {
    std::string taps;
    int count = 0;
    size_t from = 0;
    while (!text.empty()) {
        const size_t comma = std::min(text.find(',', from), text.size());
        if (comma == from) RefuseValue(row, text, "an empty place in the list of taps");
        if (++count > kGradientTaps) RefuseValue(row, text, "more than five taps");
        if (!taps.empty()) taps += ',';
        taps += std::to_string(std::atoi(text.substr(from, comma - from).c_str()));
        if (comma == text.size()) break;
        from = comma + 1;
        if (from == text.size()) RefuseValue(row, text, "an empty place in the list of taps");
    }
    return taps;
}

std::string NormalText(const InputMapEntry& row, const std::string& text) {
    if (text.size() >= kPathSize) RefuseValue(row, text, "longer than 511 bytes");
    if (text.find_first_of("#\"\n") != std::string::npos) {
        RefuseValue(row, text, "a settings file cannot hold '#', '\"' or a line end in a text");
    }
    return IsTaps(row) ? NormalTaps(row, text) : text;
}

// Edits that make one text of the other.
size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

// MD's tokeniser ends the process at more tokens than it has room for. A token needs a byte of
// its own and a separator or quote before it, so short texts pass; longer ones are counted.
void RefuseTooManyTokens(const std::string& path, const std::string& text) {
    int words = 0;
    bool comment = false;
    bool in_word = false;
    for (const char c : text) {
        if (c == '\n') comment = false;
        if (c == '#') comment = true;
        if (comment || c == ' ' || c == '\t' || c == '\n') {
            in_word = false;
        } else if (c == '"' || !in_word) {
            ++words;
            in_word = true;
        }
    }
    if (words > kMaxTokens) throw Error(path + ": MD reads at most 600 words of a file");
}

}  // namespace

int RowOf(const std::string& key) {
    for (int row = 0; row < KeyCount(); ++row) {
        if (key == aInputKeys[static_cast<size_t>(row)].TokenName) return row;
    }
    return -1;
}

std::string NearestKey(const std::string& text) {
    std::string best;
    size_t least = SIZE_MAX;
    for (const InputMapEntry& row : aInputKeys) {
        const size_t edits = EditDistance(text, row.TokenName);
        if (edits < least) best = row.TokenName;
        least = std::min(least, edits);
    }
    return best;
}

std::string RangeOf(const InputMapEntry& row) {
    if (row.Type == kTypeString) return "text";
    if (row.LimitKind == kLimitNone) return "any number";
    if (row.LimitKind == kLimitLower) return "at least " + RealText(row.MinLimit);
    return RealText(row.MinLimit) + " to " + RealText(row.MaxLimit);
}

std::string NormalValue(const InputMapEntry& row, const std::string& text) {
    if (row.Type == kTypeString) return NormalText(row, text);
    char* end = nullptr;
    double value = 0;
    std::string normal;
    if (row.Type == kTypeInteger) {
        const long long number =
            std::clamp<long long>(std::strtoll(text.c_str(), &end, 0), INT32_MIN, INT32_MAX);
        value = static_cast<double>(number);
        normal = std::to_string(number);
    } else {
        value = std::strtod(text.c_str(), &end);
        normal = RealText(value);
    }
    // A file with the line ends of Windows leaves a carriage return with the value.
    if (end == text.c_str() || (*end != '\0' && *end != '\r')) {
        RefuseValue(row, text, "not a number");
    }
    if (!InRange(row, value)) RefuseValue(row, text, "out of range, " + RangeOf(row));
    return normal;
}

Settings DefaultSettings() {
    Settings settings;
    for (const InputMapEntry& row : aInputKeys) {
        settings.push_back(row.Type == kTypeString ? "" : RealText(row.Default));
    }
    return settings;
}

Settings ReadSettings(const std::string& path) {
    const std::string original = ReadTextFile(path);
    if (original.size() > kMaxConfigBytes) {
        throw Error(path + ": MD reads settings files of up to 60000 bytes");
    }
    RefuseTooManyTokens(path, original);
    std::string text = original.substr(0, original.find('\0'));
    char* tokens[kMaxTokens];
    const int32_t count = cfgTokenise(text.data(), static_cast<int32_t>(text.size()), tokens);
    Settings settings = DefaultSettings();
    for (int32_t i = 0; i + 1 < count; i += 3) {
        const auto lines =
            1 + std::count(original.begin(), original.begin() + (tokens[i] - text.data()), '\n');
        const std::string where = path + ":" + std::to_string(lines) + ": ";
        const int row = RowOf(tokens[i]);
        if (row < 0) {
            throw Error(where + tokens[i] + " is no key of MD; did you mean " +
                        NearestKey(tokens[i]) + "?");
        }
        if (std::strcmp(tokens[i + 1], "=") != 0 || i + 2 >= count) {
            throw Error(where + tokens[i] + " needs '=' and a value, with blanks around the '='");
        }
        try {
            const auto at = static_cast<size_t>(row);
            settings[at] = NormalValue(aInputKeys[at], tokens[i + 2]);
        } catch (const Error& error) {
            throw Error(where + error.what());
        }
    }
    return settings;
}

SimParams Record(const Settings& settings) {
    // The rows point into MD's one record; it is put back as it was.
    const SimParams before = tSimParams;
    tSimParams = SimParams{};
    for (size_t i = 0; i < settings.size(); ++i) {
        const InputMapEntry& row = aInputKeys[i];
        if (row.Type == kTypeInteger) {
            *static_cast<int32_t*>(row.Place) =
                static_cast<int32_t>(std::strtoll(settings[i].c_str(), nullptr, 10));
        } else if (row.Type == kTypeDouble) {
            *static_cast<double*>(row.Place) = std::strtod(settings[i].c_str(), nullptr);
        } else if (!IsTaps(row)) {
            std::snprintf(static_cast<char*>(row.Place), kPathSize, "%s", settings[i].c_str());
        }
    }
    const SimParams record = tSimParams;
    tSimParams = before;
    return record;
}

std::string Assignment(int row, const std::string& value) {
    const InputMapEntry& entry = aInputKeys[static_cast<size_t>(row)];
    const bool quoted = entry.Type == kTypeString;
    std::string text = entry.TokenName;
    text.append(quoted ? " = \"" : " = ").append(value).append(quoted ? "\"\n" : "\n");
    return text;
}

}  // namespace lab
