// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/show/show.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "lab/commands.h"
#include "lab/tool/error.h"
#include "tests/lab/support/dump_writer.h"
#include "tests/support/files.h"

namespace {

// What `mdlab` prints for a command line, or its message.
std::string Answer(const std::string& line) {
    int status = lab::kTrouble;
    const std::unique_ptr<CLI::App> app = lab::MakeApp(&status);
    testing::internal::CaptureStdout();
    std::string message;
    try {
        app->parse(line, false);
        EXPECT_EQ(status, lab::kSame);
    } catch (const lab::Error& error) {
        message = error.what();
    } catch (const CLI::ParseError& error) {
        message = error.what();
    }
    const std::string printed = testing::internal::GetCapturedStdout();
    return message.empty() ? printed : message;
}

class Show : public testing::Test {
  protected:
    // 5 x 4 blocks; frame 2 has three distances and its file numbers say 0003.
    void SetUp() override {
        frames_ = SomeRun(4, 5, 4, 1);
        lab::Frame& frame = frames_[2];
        frame.values[lab::kDistance] = {0, 0, 0,   0, 0, 0, 29, 28, 0, 0,
                                        0, 0, 171, 0, 0, 0, 0,  0,  0, 0};
        frame.values[lab::kActive] = {0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0};
        frame.values[lab::kDistanceRepeat] = frame.values[lab::kDistance];
        frame.values[lab::kActiveRepeat] = frame.values[lab::kActive];
        frame.report = {1, 1, {{8, 12, 24, 32}}};
        WriteRun(folder_ / "HOG_feature", frames_);
    }
    std::string Run(const std::string& arguments) {
        return Answer("show " + folder_.Path().string() + " " + arguments);
    }

    TempFolder folder_;
    std::vector<lab::Frame> frames_;
};

TEST_F(Show, DrawsAFrameWithItsBox) {
    EXPECT_EQ(Run("2 --width 20"),
              "frame 2 (files 0003_*)   5 x 4 blocks   active 3   box 8..24, 12..32\n"
              "distance 0..171, largest at x 2, y 2\n"
              "  0\n"
              "0 . . . . .\n"
              "   +---+\n"
              "1 .|1 1|. .\n"
              "2 .|. 7|. .\n"
              "3 .|. .|. .\n"
              "   +---+\n"
              ". is 0, 1 to 9 are ninths of 255\n");
    // At twice the stride the box covers the first two blocks of each axis.
    EXPECT_NE(Run("2 --width 20 --stride 16").find("1|. 1|1 . .\n +---+"), std::string::npos);
    EXPECT_NE(Run("2 --values active").find("2 .|. 1|. .\n"), std::string::npos);
    EXPECT_NE(Run("2 --values luma").find("\nmean luma "), std::string::npos);
}

// The stride follows from the size in a video's name: 5 blocks of 16 at steps of 24 in 112 pixels.
TEST_F(Show, TakesTheStrideFromTheVideos) {
    WriteAll(folder_ / "ScaledInput_112x88_P420.yuv", "");
    EXPECT_NE(Run("2 --block 4,3").find("pixels 96..111, 72..87\n"), std::string::npos);
}

TEST_F(Show, ListsABlockAndTheFramesBefore) {
    const std::string text = Run("3 --block 2,1 --before 2");
    EXPECT_EQ(text.substr(0, text.find('\n')),
              "frame 3 (files 0004_*)   block x 2, y 1   pixels 16..31, 8..23 at stride 8");
    const auto row = [&](const std::string& name, lab::Field field, int element) {
        std::string values;
        for (const std::size_t i : {3, 2, 1}) {
            const std::string value = std::to_string(frames_[i].At(field, 2, 1, element));
            values += std::string(6 - value.size(), ' ') + value;
        }
        const std::size_t at = text.find("\n" + name + " ");
        if (at == std::string::npos) return testing::AssertionFailure() << "no row " << name;
        const std::string line = text.substr(at + 1, text.find('\n', at + 1) - at - 1);
        return line.ends_with(values) ? testing::AssertionSuccess()
                                      : testing::AssertionFailure() << line;
    };
    EXPECT_TRUE(row("mean luma", lab::kLuma, 0));
    EXPECT_TRUE(row("y moment of cell 2", lab::kVector, 6));
    EXPECT_TRUE(row("x moment of the block of the reference", lab::kReferenceVector, 8));
    EXPECT_TRUE(row("length class", lab::kLength, 0));
    EXPECT_TRUE(row("distance", lab::kDistance, 0));
    EXPECT_TRUE(row("active flag", lab::kActive, 0));
}

TEST_F(Show, NamesWhatIsNotThere) {
    const std::string run = folder_.Path().string();
    EXPECT_EQ(Run("2 --values dark"), "--values: dark not in {distance,active,luma}");
    EXPECT_EQ(Run("4"), run + ": no frame 4, there are 0 to 3");
    EXPECT_EQ(Run("2 --block 5,0"), run + ": block 5,0 is outside: frame 2 has 5 x 4 blocks");
    EXPECT_EQ(Run("2 --block 0,-1"), run + ": block 0,-1 is outside: frame 2 has 5 x 4 blocks");
    const std::string file = (folder_ / "HOG_feature/hogmd_dist.txt").string();
    EXPECT_EQ(Answer("show " + file + " 2 --values luma"),
              file + ": no mean luma of frame 2: MD_DbgEn with 32 in it dumps it");
    EXPECT_NE(Answer("show " + file + " 2 --block 1,1").find("\ndistance"), std::string::npos);
}

}  // namespace
