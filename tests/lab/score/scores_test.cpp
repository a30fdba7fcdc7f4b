// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/score/scores.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "lab/tool/text_file.h"

namespace lab {
namespace {

constexpr int kNone = -1;

// A run whose frame n has a box 10 wide and high with its left upper corner at (left[n], 0).
std::vector<FrameReport> RunOf(const std::vector<int>& left) {
    std::vector<FrameReport> run;
    for (int n = 0; const int x : left) {
        FrameReport report{n++, std::nullopt};
        if (x != kNone) report.box = Box{x, 0, x + 9, 9};
        run.push_back(report);
    }
    return run;
}

std::map<std::string, std::string> Texts(const Counts& counts) {
    std::map<std::string, std::string> texts;
    for (const ScoreRow& row : ScoreTable()) texts[row.name] = ScoreText(row.value(counts));
    return texts;
}

// Two ranges, one with an ignored frame inside, worked out by hand.
TEST(Scores, AreThoseWorkedOutByHand) {
    const Labels labels = ParseLabels(
        "first,last,left,top,right,bottom,what\n"
        "2,3,0,0,9,9,motion\n"
        "4,6,5,0,14,9,motion\n"
        "4,4,20,0,29,9,motion\n"
        "5,5,,,,,ignore\n"
        "9,10,,,,,motion\n",
        "test");
    //                          0      1      2      3  4  5   6      7   8      9      10
    const auto run = RunOf({kNone, 50, kNone, 0, 5, 99, kNone, 7, kNone, kNone, kNone});
    const Judgement judged = Judge(run, &labels, {});
    EXPECT_EQ(judged.strip, ".fmhhimf.mm");
    const auto texts = Texts(judged.counts);
    EXPECT_EQ(texts.at("hits"), "2");
    EXPECT_EQ(texts.at("misses"), "4");
    EXPECT_EQ(texts.at("false_frames"), "2");
    EXPECT_EQ(texts.at("quiet_frames"), "2");
    EXPECT_EQ(texts.at("recall"), "0.3333");
    EXPECT_EQ(texts.at("precision"), "0.5");
    EXPECT_EQ(texts.at("f1"), "0.4");
    EXPECT_EQ(texts.at("false_per_1000"), "500");
    EXPECT_EQ(texts.at("ranges"), "2");
    EXPECT_EQ(texts.at("ranges_found"), "1");
    EXPECT_EQ(texts.at("delay_median"), "1");
    EXPECT_EQ(texts.at("iou"), "1");
    // Frame 3: 1. Frame 4: 10 of the 25 columns from 5 to 29.
    EXPECT_EQ(texts.at("iou_all"), "0.7");
    EXPECT_EQ(texts.at("on_target"), "1");
    EXPECT_EQ(texts.at("motion_frames"), "5");
    EXPECT_EQ(texts.at("longest_gap"), "1");
    // Pairs 3-4 (overlap 5 of 15) and 4-5 (none).
    EXPECT_EQ(texts.at("jumps_per_100"), "100");
}

TEST(Scores, BoxesAreCarriedToInputPixels) {
    const Labels labels = ParseLabels("0,0,20,0,39,29,motion", "test");
    const Judgement judged = Judge(RunOf({10}), &labels, {{640, 360}, {320, 120}});
    EXPECT_EQ(Texts(judged.counts).at("iou"), "1");
}

TEST(Scores, WithoutLabelsOnlyMotionCounts) {
    const Judgement judged = Judge(RunOf({kNone, 0, 0, kNone, kNone, 40}), nullptr, {});
    EXPECT_EQ(judged.strip, "-rr--r");
    const auto texts = Texts(judged.counts);
    EXPECT_EQ(texts.at("recall"), "");
    EXPECT_EQ(texts.at("hits"), "");
    EXPECT_EQ(texts.at("longest_gap"), "2");
    EXPECT_EQ(texts.at("jumps_per_100"), "0");
}

// A range that begins before the run and one after it: only what was run is judged.
TEST(Scores, OnlyFramesOfTheRunAreJudged) {
    std::vector<FrameReport> run = RunOf({0, 0, kNone});
    for (FrameReport& report : run) report.frame += 10;
    const Labels labels = ParseLabels("0,11,,,,,motion\n13,20,,,,,motion\n", "test");
    const auto texts = Texts(Judge(run, &labels, {}).counts);
    EXPECT_EQ(texts.at("ranges"), "1");
    EXPECT_EQ(texts.at("delay_longest"), "0");
    EXPECT_EQ(texts.at("recall"), "1");
}

// A walker hidden by a tree for some frames is still in one range, found once.
TEST(Scores, IgnoredFramesDoNotEndARange) {
    const Labels labels =
        ParseLabels("0,1,,,,,motion\n2,3,,,,,ignore\n4,5,,,,,motion\n6,6,,,,,ignore\n", "test");
    const auto texts = Texts(Judge(RunOf({kNone, kNone, 0, 0, kNone, 0, 0}), &labels, {}).counts);
    EXPECT_EQ(texts.at("ranges"), "1");
    EXPECT_EQ(texts.at("ranges_found"), "1");
    EXPECT_EQ(texts.at("delay_longest"), "3");
    EXPECT_EQ(texts.at("quiet_frames"), "0");
}

TEST(Scores, ClipsAddUp) {
    const Labels moving = ParseLabels("1,2,,,,,motion", "test");
    const Labels still;
    Counts total = Judge(RunOf({kNone, 0, 0}), &moving, {}).counts;
    total += Judge(RunOf({kNone, kNone, kNone, 5}), &still, {}).counts;
    const auto texts = Texts(total);
    EXPECT_EQ(texts.at("recall"), "1");
    EXPECT_EQ(texts.at("false_per_1000"), "200");
    EXPECT_EQ(texts.at("frames"), "7");
}

TEST(Scores, EachIsDefinedInTheDocs) {
    const std::string docs = ReadTextFile(MD_SOURCE_DIR "/docs/scores.md");
    for (const ScoreRow& row : ScoreTable()) {
        EXPECT_NE(docs.find(std::string("`").append(row.name).append("`")), docs.npos) << row.name;
    }
}

}  // namespace
}  // namespace lab
