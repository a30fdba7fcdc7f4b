// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/export/statistics_file.h"

#include <string_view>

namespace lab {

namespace {

constexpr int kFrameRate = 25;  // for the viewer's playback; the dumps hold none
constexpr std::string_view kVersion = "%;syntax-version;v1.2";

}  // namespace

std::string HeaderText(const StatisticsHeader& header) {
    std::string text = std::string(kVersion) + "\n%;seq-specs;mdlab;0;" +
                       std::to_string(header.width) + ";" + std::to_string(header.height) + ";" +
                       std::to_string(kFrameRate) + ";\n";
    for (const StatisticsType& type : header.types) {
        text += "%;type;" + std::to_string(type.id) + ";" + type.name + ";" + type.kind + ";\n";
        for (const std::string& property : type.properties) text += "%;" + property + "\n";
    }
    return text;
}

std::string ItemText(const StatisticsItem& item) {
    std::string text = std::to_string(item.frame);
    const auto add = [&text](int number) {
        text += ';';
        text += std::to_string(number);
    };
    for (const int n : {item.x, item.y, item.width, item.height, item.type}) add(n);
    for (const int value : item.values) add(value);
    return text + '\n';
}

}  // namespace lab
