// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Every value of every file, changed in one place, must be named at that place.
#include <gtest/gtest.h>

#include "lab/compare/compare_runs.h"
#include "lab/dumps/readers.h"
#include "lab/tool/error.h"
#include "tests/lab/support/dump_writer.h"
#include "tests/support/files.h"

namespace {

using lab::Comparison;
using lab::FileKind;
using lab::Frame;

// Two equal runs in folders "golden" and "rtl"; a test then spoils the second.
class Planted : public testing::Test {
  protected:
    void SetUp() override {
        WriteRun(golden_, frames_);
        WriteRun(rtl_, frames_);
    }

    // Writes the files of that kind for the run, with `frame` in place of the frame of its number.
    void Write(FileKind kind, const Frame& frame) {
        lab::Run run;
        run.feature = rtl_.string();
        std::string text;
        for (const Frame& f : frames_) {
            const Frame& shown = f.index == frame.index ? frame : f;
            if (IsRunning(kind)) text += DumpText(shown, kind);
        }
        WriteAll(run.PathOf(kind, frame.index), IsRunning(kind) ? text : DumpText(frame, kind));
    }

    Comparison Compare() {
        lab::CompareOptions options;
        options.golden = golden_.string();
        options.other = rtl_.string();
        options.quiet = true;
        return lab::CompareRuns(options, nullptr);
    }

    const TempFolder folder_;
    const fs::path golden_ = folder_ / "golden", rtl_ = folder_ / "rtl";
    // More than 16 columns and 10 frames, so that bases and numberings matter.
    const std::vector<Frame> frames_ = SomeRun(12, 18, 3, 4);
};

lab::Field MainOf(lab::Field field) {
    switch (field) {
        case lab::kCellData:
            return lab::kVector;
        case lab::kReferenceCellData:
            return lab::kReferenceVector;
        case lab::kDistanceRepeat:
            return lab::kDistance;
        case lab::kActiveRepeat:
            return lab::kActive;
        default:
            return field;
    }
}

TEST_F(Planted, EachValueOfEachBlockFileIsNamed) {
    for (int k = 0; k < lab::kObjectFile; ++k) {
        const auto kind = static_cast<FileKind>(k);
        for (const lab::Field field : lab::FieldsOf(kind)) {
            const int width = lab::Info(field).per_block;
            for (int element = 0; element < width; ++element) {
                const int x = (7 * element + 3 * k + 16) % 18, y = element % 3;
                Frame frame = frames_[static_cast<std::size_t>((element + k) % 12)];
                auto& value =
                    frame.values[field][static_cast<std::size_t>((y * 18 + x) * width + element)];
                const int before = value;
                value = static_cast<uint16_t>(value ^ 1);
                Write(kind, frame);
                const Comparison c = Compare();
                SCOPED_TRACE(std::string(KindName(kind)) + " " + lab::ValueName(field, element));
                ASSERT_EQ(c.Status(), lab::kDiffer);
                ASSERT_EQ(c.first.size(), 1U);
                const lab::Difference& d = c.first.front();
                EXPECT_EQ(d.frame, frame.index);
                EXPECT_EQ(d.stage, lab::Info(field).stage);
                EXPECT_EQ(d.field, MainOf(field));
                EXPECT_EQ(d.element, element);
                EXPECT_EQ(d.x, x);
                EXPECT_EQ(d.y, y);
                EXPECT_EQ(d.golden, before);
                EXPECT_EQ(d.other, before ^ 1);
                // Only that file, with its number as the file counts.
                const std::string name = lab::NameSources(d.shown, d.frame);
                EXPECT_TRUE(name.find(KindName(kind)) != std::string::npos) << name;
                EXPECT_TRUE(name.find(',') == std::string::npos) << name;
                Write(kind, frames_[static_cast<std::size_t>(frame.index)]);
            }
        }
    }
    EXPECT_EQ(Compare().Status(), lab::kSame);
}

TEST_F(Planted, EachValueOfABoxIsNamed) {
    for (int element = 0; element < 6; ++element) {
        lab::ObjectReport report = *frames_[5].report;
        lab::Box& box = report.boxes.front();
        int* const values[] = {
            &report.motion_detected, &report.count, &box.left, &box.top, &box.right, &box.bottom};
        *values[element] += 3;
        Frame frame = frames_[5];
        frame.report = report;
        Write(lab::kObjectFile, frame);
        const Comparison c = Compare();
        ASSERT_EQ(c.first.size(), 1U);
        EXPECT_EQ(c.first.front().frame, 5);
        EXPECT_EQ(c.first.front().stage, lab::kStageBox);
        EXPECT_EQ(c.first.front().element, element);
        EXPECT_EQ(c.first.front().other - c.first.front().golden, 3);
        EXPECT_EQ(c.blocks[lab::kStageBox], 1);
    }
    // Boxes that the count does not own up to.
    Frame frame = frames_[5];
    frame.report->boxes.push_back({1, 2, 3, 4});
    Write(lab::kObjectFile, frame);
    EXPECT_EQ(NameOf(Compare().first.front()), "number of boxes in the list");
}

TEST_F(Planted, TheEarliestStageOfTheEarliestFrameLeads) {
    const auto spoil = [this](FileKind kind, int64_t index, lab::Field field, std::size_t at) {
        Frame frame = frames_[static_cast<std::size_t>(index)];
        frame.values[field][at] ^= 4;
        Write(kind, frame);
    };
    spoil(lab::kGoldenFile, 7, lab::kLuma, 0);
    spoil(lab::kDistFile, 4, lab::kActive, 3);
    spoil(lab::kHogDistTextFile, 4, lab::kDistance, 30);
    spoil(lab::kFullCsvFile, 4, lab::kVector, 10 * 50 + 9);
    Comparison c = Compare();
    ASSERT_EQ(c.first.size(), 4U);
    EXPECT_EQ(c.first[0].frame, 4);
    EXPECT_EQ(NameOf(c.first[0]), "y moment of the block");
    EXPECT_EQ(c.first[0].x, 50 % 18);
    EXPECT_EQ(NameOf(c.first[1]), "distance");
    EXPECT_EQ(NameOf(c.first[2]), "active flag");
    EXPECT_EQ(c.first[3].frame, 7);
    ASSERT_EQ(c.frame_counts.size(), 2U);
    EXPECT_EQ(c.frame_counts[0].blocks, 3);
    EXPECT_EQ(c.blocks[lab::kStageVector], 1);
    EXPECT_EQ(c.blocks[lab::kStageLuma], 1);
    // Files that show the value rightly are said to disagree.
    EXPECT_EQ(lab::NameSources(c.first[0].same, 4),
              "hogmd_golden.txt, 0005_HOGCur.txt, 0005_Full.json");

    // With the choice narrowed, what is left leads.
    lab::CompareOptions options;
    options.golden = golden_.string();
    options.other = rtl_.string();
    options.quiet = true;
    options.first_frame = 5;
    EXPECT_EQ(lab::CompareRuns(options, nullptr).first.front().frame, 7);
    options.first_frame = 0;
    options.all_stages = false;
    options.stages = {};
    options.stages[lab::kStageActive] = true;
    c = lab::CompareRuns(options, nullptr);
    EXPECT_EQ(c.first.size(), 1U);
    EXPECT_EQ(NameOf(c.first.front()), "active flag");
}

// The same place shown by all files counts as one block.
TEST_F(Planted, FilesThatShowTheSameCountOnce) {
    std::vector<Frame> spoiled = frames_;
    spoiled[3].values[lab::kVector][10 * 20 + 2] ^= 1;
    spoiled[3].values[lab::kCellData][8 * 20 + 2] ^= 1;
    WriteRun(rtl_, spoiled);
    const Comparison c = Compare();
    ASSERT_EQ(c.first.size(), 1U);
    EXPECT_EQ(c.blocks[lab::kStageVector], 1);
    EXPECT_EQ(c.first.front().same, 0);
    EXPECT_EQ(lab::NameSources(c.first.front().shown, 3),
              "hogmd_golden.txt, 0004_HOGCur.txt, 0004_Full.json, 0004_Full.csv");
}

}  // namespace
