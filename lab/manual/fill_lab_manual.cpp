// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Fills the command line of mdlab into a text: a manual page or a completion script. A line
// "@COMMANDS@" becomes all subcommands with their options as man(7) text; "@CASES@" a bash case
// arm a subcommand with its options; "@NAMES@" keeps its surroundings and gets the names of the
// subcommands; "@VERSION@" likewise.
//
//     fill_lab_manual TEMPLATE VERSION >PAGE
#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "lab/commands.h"

namespace {

// As man(7) text: a dash that is typed, no line that is taken for a request.
std::string Roff(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '-' || c == '\\') result += '\\';
        result += c == '\\' ? 'e' : c;
        if (c == '\n') result += "\\&";
    }
    return result;
}

// The subcommands that the help shows.
std::vector<const CLI::App*> Commands(const CLI::App& app) {
    std::vector<const CLI::App*> result;
    for (const CLI::App* command : app.get_subcommands({})) {
        if (!command->get_group().empty()) result.push_back(command);
    }
    return result;
}

void PrintOption(const CLI::Option& option) {
    const bool positional = option.get_positional();
    std::cout << ".TP\n.B " << Roff(option.get_name(positional, !positional));
    const std::string& shown = option.get_option_text();
    const std::string type = shown.empty() ? option.get_type_name() : shown;
    if (!positional && option.get_items_expected_max() > 0 && !type.empty()) {
        std::cout << " \\fI" << Roff(type) << "\\fR";
    }
    std::cout << "\n" << Roff(option.get_description()) << "\n";
}

void PrintCommand(const CLI::App& command) {
    std::cout << ".SS mdlab " << Roff(command.get_name()) << "\n"
              << Roff(command.get_description()) << "\n";
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_group().empty() || option->check_name("--help")) continue;
        PrintOption(*option);
    }
}

void PrintCase(const CLI::App& command) {
    std::cout << "        " << command.get_name() << ") options='";
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) std::cout << "--" << name << " ";
    }
    std::cout << "' ;;\n";
}

void Replace(const std::string& mark, const std::string& by, std::string* line) {
    const size_t at = line->find(mark);
    if (at != std::string::npos) line->replace(at, mark.size(), by);
}

}  // namespace

int main(int argc, char** argv) {
    std::ifstream page(argc == 3 ? argv[1] : "");
    if (!page) {
        std::fprintf(stderr, "usage: fill_lab_manual TEMPLATE VERSION >PAGE\n");
        return 2;
    }
    int status = 0;
    const auto app = lab::MakeApp(&status);
    std::string names;
    for (const CLI::App* command : Commands(*app)) names += command->get_name() + " ";
    for (std::string line; std::getline(page, line);) {
        if (line == "@COMMANDS@") {
            for (const CLI::App* command : Commands(*app)) PrintCommand(*command);
        } else if (line == "@CASES@") {
            for (const CLI::App* command : Commands(*app)) PrintCase(*command);
        } else {
            Replace("@NAMES@", names, &line);
            Replace("@VERSION@", argv[2], &line);
            std::cout << line << "\n";
        }
    }
    return std::cout.flush() ? 0 : 1;
}
