// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// How docs/numbers.md is measured and written: it must not hide a missed goal, nor count a start
// that is to be left out.
#include <gtest/gtest.h>

#include "bench/numbers/page.h"
#include "bench/numbers/section.h"
#include "tests/support/files.h"

namespace bench {

namespace {

Command Shell(const std::string& text, int status = 0) {
    return {{"sh", "-c", text}, status};
}

// A figure over given values, one a round.
Section OfValues(const std::vector<double>& values, const Goal& goal, const std::string& column) {
    Section section;
    section.title = "Speed";
    for (const double value : values) {
        Round round;
        round.time["it"] = value;
        section.rounds.push_back(round);
    }
    const Value value = [](const Round& round) { return round.Time("it"); };
    section.tables = {{"what", {{"a row", column, value, 1, goal}}}};
    return section;
}

bool Holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(NumbersPage, HoldsTheMedianAgainstTheGoal) {
    struct {
        std::vector<double> values;
        Goal goal;
        const char *cell, *summary;
    } const aCases[] = {
        {{9, 1, 2}, AtLeast(3), "| **2.0 (1.0 to 9.0), missed** |", "1 of 1 goals is missed"},
        {{9, 1, 3}, AtLeast(3), "| 3.0 (1.0 to 9.0) |", "All 1 goals are met"},
        {{1, 2}, AtMost(1.4), "| **1.5 (1.0 to 2.0), missed** |", "1 of 1 goals is missed"},
        {{1, 1}, AtMost(1.4), "| 1.0 |", "All 1 goals are met"},
    };
    for (const auto& t : aCases) {
        const std::string page = Page({}, {OfValues(t.values, t.goal, "a column")});
        EXPECT_TRUE(Holds(page, t.cell)) << page;
        EXPECT_TRUE(Holds(page, t.summary)) << page;
    }
    const std::string list = Page({}, {OfValues({9, 1, 2}, AtLeast(3), "")});
    EXPECT_TRUE(Holds(list, "| a row | 2.0 | 1.0 to 9.0 | at least 3, **missed** |")) << list;
    EXPECT_TRUE(Holds(list, "- Speed: a row: 2.0 (1.0 to 9.0), goal at least 3\n")) << list;
}

TEST(NumbersRounds, GiveEachSubjectANewFolderAndOthersItsName) {
    const TempFolder folder;
    Section section;
    section.subjects = {{"make", Shell("mkdir '{new}'")},
                        {"use", Shell("test -d '{of make}' && mkdir '{new}'")}};
    Measure(3, folder / "out", &section);
    EXPECT_EQ(section.rounds.size(), 3U);
    EXPECT_TRUE(fs::is_empty(folder / "out"));
}

TEST(NumbersRounds, SubtractTheStartAndDivideByUnits) {
    const TempFolder folder;
    const std::string turns = "while [ $i -lt $n ]; do i=$((i + 1)); done";
    const Command some = Shell("i=0; n=20000; " + turns), many = Shell("i=0; n=200000; " + turns);
    Section section;
    section.subjects = {
        {"whole", some}, {"more start than work", some, 1, many}, {"units", some, 1000}};
    Measure(1, folder / "out", &section);
    const Round& round = section.rounds.front();
    EXPECT_GT(round.Time("whole"), 0);
    EXPECT_LT(round.Time("more start than work"), 1e-6);
    EXPECT_GT(round.Time("more start than work"), 0);  // or ratios would be infinite
    EXPECT_DOUBLE_EQ(round.Time("units"), round.Whole("units").cpu_s / 1000);
}

TEST(NumbersRun, ThrowsWhenACommandEndsOtherwise) {
    EXPECT_THROW(bench::Run(Shell("exit 1")), std::runtime_error);
    EXPECT_THROW(bench::Run({{"/no/such/program"}}), std::runtime_error);
    EXPECT_NO_THROW(bench::Run(Shell("exit 3", 3)));
    EXPECT_EQ(OutputOf(Shell("printf '%s' a b")), "ab");
}

}  // namespace

}  // namespace bench
