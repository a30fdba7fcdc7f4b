// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// mdlab: the companion of MD. It compares dumps, shows why a block is active, and runs many
// settings over labelled clips. Results go to standard output, everything else to standard error.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "lab/commands.h"
#include "lab/tool/error.h"
#include "md/platform/platform.h"

namespace {

int Run(int argc, char** argv) {
    int status = lab::kSame;
    const std::unique_ptr<CLI::App> app = lab::MakeApp(&status);
    try {
        app->parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const std::vector<std::string> unknown = app->remaining();
        if (app->get_subcommands().empty() && !unknown.empty()) {
            throw lab::Error("no command " + unknown.front() + "; mdlab --help lists them");
        }
        // Help and version are "errors" with status 0 here.
        return app->exit(error) == 0 ? lab::kSame : lab::kTrouble;
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    // A write over the limit of file sizes then fails as on a full disk, and is cleaned up after.
    KeepRunningAtFileLimit();
    int status = lab::kTrouble;
    try {
        status = Run(argc, argv);
    } catch (const lab::Error& error) {
        std::fprintf(stderr, "mdlab: %s\n", error.what());
        status = error.Status();
    } catch (const std::filesystem::filesystem_error& error) {
        std::fprintf(stderr, "mdlab: %s: %s\n", error.path1().c_str(),
                     error.code().message().c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mdlab: %s\n", error.what());
    }
    if (std::fflush(stdout) != 0) {
        std::fprintf(stderr, "mdlab: standard output cannot be written\n");
        return lab::kTrouble;
    }
    return status;
}
