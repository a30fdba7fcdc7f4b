// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What is compared, and the rounds in which it is measured. A section of the page is a list of
// subjects (commands) and tables of figures, each worked out of one round's measurements:
//
//     section.subjects = {{"md", Md(...)}, {"decode", {{"ffmpeg", ...}}}};
//     section.tables = {{"", {{"ffmpeg / MD", "", Ratio("decode", "md"), 2, AtLeast(3)}}}};
//
// A further comparison is a further subject and a further figure.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "bench/numbers/run.h"

namespace bench {

// What a subject costs in a round. In the words of a command, {new} is a folder that does not exist
// yet and is another in every round, as for a user's next setting: emptying the files of an
// earlier run costs a file system more than making them. {of NAME} is the folder that the subject
// NAME was given in this round.
struct Subject {
    std::string name;
    Command command;
    double units = 1;      // by which its time is divided, as frames
    Command without = {};  // if any, its time is subtracted: a run of only the start
};

struct Round {
    // Processor time in seconds a unit, without the start where that is subtracted.
    [[nodiscard]] double Time(const std::string& subject) const;
    // Of the whole command.
    [[nodiscard]] const Used& Whole(const std::string& subject) const;

    std::map<std::string, Used> whole;
    std::map<std::string, double> time;
};

using Value = std::function<double(const Round&)>;

enum class GoalKind { kNone, kAtLeast, kAtMost };

struct Goal {
    GoalKind kind = GoalKind::kNone;
    double limit = 0;
    std::string where;  // said after it where the rows of a column have several goals
};

struct Figure {
    std::string row;
    std::string column;  // empty: the table has one figure a row
    Value value;
    int digits = 2;  // after the point
    Goal goal = {};
};

struct Table {
    std::string head = {};  // of its first column
    std::vector<Figure> figures = {};
};

struct Section {
    std::string title = {};  // as in the list of write_numbers.cpp
    std::string text = {};   // above the tables
    std::vector<Subject> subjects = {};
    std::vector<Table> tables = {};
    int most_rounds = 1000;          // for what takes long
    bool empty_each_round = false;   // for what leaves much in few files; see Measure
    std::string after = {};          // below the tables
    std::vector<Round> rounds = {};  // filled by Measure
};

// Runs the subjects of a section in turn, so many times, with their new folders in `folder`. What
// one round left is on the disk before the next begins. It stays until the end, as many files that
// were just removed make new ones dearer, unless the section wants it otherwise.
void Measure(int rounds, const std::string& folder, Section* section);

// Frequent values and goals.
Value Ratio(const std::string& above, const std::string& below);
Value PeakMib(const std::string& subject);
Value CpuSeconds(const std::string& subject);
Value ElapsedSeconds(const std::string& subject);
Goal AtLeast(double limit, const std::string& where = "");
Goal AtMost(double limit, const std::string& where = "");

}  // namespace bench
