// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Reports for programs: json, JUnit, the map.
#include <nlohmann/json.hpp>

#include "lab/compare/report.h"

namespace lab {

namespace {

using Json = nlohmann::ordered_json;

Json ToJson(const Difference& d) {
    Json json;
    json["frame"] = d.frame;
    json["stage"] = StageName(d.stage);
    json["value"] = NameOf(d);
    if (d.stage != kStageBox) {
        json["block"] = {{"x", d.x}, {"y", d.y}};
    }
    json["golden"] = d.golden;
    json["other"] = d.other;
    json["shown_by"] = NameSources(d.shown, d.frame);
    if (d.same != 0) json["same_in"] = NameSources(d.same, d.frame);
    return json;
}

Json ToJson(const VideoDifference& v) {
    Json json;
    json["name"] = v.name;
    json["frames"] = {{"golden", v.golden_frames}, {"other", v.other_frames}};
    json["frames_that_differ"] = v.frames;
    if (v.differs) {
        json["first"] = {{"frame", v.frame},   {"plane", std::string(1, v.plane)},
                         {"x", v.x},           {"y", v.y},
                         {"golden", v.golden}, {"other", v.other}};
    }
    return json;
}

Json ToJson(const std::vector<Comparison::Line>& lines) {
    Json json = Json::array();
    for (const auto& [label, text] : lines) json.push_back({{"kind", label}, {"text", text}});
    return json;
}

std::string Joined(const std::vector<Comparison::Line>& lines) {
    std::string joined;
    for (const auto& [label, text] : lines) joined.append(label).append(" ").append(text) += '\n';
    return joined;
}

// Bytes that are no UTF-8, as a path may hold, become U+FFFD.
std::string ValidUtf8(const std::string& text) {
    return Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace));
}

// For an attribute of XML.
std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : ValidUtf8(text)) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                // XML has no way to write most control characters.
                escaped += static_cast<unsigned char>(c) < 32 ? ' ' : c;
        }
    }
    // Nor has it U+FFFE and U+FFFF.
    for (const char* none : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        for (size_t at = 0; (at = escaped.find(none, at)) != std::string::npos;) {
            escaped.replace(at, 3, "\xEF\xBF\xBD");
        }
    }
    return escaped;
}

std::string Dump(const Json& json) {
    // A path may hold bytes that are no UTF-8.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string JsonReport(const Comparison& c) {
    Json json;
    json["format"] = 1;
    json["status"] = c.Status();
    json["golden"] = c.golden;
    json["other"] = c.other;
    json["frames"] = c.frames;
    json["grid"] = {{"columns", c.columns}, {"rows", c.rows}, {"stride", c.stride}};
    json["first"] = c.first.empty() ? Json() : ToJson(c.first.front());
    Json& stages = json["stages"] = Json::object();
    for (int s = 0; s < kStageCount; ++s) {
        const auto stage = static_cast<std::size_t>(s);
        stages[StageName(static_cast<Stage>(s))] = c.shown[stage] ? Json(c.blocks[stage]) : Json();
    }
    Json& frames = json["frames_that_differ"] = Json::array();
    for (const FrameCount& count : c.frame_counts) {
        frames.push_back({{"frame", count.frame}, {"blocks", count.blocks}, {"box", count.box}});
    }
    Json& more = json["more"] = Json::array();
    for (std::size_t i = 1; i < c.first.size(); ++i) more.push_back(ToJson(c.first[i]));
    json["looks_like"] = c.hints;
    Json& videos = json["videos"] = Json::array();
    for (const VideoDifference& video : c.videos) videos.push_back(ToJson(video));
    json["findings"] = ToJson(c.findings);
    json["notes"] = ToJson(c.notes);
    json["trouble"] = ToJson(c.trouble);
    return Dump(json);
}

std::string JunitReport(const Comparison& c) {
    std::string cases;
    int count = 0, failures = 0, errors = 0, skipped = 0;
    const auto add = [&](const std::string& name, const char* tag, const std::string& message,
                         int* counter) {
        ++count;
        cases += "  <testcase classname=\"mdlab.compare\" name=\"" + Escaped(name) + "\"";
        if (tag == nullptr) {
            cases += "/>\n";
            return;
        }
        ++*counter;
        cases += std::string("><") + tag + " message=\"" + Escaped(message) + "\"/></testcase>\n";
    };
    for (int s = 0; s < kStageCount; ++s) {
        const auto stage = static_cast<std::size_t>(s);
        const std::string name = StageName(static_cast<Stage>(s));
        const auto& first = c.first_of[stage];
        if (first) {
            std::string message = Counted(c.blocks[stage], s == kStageBox ? "frame" : "block") +
                                  " wrong, first in frame " + std::to_string(first->frame);
            if (s != kStageBox) {
                message +=
                    ", block x " + std::to_string(first->x) + ", y " + std::to_string(first->y);
            }
            message += ": " + NameOf(*first) + ", golden " + std::to_string(first->golden) +
                       ", other " + std::to_string(first->other);
            add(name, "failure", message, &failures);
        } else if (c.shown[stage]) {
            add(name, nullptr, "", nullptr);
        } else {
            add(name, "skipped", "no file of both runs shows it", &skipped);
        }
    }
    const std::string findings = Joined(c.findings), trouble = Joined(c.trouble);
    if (!trouble.empty()) {
        add("files", "error", trouble + findings, &errors);
    } else {
        add("files", findings.empty() ? nullptr : "failure", findings, &failures);
    }
    std::string videos;
    for (const VideoDifference& video : c.videos) {
        videos += video.name + " from frame " + std::to_string(video.frame) + "\n";
    }
    add("videos", videos.empty() ? nullptr : "failure", videos, &failures);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"" +
           Escaped("mdlab compare " + c.golden + " " + c.other) + "\" tests=\"" +
           std::to_string(count) + "\" failures=\"" + std::to_string(failures) + "\" errors=\"" +
           std::to_string(errors) + "\" skipped=\"" + std::to_string(skipped) + "\">\n" + cases +
           "</testsuite>\n";
}

MapFile::MapFile(const std::string& path) : file_(path) {
    file_.Write("frame,column,row,stage\n");
}

void MapFile::Add(int64_t frame, int x, int y, Stage stage) {
    file_.Write(std::to_string(frame) + "," + std::to_string(x) + "," + std::to_string(y) + "," +
                StageName(stage) + "\n");
}

}  // namespace lab
