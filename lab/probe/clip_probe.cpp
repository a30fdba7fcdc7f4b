// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/probe/clip_probe.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "lab/probe/tools.h"
#include "lab/tool/error.h"
#include "md/platform/platform.h"

namespace lab {

namespace {

// "30000/1001"; 0 for "0/0".
double Rate(const std::string& text) {
    double top = 0;
    double bottom = 0;
    if (std::sscanf(text.c_str(), "%lf/%lf", &top, &bottom) != 2 || bottom == 0) return 0;
    return top / bottom;
}

int Rotation(const nlohmann::json& stream) {
    double degrees = 0;
    for (const auto& side : stream.value("side_data_list", nlohmann::json::array())) {
        if (side.contains("rotation")) degrees = side["rotation"].get<double>();
    }
    const auto tags = stream.value("tags", nlohmann::json::object());
    if (tags.contains("rotate")) degrees = std::atof(tags["rotate"].get<std::string>().c_str());
    return (static_cast<int>(std::lround(degrees)) % 360 + 360) % 360;
}

}  // namespace

ClipFacts ParseProbe(const std::string& text) {
    ClipFacts facts;
    const auto json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object() || !json.contains("streams") || json["streams"].empty()) return facts;
    const auto& stream = json["streams"][0];
    facts.width = stream.value("width", 0);
    facts.height = stream.value("height", 0);
    facts.rotation = Rotation(stream);
    const double mean = Rate(stream.value("avg_frame_rate", "0/0"));
    const double finest = Rate(stream.value("r_frame_rate", "0/0"));
    // Interlaced video has two fields a frame. A finest rate in the hundreds is that of the clock.
    const bool doubled = std::abs(finest - 2 * mean) < 0.01 * mean;
    facts.fps = finest == 0 || finest > 210 || doubled ? mean : finest;
    facts.variable_rate =
        mean > 0 && finest > 0 && !doubled && std::abs(finest - mean) > 0.01 * mean;
    return facts;
}

ClipFacts ProbeClip(const std::string& path) {
    const std::string folder = ToolFolder();
    if (folder.empty()) return {};
    return ParseProbe(OutputOf(CommandWord((folder + "/ffprobe").c_str()) +
                               " -v error -select_streams v:0 -show_streams -of json -i " +
                               CommandWord(path.c_str()) + " 2>/dev/null"));
}

void RefuseRotated(const std::string& path, const ClipFacts& facts) {
    if (facts.rotation % 180 == 0) return;
    throw Error(path + ": is marked to be shown rotated by " + std::to_string(facts.rotation) +
                " degrees, and its conversion would scramble the picture.\n"
                "Bake the rotation in first:\n"
                "    ffmpeg -i " +
                CommandWord(path.c_str()) + " -c:v libx264 -crf 10 upright.mp4");
}

}  // namespace lab
