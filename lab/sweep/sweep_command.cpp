// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/sweep_command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>

#include "lab/embedded.h"
#include "lab/sweep/results.h"
#include "lab/sweep/sweep.h"
#include "lab/tool/command.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

constexpr size_t kShown = 5;  // points, refusals and failures that the summary names

std::string ScoreOf(const Counts& counts, const std::string& name) {
    for (const ScoreRow& row : ScoreTable()) {
        if (name == row.name) return ScoreText(row.value(counts));
    }
    return "";
}

double F1Of(const PointResult& point) {
    const std::string text = ScoreOf(point.total, "f1");
    return text.empty() ? -1 : std::atof(text.c_str());
}

// Points in the order of the summary: fewest limits missed, then the best f1.
std::vector<size_t> BestFirst(const SweepResults& sweep) {
    std::vector<size_t> order;
    for (size_t p = 0; p < sweep.results.size(); ++p) {
        if (sweep.results[p].status == RunStatus::kDone) order.push_back(p);
    }
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        const PointResult& x = sweep.results[a];
        const PointResult& y = sweep.results[b];
        if (x.missed.size() != y.missed.size()) return x.missed.size() < y.missed.size();
        return F1Of(x) > F1Of(y);
    });
    return order;
}

std::string Name(const SweepResults& sweep, size_t p) {
    const std::string line = OptionLine(sweep.plan, sweep.points.points[p]);
    return line.empty() ? "the settings as they are" : line;
}

void PrintBest(const SweepResults& sweep, const std::vector<size_t>& order) {
    if (order.empty()) return;
    std::printf("\n%8s %8s %10s %8s %8s  %s\n", "f1", "recall", "false/1000", "iou", "iou_all",
                "settings, best first");
    for (size_t i = 0; i < std::min(order.size(), kShown); ++i) {
        const Counts& total = sweep.results[order[i]].total;
        const auto text = [&](const char* name) {
            const std::string score = ScoreOf(total, name);
            return score.empty() ? std::string("-") : score;
        };
        std::printf("%8s %8s %10s %8s %8s  %s\n", text("f1").c_str(), text("recall").c_str(),
                    text("false_per_1000").c_str(), text("iou").c_str(), text("iou_all").c_str(),
                    Name(sweep, order[i]).c_str());
    }
}

// Points without a result: every different message, with the first runs that ended with it.
void PrintOthers(const SweepResults& sweep, RunStatus status) {
    std::map<std::string, std::vector<std::string>> met;
    for (size_t p = 0; p < sweep.results.size(); ++p) {
        for (size_t c = 0; c < sweep.results[p].runs.size(); ++c) {
            const RunResult& run = sweep.results[p].runs[c];
            if (run.status != status) continue;
            met[run.message].push_back(sweep.plan.clips[c].name + ": " + Name(sweep, p));
        }
    }
    std::FILE* out = status == RunStatus::kFailed ? stderr : stdout;
    for (const auto& [message, runs] : met) {
        std::fprintf(out, "%s, %zu runs: %s\n", StatusName(status), runs.size(), message.c_str());
        for (size_t i = 0; i < std::min(runs.size(), kShown); ++i) {
            std::fprintf(out, "    %s\n", runs[i].c_str());
        }
        if (runs.size() > kShown) std::fprintf(out, "    ...\n");
    }
}

// The verdict and the status that goes with it.
int Verdict(const SweepResults& sweep, const std::vector<size_t>& order) {
    const std::vector<PlanLimit>& limits = sweep.plan.limits;
    if (limits.empty()) return kSame;
    const auto meeting = std::count_if(order.begin(), order.end(),
                                       [&](size_t p) { return sweep.results[p].missed.empty(); });
    if (meeting > 0) {
        std::printf("expect: met by %lld of %zu points, the best of them with %s\n",
                    static_cast<long long>(meeting), sweep.results.size(),
                    Name(sweep, order.front()).c_str());
        return kSame;
    }
    std::printf("expect: met by no point\n");
    if (order.empty()) return kDiffer;
    const PointResult& nearest = sweep.results[order.front()];
    std::printf("nearest: %s\n", Name(sweep, order.front()).c_str());
    for (const int i : nearest.missed) {
        const PlanLimit& limit = limits[static_cast<size_t>(i)];
        const auto clip = static_cast<size_t>(std::max(limit.clip, 0));
        const Counts& counts = limit.clip < 0 ? nearest.total : nearest.runs[clip].judgement.counts;
        const std::string score = ScoreText(ScoreTable()[limit.score].value(counts));
        std::printf("    %s in %s: %s\n", LimitText(limit).c_str(),
                    limit.clip < 0 ? "all clips" : sweep.plan.clips[clip].name.c_str(),
                    score.empty() ? "not defined" : score.c_str());
    }
    return kDiffer;
}

int Summary(const SweepResults& sweep, const SweepOptions& options) {
    for (const std::string& idle : sweep.points.idle) std::printf("not read: %s\n", idle.c_str());
    int64_t of[3] = {};
    for (const PointResult& point : sweep.results) {
        for (const RunResult& run : point.runs) ++of[static_cast<int>(run.status)];
    }
    std::printf("%zu points, %zu clips, %lld runs: %lld done, %lld refused, %lld failed\n",
                sweep.results.size(), sweep.plan.clips.size(), static_cast<long long>(sweep.runs),
                static_cast<long long>(of[0]), static_cast<long long>(of[1]),
                static_cast<long long>(of[2]));
    if (!options.quiet) {
        std::fprintf(stderr, "%lld runs were in the cache\n",
                     static_cast<long long>(sweep.from_cache));
    }
    PrintOthers(sweep, RunStatus::kRefused);
    const std::vector<size_t> order = BestFirst(sweep);
    PrintBest(sweep, order);
    std::printf("\nresults: %s/results.csv, results.sqlite, results.json%s\n", options.into.c_str(),
                SweepPage().empty() ? "" : ", sweep.html");
    std::fflush(stdout);
    PrintOthers(sweep, RunStatus::kFailed);
    if (sweep.interrupted) {
        std::fprintf(stderr, "mdlab: interrupted; the same command goes on where it stopped\n");
        return kTrouble;
    }
    const int verdict = Verdict(sweep, order);
    return of[2] > 0 ? kTrouble : verdict;
}

int Run(const SweepOptions& options) {
    if (!options.only_plan && options.into.empty()) throw Error("--into is needed, or --plan");
    const SweepResults sweep = RunSweep(options);
    if (options.only_plan) return kSame;
    WriteResults(sweep, options.into);
    return Summary(sweep, options);
}

}  // namespace

void AddSweep(CLI::App* app, int* status) {
    auto options = std::make_shared<SweepOptions>();
    CLI::App* command =
        app->add_subcommand("sweep", "Runs many settings over many clips and scores each");
    BeginHelpWith(
        "  mdlab sweep plan.yaml --plan\n"
        "  mdlab sweep plan.yaml --into sweep/\n"
        "  mdlab sweep plan.yaml --into sweep/ --profile slurm\n",
        command);
    command->add_option("PLAN", options->plan, "The plan, a YAML file")->required();
    command->add_option("--into", options->into, "Folder for the results")->type_name("FOLDER");
    command->add_flag("--plan", options->only_plan, "Print what would run, and stop");
    command->add_option("--cache", options->cache, "Folder for finished runs (cache in --into)")
        ->type_name("FOLDER");
    command->add_option("--cores", options->cores, "Cores to use (all of this machine)")
        ->check(CLI::Range(1, 1 << 20))
        ->option_text("N");
    command
        ->add_option("--profile", options->profile,
                     "slurm, or the folder of a Snakemake profile of your own")
        ->type_name("PROFILE");
    command->add_option("--md", options->md, "The MD to run (the one beside mdlab)")
        ->type_name("PROGRAM");
    command->add_flag("--quiet", options->quiet, "No progress line");
    command->callback([options, status] { *status = Run(*options); });
}

}  // namespace lab
