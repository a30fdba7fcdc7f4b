// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "bench/numbers/page.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace bench {

namespace {

constexpr const char* kHead =
    R"(<!-- SPDX-FileCopyrightText: 2026 the MD simulator authors -->
<!-- SPDX-License-Identifier: BSD-2-Clause -->
<!-- Written by scripts/bench.sh; its words are in bench/numbers/. Do not edit. -->

# Numbers

How fast MD and mdlab are, beside programs that one would use in their place. Times are processor
time, user and system together, of whole processes. The commands of a section ran in turn, and a
ratio was worked out within each round. A cell has the median of the rounds and, in brackets, the
lowest and the highest round. A goal is held against the median.

)";

// Median, lowest and highest of the rounds.
struct Spread {
    double median = 0, lowest = 0, highest = 0;
};

Spread SpreadOf(const Figure& figure, const std::vector<Round>& rounds) {
    std::vector<double> values;
    values.reserve(rounds.size());
    for (const Round& round : rounds) values.push_back(figure.value(round));
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return {(values[(n - 1) / 2] + values[n / 2]) / 2, values.front(), values.back()};
}

template <typename... Parts>
std::string Text(const Parts&... parts) {
    std::ostringstream text;
    (text << ... << parts);
    return text.str();
}

std::string Number(double value, int digits) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(digits) << value;
    return text.str();
}

// With a limit as short as it can be said: 3, 1.7.
std::string Words(const Goal& goal) {
    if (goal.kind == GoalKind::kNone) return "";
    return Text(goal.kind == GoalKind::kAtLeast ? "at least " : "at most ", goal.limit);
}

bool Missed(const Goal& goal, double value) {
    if (goal.kind == GoalKind::kNone) return false;
    return goal.kind == GoalKind::kAtLeast ? value < goal.limit : value > goal.limit;
}

// Empty where all rounds show the same.
std::string Range(const Spread& spread, int digits) {
    if (Number(spread.lowest, digits) == Number(spread.highest, digits)) return "";
    return Text(Number(spread.lowest, digits), " to ", Number(spread.highest, digits));
}

std::string WithRange(const Spread& spread, int digits) {
    const std::string range = Range(spread, digits);
    const std::string median = Number(spread.median, digits);
    return range.empty() ? median : Text(median, " (", range, ")");
}

// A row a figure.
std::string ListTable(const Table& table, const std::vector<Round>& rounds) {
    std::string text = Text("| ", table.head, " | median | rounds | goal |\n|---|---:|---:|---|\n");
    for (const Figure& figure : table.figures) {
        const Spread spread = SpreadOf(figure, rounds);
        text += Text("| ", figure.row, " | ", Number(spread.median, figure.digits), " | ",
                     Range(spread, figure.digits), " | ", Words(figure.goal),
                     Missed(figure.goal, spread.median) ? ", **missed**" : "", " |\n");
    }
    return text;
}

void AddOnce(const std::string& text, std::vector<std::string>* list) {
    if (std::find(list->begin(), list->end(), text) == list->end()) list->push_back(text);
}

// The goals of a column, each once.
std::string GoalsOf(const Table& table, const std::string& column) {
    std::vector<std::string> goals;
    for (const Figure& figure : table.figures) {
        if (figure.column != column || figure.goal.kind == GoalKind::kNone) continue;
        const bool everywhere = figure.goal.where.empty();
        AddOnce(Text(Words(figure.goal), everywhere ? "" : " ", figure.goal.where), &goals);
    }
    std::string text;
    for (const std::string& goal : goals) text += Text(text.empty() ? "" : ", ", goal);
    return text;
}

std::string Cell(const Figure& figure, const std::vector<Round>& rounds) {
    const Spread spread = SpreadOf(figure, rounds);
    const std::string text = WithRange(spread, figure.digits);
    return Missed(figure.goal, spread.median) ? Text("**", text, ", missed**") : text;
}

std::string MatrixRow(const Table& table, const std::string& row,
                      const std::vector<std::string>& columns, const std::vector<Round>& rounds) {
    std::string text = Text("| ", row, " |");
    for (const std::string& column : columns) {
        const auto at =
            std::find_if(table.figures.begin(), table.figures.end(),
                         [&](const Figure& f) { return f.row == row && f.column == column; });
        text += Text(" ", at == table.figures.end() ? "" : Cell(*at, rounds), " |");
    }
    return text + "\n";
}

// Rows and columns by the figures' names; a row of goals below, where there are any.
std::string MatrixTable(const Table& table, const std::vector<Round>& rounds) {
    std::vector<std::string> rows, columns;
    for (const Figure& figure : table.figures) {
        AddOnce(figure.row, &rows);
        AddOnce(figure.column, &columns);
    }
    std::string head = Text("| ", table.head, " |"), line = "|---|", goals = "| goal |";
    bool any_goal = false;
    for (const std::string& column : columns) {
        const std::string goal = GoalsOf(table, column);
        any_goal |= !goal.empty();
        head += Text(" ", column, " |");
        line += "---:|";
        goals += Text(" ", goal, " |");
    }
    std::string text = Text(head, "\n", line, "\n");
    for (const std::string& row : rows) text += MatrixRow(table, row, columns, rounds);
    return any_goal ? Text(text, goals, "\n") : text;
}

std::string SectionText(const Section& section) {
    std::string text = Text("\n## ", section.title, "\n\n", section.text);
    if (section.rounds.size() > 1) text += Text(" ", section.rounds.size(), " rounds.");
    text += "\n";
    for (const Table& table : section.tables) {
        const bool list = table.figures.front().column.empty();
        text += Text("\n",
                     list ? ListTable(table, section.rounds) : MatrixTable(table, section.rounds));
    }
    return section.after.empty() ? text : Text(text, "\n", section.after, "\n");
}

std::string MissedGoals(const std::vector<Section>& sections) {
    int goals = 0, missed = 0;
    std::string list;
    const auto add = [&](const Section& section, const Figure& figure) {
        if (figure.goal.kind == GoalKind::kNone) return;
        ++goals;
        const Spread spread = SpreadOf(figure, section.rounds);
        if (!Missed(figure.goal, spread.median)) return;
        ++missed;
        list += Text("- ", section.title, ": ", figure.row, figure.column.empty() ? "" : ", ",
                     figure.column, ": ", WithRange(spread, figure.digits), ", goal ",
                     Words(figure.goal), "\n");
    };
    for (const Section& section : sections) {
        for (const Table& table : section.tables) {
            for (const Figure& figure : table.figures) add(section, figure);
        }
    }
    if (missed == 0) return Text("All ", goals, " goals are met.\n");
    return Text(missed, " of ", goals, " goals ", missed == 1 ? "is" : "are", " missed:\n\n", list);
}

}  // namespace

std::string Page(const Facts& facts, const std::vector<Section>& sections) {
    std::string text = kHead;
    text += "| | |\n|---|---|\n";
    for (const auto& [name, value] : facts) text += Text("| ", name, " | ", value, " |\n");
    text += Text("\n", MissedGoals(sections));
    for (const Section& section : sections) text += SectionText(section);
    return text;
}

}  // namespace bench
