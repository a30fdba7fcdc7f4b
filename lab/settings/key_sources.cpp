// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/settings/key_sources.h"

#include <cstring>
#include <fstream>
#include <sstream>

#include "md/cfg_top/cfg_text.h"

namespace lab {

namespace {

// Every token that is followed by "=".
void AddKeys(std::string text, KeySource source, std::map<std::string, KeySource>* sources) {
    char* tokens[kMaxTokens];
    const int count = cfgTokenise(text.data(), static_cast<int32_t>(text.size()), tokens);
    for (int i = 0; i + 1 < count; ++i) {
        if (std::strcmp(tokens[i + 1], "=") == 0) (*sources)[tokens[i]] = source;
    }
}

void AddFile(const std::string& path, std::map<std::string, KeySource>* sources) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    AddKeys(text.str(), kFromFile, sources);
}

std::string SpacedEquals(const std::string& text) {
    std::string out;
    for (const char c : text) out += c == '=' ? std::string(" = ") : std::string(1, c);
    return out;
}

}  // namespace

std::map<std::string, KeySource> KeySources(const std::vector<std::string>& arguments) {
    std::map<std::string, KeySource> sources;
    size_t i = 0;
    // Of an option MD reads the first two characters.
    if (arguments.size() >= 2 && arguments[0].starts_with("-d")) {
        AddFile(arguments[1], &sources);
        i = 2;
    } else {
        AddFile("default.cfg", &sources);
    }
    while (i < arguments.size()) {
        if (arguments[i].starts_with("-f") && i + 1 < arguments.size()) {
            AddFile(arguments[i + 1], &sources);
            i += 2;
            continue;
        }
        std::string text;
        for (++i; i < arguments.size() && !arguments[i].starts_with("-f") &&
                  !arguments[i].starts_with("-p");
             ++i) {
            text += SpacedEquals(arguments[i]);
        }
        AddKeys(text, kFromLine, &sources);
    }
    return sources;
}

}  // namespace lab
