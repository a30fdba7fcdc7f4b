// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/run_facts.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <map>
#include <sstream>

#include "lab/embedded.h"
#include "lab/settings/key_sources.h"
#include "lab/settings/key_use.h"
#include "md/cfg_top/input_map.h"
#include "md/object/grid_cluster.h"
#include "md/run_state.h"
#include "tools/settings_doc.h"

namespace lab {

namespace {

using nlohmann::json;

std::string LastPart(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

json ValueOf(const InputMapEntry& row) {
    switch (row.Type) {
        case kTypeInteger:
            return *static_cast<const int32_t*>(row.Place);
        case kTypeDouble:
            return *static_cast<const double*>(row.Place);
        default:
            break;
    }
    const std::string text = static_cast<const char*>(row.Place);
    const std::string key = row.TokenName;
    return key == "InputFilePath" || key == "OutputFilePath" ? LastPart(text) : text;
}

json DefaultOf(const InputMapEntry& row) {
    switch (row.Type) {
        case kTypeInteger:
            return static_cast<int32_t>(row.Default);
        case kTypeDouble:
            return row.Default;
        default:
            return "";
    }
}

bool SetByReport(const std::string& key) {
    return key == "OutputFilePath" || key == "MD_DbgEn" || key == "EnableBatch";
}

// Sorted by key, as json objects are.
json SettingsOf(const std::vector<std::string>& arguments) {
    const auto sources = KeySources(arguments);
    json settings = json::object();
    for (const InputMapEntry& row : aInputKeys) {
        const std::string key = row.TokenName;
        const std::string idle = SetByReport(key) ? "set by the report" : WhyIdle(key, tSimParams);
        const json value = ValueOf(row);
        const auto source = sources.find(key);
        settings[key] = {{"value", value},
                         {"source", source == sources.end() ? kFromDefault : source->second},
                         {"changed", idle.empty() && value != DefaultOf(row)},
                         {"idle", idle}};
    }
    return settings;
}

// Equal for runs that detect the same in the same clip.
std::string Fingerprint(const json& settings) {
    uint64_t hash = 0xCBF29CE484222325;
    const auto Add = [&](const std::string& text) {
        for (const char c : text) {
            hash = (hash ^ static_cast<uint8_t>(c)) * uint64_t{0x100000001B3};
        }
    };
    for (const auto& [key, setting] : settings.items()) {
        if (setting["idle"] == "" && key != "InputFilePath") {
            Add(key + "=" + setting["value"].dump(-1, ' ', true, json::error_handler_t::replace) +
                "\n");
        }
    }
    char text[32];
    std::snprintf(text, sizeof text, "%04" PRIx64 " %04" PRIx64 " %04" PRIx64 " %04" PRIx64,
                  hash >> 48, hash >> 32 & 0xFFFF, hash >> 16 & 0xFFFF, hash & 0xFFFF);
    return text;
}

json BoxLimits() {
    if (tSimParams.tMd.nMD_PostProcMethod != kGridCluster) return nullptr;
    const GridTune& tune = aGridTune[nMdWidth == 640 && nMdHeight == 360 ? 0 : 1];
    return {{"distance", tune.nDistTh}, {"score", tune.nDetectTh}, {"blocks", tune.nMinBlocks}};
}

json RunMembers(const std::vector<std::string>& arguments, const Recorder& recorder) {
    const MdParams& md = tSimParams.tMd;
    const json settings = SettingsOf(arguments);
    return {{"grid",
             {{"w", tMdResult.nBlkW},
              {"h", tMdResult.nBlkH},
              {"block", md.nMD_HogBlockSize},
              {"stride", md.nMD_HogBlockStride},
              {"cell", md.nMD_HogCellSize}}},
            {"method", md.nMD_PostProcMethod},
            {"gate", md.nMD_Bbox_PP_Enable != 0},
            {"reference", md.nMD_RefFrmIdx},
            {"correlation", md.nMD_NeighborCorrelation != 0},
            {"fingerprint", Fingerprint(settings)},
            {"changed", std::count_if(settings.begin(), settings.end(),
                                      [](const json& s) { return s["changed"].get<bool>(); })},
            {"settings", settings},
            {"thresholds", recorder.ThresholdCount()},
            {"weights", VectorPlanes() > kVectorSize},
            {"box_limits", BoxLimits()},
            {"distances", {{"all", recorder.Sums().distances}, {"active", recorder.Sums().active}}},
            {"columns", ColumnNames()}};
}

}  // namespace

json RunFacts(const std::vector<std::string>& arguments, const Recorder& recorder) {
    const SimParams& sim = tSimParams;
    const int64_t frame_bytes = int64_t{nMdWidth} * nMdHeight * 3 / 2;
    return {{"clip",
             {{"name", LastPart(sim.InputFilePath)},
              {"path", std::string(sim.InputFilePath)},
              {"first", sim.nStartFrameIdx},
              {"requested", sim.nFramesToBeProcessed},
              {"width", nMdWidth},
              {"height", nMdHeight},
              {"input_width", sim.nInputWidth},
              {"input_height", sim.nInputHeight}}},
            {"source",
             {{"path", std::string(sim.pScaledInputPath)},
              {"offset", frame_bytes * sim.nStartFrameIdx},
              {"frame_bytes", frame_bytes}}},
            {"run", RunMembers(arguments, recorder)},
            {"hash", recorder.Sums().luma_hash}};
}

json KeyTexts() {
    std::istringstream shipped{std::string(DefaultCfg())};
    json keys = json::array();
    for (const SettingGroup& group : ReadSettingsDoc(shipped)) {
        std::string meaning;
        for (const SettingDoc& doc : group.aSettings) {
            if (!doc.sMeaning.empty()) meaning = doc.sMeaning;
            const std::string range = RangeText(*doc.pRow);
            keys.push_back({{"key", doc.pRow->TokenName},
                            {"group", group.sTitle},
                            {"text", meaning.empty() ? group.sIntro : meaning},
                            {"range", range.substr(0, range.find(", default"))},
                            {"default", DefaultOf(*doc.pRow)}});
        }
    }
    return keys;
}

}  // namespace lab
