// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "bench/numbers/section.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace bench {

namespace {

namespace fs = std::filesystem;

void ReplaceAll(const std::string& what, const std::string& by, std::string* text) {
    for (size_t at = 0; (at = text->find(what, at)) != std::string::npos; at += by.size()) {
        text->replace(at, what.size(), by);
    }
}

// The command with its folders filled in. `folders` holds those of the round so far.
Command Filled(Command command, const std::string& folder,
               const std::map<std::string, std::string>& folders) {
    for (std::string& word : command.words) {
        ReplaceAll("{new}", folder, &word);
        for (const auto& [name, path] : folders) ReplaceAll("{of " + name + "}", path, &word);
    }
    return command;
}

void MakeEmpty(const std::string& folder) {
    fs::remove_all(folder);
    fs::create_directories(folder);
}

}  // namespace

double Round::Time(const std::string& subject) const {
    return time.at(subject);
}

const Used& Round::Whole(const std::string& subject) const {
    return whole.at(subject);
}

void Measure(int rounds, const std::string& folder, Section* section) {
    MakeEmpty(folder);
    const int n = std::min(rounds, section->most_rounds);
    for (int i = 0; i < n; ++i) {
        std::fprintf(stderr, "%s: round %d of %d\n", section->title.c_str(), i + 1, n);
        Round round;
        std::map<std::string, std::string> folders;
        for (const Subject& subject : section->subjects) {
            const std::string stem =
                folder + "/" + std::to_string(folders.size()) + "_" + std::to_string(i);
            folders[subject.name] = stem;
            double start = 0;
            if (!subject.without.words.empty()) {
                start = Run(Filled(subject.without, stem + "_start", folders)).cpu_s;
            }
            const Used used = Run(Filled(subject.command, stem, folders));
            round.whole[subject.name] = used;
            round.time[subject.name] = std::max(used.cpu_s - start, 1e-9) / subject.units;
        }
        section->rounds.push_back(std::move(round));
        if (section->empty_each_round) MakeEmpty(folder);
        sync();
    }
    MakeEmpty(folder);
}

Value Ratio(const std::string& above, const std::string& below) {
    return [=](const Round& round) { return round.Time(above) / round.Time(below); };
}

Value PeakMib(const std::string& subject) {
    return [=](const Round& round) { return round.Whole(subject).peak_mib; };
}

Value CpuSeconds(const std::string& subject) {
    return [=](const Round& round) { return round.Whole(subject).cpu_s; };
}

Value ElapsedSeconds(const std::string& subject) {
    return [=](const Round& round) { return round.Whole(subject).elapsed_s; };
}

Goal AtLeast(double limit, const std::string& where) {
    return {GoalKind::kAtLeast, limit, where};
}

Goal AtMost(double limit, const std::string& where) {
    return {GoalKind::kAtMost, limit, where};
}

}  // namespace bench
