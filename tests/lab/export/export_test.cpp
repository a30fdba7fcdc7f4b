// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/export/export.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "lab/commands.h"
#include "lab/export/frame_items.h"
#include "lab/tool/error.h"
#include "tests/lab/export/statistics_reader.h"
#include "tests/lab/support/dump_writer.h"
#include "tests/support/files.h"

namespace {

constexpr int kColumns = 5, kRows = 4, kStride = 8, kWidth = 48, kHeight = 40;

// "" or the message of `mdlab export` with these arguments.
std::string Export(const std::vector<std::string>& arguments) {
    int status = lab::kTrouble;
    const std::unique_ptr<CLI::App> app = lab::MakeApp(&status);
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    reversed.emplace_back("export");
    testing::internal::CaptureStdout();
    std::string message;
    try {
        app->parse(reversed);
        EXPECT_EQ(status, lab::kSame);
    } catch (const lab::Error& error) {
        message = error.what();
    }
    testing::internal::GetCapturedStdout();
    return message;
}

class ExportTest : public testing::Test {
  protected:
    // Many blocks are 0, and many equal their neighbours.
    void SetUp() override {
        frames_ = SomeRun(6, kColumns, kRows, 7);
        for (lab::Frame& frame : frames_) {
            for (auto& value : frame.values[lab::kDistance]) value = value % 3 * 100;
            frame.values[lab::kDistanceRepeat] = frame.values[lab::kDistance];
        }
        frames_[3].report = {0, 0, {}};
        frames_[4].report = {1, 1, {{16, 8, kWidth, kHeight}}};
        WriteRun(folder_ / "run/HOG_feature", frames_);
        WriteAll(folder_ / "run/ScaledInput_48x40_P420.yuv", "");
    }

    std::string Path(const std::string& name) { return (folder_ / name).string(); }
    Statistics Read() { return ReadStatistics(ReadAll(folder_ / "f.csv")); }

    TempFolder folder_;
    std::vector<lab::Frame> frames_;
};

const lab::StatisticsType& TypeOf(const Statistics& file, const lab::StatisticsItem& item) {
    const auto& types = file.header.types;
    return *std::find_if(types.begin(), types.end(),
                         [&](const auto& type) { return type.id == item.type; });
}

// Every block holds its value exactly once, and blocks of 0 none.
void ExpectBlocks(const Statistics& file, const std::string& type, const lab::Frame& frame,
                  lab::Field field) {
    std::vector<uint16_t> blocks(kColumns * kRows);
    for (const lab::StatisticsItem& item : file.items) {
        const lab::StatisticsType& of = TypeOf(file, item);
        if (item.frame != frame.index || of.name != type || item.values.size() != 1) continue;
        EXPECT_NE(item.values[0], 0);
        for (int y = item.y / kStride; y < (item.y + item.height) / kStride; ++y) {
            for (int x = item.x / kStride; x < (item.x + item.width) / kStride; ++x) {
                uint16_t& block = blocks.at(static_cast<std::size_t>(y * kColumns + x));
                EXPECT_EQ(block, 0) << "covered twice";
                block = static_cast<uint16_t>(item.values[0]);
            }
        }
    }
    EXPECT_EQ(blocks, frame.values[field]) << type << " of frame " << frame.index;
}

TEST_F(ExportTest, TheFileHoldsEveryBlockAndBox) {
    ASSERT_EQ(Export({Path("run"), "--yuview", Path("f")}), "");
    const Statistics file = Read();
    EXPECT_EQ(file.header.width, kWidth);
    EXPECT_EQ(file.header.height, kHeight);
    std::map<int64_t, std::vector<lab::StatisticsItem>> lines;
    for (const lab::StatisticsItem& item : file.items) {
        if (item.values.size() == 4) lines[item.frame].push_back(item);
    }
    for (const lab::Frame& frame : frames_) {
        ExpectBlocks(file, "Distance", frame, lab::kDistance);
        ExpectBlocks(file, "Active", frame, lab::kActive);
        EXPECT_EQ(lines[frame.index].size(), frame.report->boxes.size() * 4);
    }
    // A box that ends at the frame's edge.
    const std::vector<lab::StatisticsItem> box = {
        {4, 16, 8, 32, 32, lab::kBoxType, {0, 0, 32, 0}},
        {4, 16, 8, 32, 32, lab::kBoxType, {32, 0, 32, 32}},
        {4, 16, 8, 32, 32, lab::kBoxType, {32, 32, 0, 32}},
        {4, 16, 8, 32, 32, lab::kBoxType, {0, 32, 0, 0}}};
    EXPECT_EQ(lines[4], box);
    const std::string playlist = ReadAll(folder_ / "f.yuvplaylist");
    for (const char* element :
         {"<relativePath>run/ScaledInput_48x40_P420.yuv<", "<relativePath>f.csv<",
          "<width>48</width>", "<statType3 render=\"1\" alphaFactor=\"100\">Box<"}) {
        EXPECT_NE(playlist.find(element), std::string::npos) << element;
    }
}

TEST_F(ExportTest, WithoutTheRunningFileTheFramesOwnFilesServe) {
    ASSERT_EQ(Export({Path("run"), "--yuview", Path("f")}), "");
    const std::vector<lab::StatisticsItem> whole = Read().items;
    std::filesystem::remove(folder_ / "run/HOG_feature/hogmd_dist.txt");
    ASSERT_EQ(Export({Path("run"), "--yuview", Path("f")}), "");
    EXPECT_EQ(Read().items, whole);
}

// The running file of a shorter run decides; the files of the longer one before it are still there.
TEST_F(ExportTest, LeftOverFilesAreNoFrames) {
    WriteAll(folder_ / "run/HOG_feature/hogmd_dist.txt",
             DumpText(frames_[0], lab::kDistFile) + DumpText(frames_[1], lab::kDistFile));
    ASSERT_EQ(Export({Path("run"), "--yuview", Path("f")}), "");
    EXPECT_EQ(Read().items.back().frame, 1);
}

TEST_F(ExportTest, TakesOnlyTheFramesAskedFor) {
    const auto range = [&](const std::string& frames) -> std::string {
        const std::string message =
            Export({Path("run"), "--yuview", Path("f"), "--frames=" + frames});
        if (!message.empty()) return message;
        const Statistics file = Read();
        return std::to_string(file.items.front().frame) + ".." +
               std::to_string(file.items.back().frame);
    };
    EXPECT_EQ(range("2:4"), "2..4");
    EXPECT_EQ(range(":1"), "0..1");
    EXPECT_EQ(range("5:"), "5..5");
    EXPECT_EQ(range("9:"), Path("run") + ": nothing to show: no distance, active block or box");
    EXPECT_EQ(range("4"), "4..4");
    EXPECT_EQ(range("4:2"), "--frames 4:2 ends before it begins");
    for (const std::string bad : {"x", ":", "a:b", "1:2x", "-1:2"}) {
        EXPECT_EQ(range(bad),
                  "'" + bad + "' is not of the form --frames A:B, with frames counted from 0");
    }
}

TEST_F(ExportTest, DifferencesLieOnTop) {
    const std::string map = Path("map.csv");
    WriteAll(map, "frame,column,row,stage\n2,1,3,vector\n2,2,3,vector\n2,3,3,luma\n9,0,0,luma\n");
    ASSERT_EQ(Export({Path("run"), "--yuview", Path("f"), "--map", map}), "");
    const Statistics file = Read();
    EXPECT_EQ(file.header.types[0].name, "Difference");
    std::vector<lab::StatisticsItem> differing;
    for (const lab::StatisticsItem& item : file.items) {
        if (item.type == lab::kDifferenceType) differing.push_back(item);
    }
    const std::vector<lab::StatisticsItem> expected = {
        {2, 8, 24, 16, 8, lab::kDifferenceType, {lab::kStageVector + 1}},
        {2, 24, 24, 8, 8, lab::kDifferenceType, {lab::kStageLuma + 1}}};
    EXPECT_EQ(differing, expected);
    for (const lab::Frame& frame : frames_) ExpectBlocks(file, "Distance", frame, lab::kDistance);

    WriteAll(map, "frame,column,row,stage\n2,5,3,vector\n");
    EXPECT_EQ(Export({Path("run"), "--yuview", Path("f"), "--map", map}),
              map + ": block 5,3 of frame 2 is outside the run's 5 x 4 blocks");
    WriteAll(map, "frame,column,row,stage\n2,5,vector\n");
    EXPECT_TRUE(
        Export({Path("run"), "--yuview", Path("f"), "--map", map}).starts_with(map + ":2:5: "));
}

TEST_F(ExportTest, WhatDoesNotFitIsRefusedAndLeavesNoFile) {
    const std::string run = Path("run");
    const std::string other = Path("other_64x40_P420.yuv");
    WriteAll(other, "");
    EXPECT_EQ(Export({run, "--yuview", Path("f"), "--video", other}),
              other + ": 5 x 4 blocks do not fit on its 64 x 40 pixels");
    EXPECT_EQ(Export({run, "--yuview", Path("f"), "--video", Path("none_48x40.yuv")}),
              Path("none_48x40.yuv") + ": cannot be read: No such file");
    std::filesystem::remove(folder_ / "run/ScaledInput_48x40_P420.yuv");
    EXPECT_TRUE(
        Export({run, "--yuview", Path("f")}).starts_with(run + ": no ScaledInput video there"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 2);
}

// Over patterns that meet every way of joining.
TEST(JoinEqual, CoversEachBlockOnceWithItsValue) {
    for (uint32_t pattern = 0; pattern < 6561; ++pattern) {  // 3 to the 8th
        std::vector<uint16_t> values;
        for (uint32_t i = 0, rest = pattern; i < 8; ++i, rest /= 3) {
            values.push_back(static_cast<uint16_t>(rest % 3));
        }
        for (const int columns : {1, 2, 4, 8}) {
            std::vector<uint16_t> drawn(8);
            for (const lab::BlockRectangle& r : lab::JoinEqual(values, columns, 8 / columns)) {
                for (int y = r.y; y < r.y + r.height; ++y) {
                    for (int x = r.x; x < r.x + r.width; ++x) {
                        drawn.at(static_cast<std::size_t>(y * columns + x)) += r.value;
                    }
                }
            }
            ASSERT_EQ(drawn, values) << columns;
        }
    }
    EXPECT_EQ(lab::JoinEqual(std::vector<uint16_t>(1000, 5), 40, 25).size(), 1U);
}

}  // namespace
