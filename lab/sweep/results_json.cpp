// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <nlohmann/json.hpp>

#include "lab/sweep/results.h"
#include "lab/tool/result_file.h"

using Json = nlohmann::ordered_json;

namespace lab {

namespace {

const char* BetterName(Better better) {
    switch (better) {
        case Better::kHigher:
            return "higher";
        case Better::kLower:
            return "lower";
        case Better::kNeither:
            break;
    }
    return "neither";
}

Json Number(const std::string& text) {
    if (text.empty()) return nullptr;
    return Json::parse(text, nullptr, false);
}

Json Value(const InputMapEntry& row, const std::string& text) {
    if (text.empty()) return nullptr;
    return row.Type == kTypeString ? Json(text) : Number(text);
}

Json Scores(const Counts& counts) {
    Json scores = Json::array();
    for (const ScoreRow& row : ScoreTable()) scores.push_back(Number(ScoreText(row.value(counts))));
    return scores;
}

// What the plan says of this clip in place of the settings, for MD's command line.
std::string ClipOptions(const PlanClip& clip) {
    std::string line;
    const auto add = [&](const char* key, const std::optional<std::string>& value) {
        if (!value) return;
        line.append(line.empty() ? "" : " ").append("-p ").append(key).append("=").append(*value);
    };
    add("InputFileType", clip.type);
    add("InputWidth", clip.width);
    add("InputHeight", clip.height);
    return line;
}

Json Clips(const SweepResults& sweep) {
    Json clips = Json::array();
    for (size_t c = 0; c < sweep.plan.clips.size(); ++c) {
        const PlanClip& clip = sweep.plan.clips[c];
        clips.push_back({{"name", clip.name},
                         {"file", clip.file},
                         {"labels", clip.labels ? Json(clip.label_file) : Json()},
                         {"options", ClipOptions(clip)},
                         {"width", sweep.clip_sizes[c].width},
                         {"height", sweep.clip_sizes[c].height}});
    }
    return clips;
}

Json Keys(const Plan& plan) {
    Json keys = Json::array();
    for (const PlanKey& key : plan.keys) {
        const InputMapEntry& row = aInputKeys[static_cast<size_t>(key.row)];
        Json values = Json::array();
        for (const std::string& value : key.values) values.push_back(Value(row, value));
        keys.push_back({{"name", row.TokenName},
                        {"values", values},
                        {"start", Value(row, plan.settings[static_cast<size_t>(key.row)])},
                        {"range", RangeOf(row)}});
    }
    return keys;
}

Json ScoreNames() {
    Json names = Json::array();
    for (const ScoreRow& row : ScoreTable()) {
        names.push_back(
            {{"name", row.name}, {"better", BetterName(row.better)}, {"what", row.what}});
    }
    return names;
}

Json Limits(const Plan& plan) {
    Json limits = Json::array();
    for (const PlanLimit& limit : plan.limits) {
        limits.push_back({{"score", ScoreTable()[limit.score].name},
                          {"clip", limit.clip < 0 ? Json() : Json(limit.clip)},
                          {"at_least", limit.at_least},
                          {"value", limit.value}});
    }
    return limits;
}

Json PointJson(const SweepResults& sweep, size_t p) {
    const PointResult& result = sweep.results[p];
    const Point& point = sweep.points.points[p];
    Json values = Json::array();
    for (size_t k = 0; k < sweep.plan.keys.size(); ++k) {
        values.push_back(
            Value(aInputKeys[static_cast<size_t>(sweep.plan.keys[k].row)], point.values[k]));
    }
    Json runs = Json::array();
    for (const RunResult& run : result.runs) {
        Json json = {{"status", StatusName(run.status)}};
        if (run.status == RunStatus::kDone) {
            json["scores"] = Scores(run.judgement.counts);
            json["strip"] = PackStrip(run.judgement.strip);
        } else {
            json["message"] = run.message;
        }
        runs.push_back(std::move(json));
    }
    return {{"id", PointId(point)},
            {"status", StatusName(result.status)},
            {"values", values},
            {"options", OptionLine(sweep.plan, point)},
            {"on_front", result.on_front},
            {"missed", result.missed},
            {"total", Scores(result.total)},
            {"runs", runs}};
}

}  // namespace

void WriteJson(const SweepResults& sweep, const std::string& path) {
    ResultFile file(path);
    Json head = {{"format", 1},
                 {"plan", sweep.plan.path},
                 {"settings", sweep.plan.settings_path},
                 {"md", sweep.md_digest},
                 {"product", sweep.points.product},
                 {"chosen", sweep.points.chosen},
                 {"idle", sweep.points.idle},
                 {"clips", Clips(sweep)},
                 {"keys", Keys(sweep.plan)},
                 {"scores", ScoreNames()},
                 {"expect", Limits(sweep.plan)}};
    // A line a point, so that the file can be read by eye and is not built in memory as a whole.
    std::string text = head.dump(1);
    text.resize(text.rfind('}') - 1);
    file.Write(text + ",\n \"points\": [");
    for (size_t p = 0; p < sweep.results.size(); ++p) {
        file.Write((p == 0 ? "\n  " : ",\n  ") + PointJson(sweep, p).dump());
    }
    file.Write("\n ]\n}\n");
    file.Commit();
}

}  // namespace lab
