// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/score/score_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "lab/score/scores.h"
#include "lab/tool/command.h"
#include "lab/tool/error.h"
#include "lab/tool/text_file.h"

namespace lab {

namespace {

struct Options {
    std::string log, labels;
    std::string input, working;  // WxH; empty: as the log says
    bool json = false;
};

FrameSize ParseSize(const std::string& option, const std::string& text) {
    FrameSize size;
    int used = 0;
    if (std::sscanf(text.c_str(), "%dx%d%n", &size.width, &size.height, &used) != 2 ||
        static_cast<size_t>(used) != text.size() || size.width < 1 || size.height < 1) {
        throw Error(option + " " + text + ": a size is written as 640x360");
    }
    return size;
}

LogReader ReadLog(const std::string& path) {
    LogReader reader;
    reader.Add(ReadTextFile(path));
    reader.Finish();
    if (reader.frames.empty()) throw Error(path + ": no result line of a frame in it");
    if (!reader.Complete()) {
        std::fprintf(stderr, "mdlab: %s: the run did not finish; %zu frames are scored\n",
                     path.c_str(), reader.frames.size());
    }
    return reader;
}

Scaling ScalingOf(const Options& options, const LogReader& log) {
    if (options.input.empty() != options.working.empty()) {
        throw Error("--input and --working go together");
    }
    if (!options.input.empty()) {
        return {ParseSize("--input", options.input), ParseSize("--working", options.working)};
    }
    return log.scaling.value_or(Scaling{});
}

nlohmann::ordered_json Json(const Judgement& judgement, bool complete) {
    nlohmann::ordered_json json = {{"complete", complete}};
    for (const ScoreRow& row : ScoreTable()) {
        const std::string text = ScoreText(row.value(judgement.counts));
        json[row.name] =
            text.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json::parse(text);
    }
    json["strip"] = judgement.strip;
    return json;
}

int Score(const Options& options) {
    const LogReader log = ReadLog(options.log);
    Labels labels;
    if (!options.labels.empty()) labels = ReadLabels(options.labels);
    const Judgement judgement =
        Judge(log.frames, options.labels.empty() ? nullptr : &labels, ScalingOf(options, log));
    if (options.json) {
        std::puts(Json(judgement, log.Complete()).dump(1).c_str());
        return kSame;
    }
    for (const ScoreRow& row : ScoreTable()) {
        const std::string text = ScoreText(row.value(judgement.counts));
        std::printf("%-14s  %8s  %s\n", row.name, text.empty() ? "-" : text.c_str(), row.what);
    }
    return kSame;
}

}  // namespace

void AddScore(CLI::App* app, int* status) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        app->add_subcommand("score", "Scores a run of MD against labels of its clip");
    BeginHelpWith(
        "  MD -d my.cfg >run.log\n"
        "  mdlab score run.log --labels street.csv\n",
        command);
    command->add_option("LOG", options->log, "What the run printed")->required();
    command
        ->add_option("--labels", options->labels,
                     "Labels: csv of first,last,left,top,right,bottom,what")
        ->type_name("CSV");
    command
        ->add_option("--input", options->input, "Size of the clip, where the log does not show it")
        ->type_name("WxH");
    command->add_option("--working", options->working, "Working size, likewise")->type_name("WxH");
    command->add_flag("--json", options->json, "Print a JSON object");
    command->callback([options, status] { *status = Score(*options); });
}

}  // namespace lab
