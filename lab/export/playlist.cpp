// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/export/playlist.h"

#include <string_view>

namespace lab {

namespace {

namespace fs = std::filesystem;

constexpr int kBlockOpacity = 40;  // percent
constexpr int kLineOpacity = 100;

std::string XmlText(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '&') {
            out += "&amp;";
        } else if (c == '<') {
            out += "&lt;";
        } else {
            out += c;
        }
    }
    return out;
}

// Everything but letters, digits and what paths are made of is written as %XX.
std::string FileAddress(const fs::path& path) {
    constexpr std::string_view kPlain =
        "/-_.~0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string out = "file://";
    for (const char c : path.string()) {
        if (kPlain.find(c) != std::string_view::npos) {
            out += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        out += '%';
        out += kDigits[byte >> 4];
        out += kDigits[byte & 15U];
    }
    return out;
}

std::string PathElements(const fs::path& folder, const fs::path& file) {
    const fs::path whole = fs::absolute(file).lexically_normal();
    const fs::path relative = whole.lexically_relative(fs::absolute(folder).lexically_normal());
    return "      <absolutePath>" + FileAddress(whole) + "</absolutePath>\n      <relativePath>" +
           XmlText(relative.string()) + "</relativePath>\n";
}

}  // namespace

std::string PlaylistText(const fs::path& folder, const fs::path& video, VideoSize size,
                         const fs::path& statistics, const StatisticsHeader& header) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<playlistItems version=\"2.0\">\n"
        "  <playlistItemOverlay>\n"
        "    <id>0</id>\n"
        "    <layoutMode>Overlay</layoutMode>\n"
        "    <playlistItemRawFile>\n"
        "      <id>1</id>\n" +
        PathElements(folder, video) + "      <type>YUV</type>\n      <width>" +
        std::to_string(size.width) + "</width>\n      <height>" + std::to_string(size.height) +
        "</height>\n      <pixelFormat>YUV 4:2:0 8-bit</pixelFormat>\n"
        "    </playlistItemRawFile>\n"
        "    <playlistItemStatisticsFile>\n"
        "      <id>2</id>\n" +
        PathElements(folder, statistics);
    for (const StatisticsType& type : header.types) {
        const std::string tag = "statType" + std::to_string(type.id);
        text += "      <" + tag + " render=\"1\" alphaFactor=\"";
        text += std::to_string(type.kind == "line" ? kLineOpacity : kBlockOpacity);
        text += "\">" + XmlText(type.name);
        text += "</" + tag + ">\n";
    }
    return text + "    </playlistItemStatisticsFile>\n  </playlistItemOverlay>\n</playlistItems>\n";
}

}  // namespace lab
