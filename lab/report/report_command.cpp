// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/report_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "lab/embedded.h"
#include "lab/report/report.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

constexpr char kExamples[] =
    "Why was this person missed, why did that tree trigger?\n"
    "    mdlab report --out report.html -- -d cfg/default.cfg -p InputFilePath=street.mp4\n"
    "What does another setting do?\n"
    "    mdlab report --out both.html --against MD_HogDist_Th=16 -- -d cfg/default.cfg\n";

// What the options store; lives as long as the parser.
struct Options {
    ReportRequest request;
    std::string title, detail;
    double budget = 16;
};

IndexRange ParseRange(const std::string& text) {
    IndexRange range{0, -1};
    char rest = 0;
    if (std::sscanf(text.c_str(), "%d-%d%c", &range.first, &range.last, &rest) != 2 ||
        range.Length() < 1) {
        throw Error("--detail: expected FROM-TO, as in 120-180, found '" + text + "'");
    }
    return range;
}

int Run(Options* options) {
    ReportRequest& request = options->request;
    if (!options->title.empty()) request.title = options->title;
    if (!options->detail.empty()) request.detail = ParseRange(options->detail);
    request.budget = static_cast<int64_t>(options->budget * (1 << 20));
    return MakeReport(request, ReportPage());
}

}  // namespace

void AddReport(CLI::App* app, int* status) {
    if (ReportPage().empty()) return;  // built without node
    auto options = std::make_shared<Options>();
    ReportRequest& request = options->request;
    CLI::App* command = app->add_subcommand(
        "report", "Runs MD and writes one page that shows why, to open offline");
    command->add_option("--out,-o", request.out, "The page to write")
        ->required()
        ->type_name("FILE");
    command
        ->add_option("--against", request.against,
                     "Compare with a second run: a settings file, or KEY=VALUE; may be repeated")
        ->type_name("FILE|KEY=VALUE")
        ->expected(1)
        ->allow_extra_args(false)  // else a list would take the "--" after it for its own end
        ->take_all();
    command->add_option("--title", options->title, "Instead of the name of the clip")
        ->type_name("TEXT");
    command
        ->add_option("--budget", options->budget,
                     "Largest size of the page in MB; 0: no limit (default 16)")
        ->check(CLI::Range(0.0, 1e6))
        ->option_text("MB");
    command
        ->add_option("--detail", options->detail,
                     "Frames that keep everything, whatever the size, as in 120-180")
        ->type_name("FROM-TO");
    command->add_option("--log", request.log, "Append MD's printed log to this file")
        ->type_name("FILE");
    command->add_flag("--quiet,-q", request.quiet, "No progress");
    command->add_option("arguments", request.arguments, "What MD is run with, after --")
        ->type_name("MD-OPTIONS");
    BeginHelpWith(kExamples, command);
    command->callback([options, status] { *status = Run(options.get()); });
}

}  // namespace lab
