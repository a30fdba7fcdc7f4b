// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/compare.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <memory>
#include <optional>

#include "lab/compare/compare_runs.h"
#include "lab/compare/report.h"
#include "lab/dumps/frame_range.h"
#include "lab/tool/error.h"
#include "lab/tool/terminal.h"

namespace lab {

namespace {

// What the user typed, before it is understood.
struct Typed {
    CompareOptions options;
    std::string frames, stages, size;
};

int64_t ParseNumber(const std::string& text, const std::string& whole, const char* form) {
    int64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || error != std::errc{} || stop != end || number < 0) {
        throw Error("'" + whole + "' is not of the form " + form);
    }
    return number;
}

std::size_t StageIndex(const std::string& name) {
    std::string known;
    for (int s = 0; s < kStageCount; ++s) {
        if (name == StageName(static_cast<Stage>(s))) return static_cast<std::size_t>(s);
        if (s > 0) known += ", ";
        known += StageName(static_cast<Stage>(s));
    }
    throw Error("'" + name + "' is none of the stages " + known);
}

void ParseStages(const std::string& text, CompareOptions* options) {
    if (text.empty()) return;
    options->all_stages = false;
    options->stages.fill(false);
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t comma = std::min(text.find(',', at), text.size());
        options->stages[StageIndex(text.substr(at, comma - at))] = true;
        at = comma + 1;
    }
}

void ParseSize(const std::string& text, CompareOptions* options) {
    if (text.empty()) return;
    constexpr const char* kForm = "--size WxH";
    const std::size_t x = std::min(text.find('x'), text.size());
    const int64_t width = ParseNumber(text.substr(0, x), text, kForm);
    const int64_t height =
        ParseNumber(x < text.size() ? text.substr(x + 1) : std::string(), text, kForm);
    if (width < 1 || height < 1 || width > 65535 || height > 65535) {
        throw Error("--size " + text + ": width and height are 1 to 65535");
    }
    options->video_size = {static_cast<int>(width), static_cast<int>(height)};
}

void Leave(const std::string& path, const std::string& text) {
    if (path.empty()) return;
    ResultFile file(path);
    file.Write(text);
    file.Commit();
}

int RunCompare(Typed typed) {
    CompareOptions& options = typed.options;
    const FrameRange frames = ParseFrames(typed.frames);
    options.first_frame = frames.first;
    options.last_frame = frames.last;
    ParseStages(typed.stages, &options);
    ParseSize(typed.size, &options);
    std::optional<MapFile> map;
    if (!options.map.empty()) map.emplace(options.map);
    const Comparison comparison =
        CompareRuns(options, [&map](int64_t frame, int x, int y, Stage stage) {
            if (map) map->Add(frame, x, y, stage);
        });
    if (map) map->Commit();
    if (!options.json.empty()) Leave(options.json, JsonReport(comparison));
    if (!options.junit.empty()) Leave(options.junit, JunitReport(comparison));
    std::fputs(TextReport(comparison, ColourWanted()).c_str(), stdout);
    return comparison.Status();
}

}  // namespace

void AddCompare(CLI::App* app, int* status) {
    CLI::App* command = app->add_subcommand(
        "compare",
        "Finds the first wrong block between two runs and counts the rest. Ends with 0 "
        "when they are the same, 1 when they differ, 2 when files cannot be read.");
    auto typed = std::make_shared<Typed>();
    CompareOptions& options = typed->options;
    BeginHelpWith(
        "  mdlab compare golden/ rtl/\n"
        "  mdlab compare --stages distance golden/HOG_feature/hogmd_dist.txt rtl/hogmd_dist.txt\n",
        command);
    command
        ->add_option("GOLDEN", options.golden,
                     "Output folder, its HOG_feature, one of the files there, or a raw video")
        ->required();
    command->add_option("OTHER", options.other, "The same of the run to check")->required();
    command->add_option("--limit", options.limit, "Blocks in full after the first (5)")
        ->check(CLI::Range(0, 1000000))
        ->option_text("N");
    command->add_option("--frames", typed->frames, "Only frames A to B, counted from 0")
        ->type_name("A:B");
    command
        ->add_option("--stages", typed->stages,
                     "Only these of luma, vector, length, reference, distance, active, box; each "
                     "must then be shown by a file of both runs")
        ->type_name("LIST");
    command
        ->add_option("--stride", options.stride,
                     "Pixels from block to block, where no video of the run shows it")
        ->check(CLI::Range(8, 64))
        ->option_text("N");
    command->add_option("--size", typed->size, "Size of raw videos with none in their name")
        ->type_name("WxH");
    command->add_option("--json", options.json, "Leave the result as json")->type_name("FILE");
    command->add_option("--junit", options.junit, "Leave the result for CI servers, as JUnit xml")
        ->type_name("FILE");
    command->add_option("--map", options.map, "Leave the blocks that differ, for export --yuview")
        ->type_name("FILE");
    command->add_flag("--quiet", options.quiet, "No progress on standard error");
    command->callback([typed, status] { *status = RunCompare(*typed); });
}

}  // namespace lab
