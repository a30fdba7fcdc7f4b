// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/commands.h"

#include <CLI/CLI.hpp>
#include <vector>

#include "lab/compare/compare.h"
#include "lab/export/export.h"
#include "lab/report/report_command.h"
#include "lab/score/score_command.h"
#include "lab/show/show.h"
#include "lab/sweep/job.h"
#include "lab/sweep/sweep_command.h"
#include "lab/tool/command.h"

namespace lab {

namespace {

// A row for each subcommand, in the order of the help.
const std::vector<AddCommand*> kCommands = {AddCompare, AddShow,  AddExport,  AddReport,
                                            AddScore,   AddSweep, AddSweepJob};

}  // namespace

std::unique_ptr<CLI::App> MakeApp(int* status) {
    auto app = std::make_unique<CLI::App>(
        "The companion of MD: compares its dumps, shows its decisions, tries its settings.",
        "mdlab");
    app->require_subcommand(1);
    app->set_version_flag("--version", "mdlab " MD_VERSION);
    for (AddCommand* add : kCommands) add(app.get(), status);
    BeginHelpWith("  mdlab compare golden/ rtl/\n  mdlab show out 17\n", app.get());
    return app;
}

}  // namespace lab
