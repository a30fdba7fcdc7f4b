// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/command.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <utility>

namespace lab {

namespace {

class ExamplesFirst : public CLI::Formatter {
  public:
    explicit ExamplesFirst(std::string examples) : examples_(std::move(examples)) {}

    std::string make_help(const CLI::App* app, std::string name,
                          CLI::AppFormatMode mode) const override {
        const std::string help = CLI::Formatter::make_help(app, std::move(name), mode);
        return mode == CLI::AppFormatMode::Normal ? examples_ + "\n" + help : help;
    }

  private:
    std::string examples_;
};

}  // namespace

void BeginHelpWith(const std::string& examples, CLI::App* command) {
    command->formatter(std::make_shared<ExamplesFirst>(examples));
}

}  // namespace lab
