// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a report says, held against what MD itself writes and logs of the same run: dumps of luma,
// vectors, distances and masks, and the two result lines of each frame.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <sstream>

#include "lab/dumps/run.h"
#include "lab/report/report.h"
#include "tests/lab/report/page_reader.h"
#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

struct Case {
    const char* name;
    SquaresClip clip;
    int width, height;
    const char* settings;
};

const SquaresClip kWalk{.nFrames = 70, .nSquares = 2, .nSpeed = 4, .nStop = 50, .nNoise = 3};
const SquaresClip kBoil{.nFrames = 40, .nSquares = 3, .nBoil = 1, .nNoise = 6};
const SquaresClip kStorm{.nFrames = 40,
                         .nSquares = 3,
                         .nSpeed = 7,
                         .nBoil = 3,
                         .nStop = 30,
                         .nFrom = 6,
                         .nTo = 34,
                         .nNoise = 9};
const SquaresClip kFlicker{.nFrames = 30, .nSquares = 2, .nSpeed = 3, .nNoise = 2, .nFlicker = 9};
const SquaresClip kSoft{
    .nFrames = 40, .nSquares = 2, .nSpeed = 3, .nFrom = 4, .nContrast = 60, .nNoise = 12};
const SquaresClip kMurmur{
    .nFrames = 60, .nSquares = 3, .nSize = 48, .nBoil = 1, .nContrast = 90, .nNoise = 2};
const SquaresClip kNoise{.nFrames = 20, .nSquares = 1, .nNoise = 12};
const SquaresClip kStill{.nFrames = 20, .nSquares = 1};

const Case kCases[] = {
    {"method 0 with the gate", kWalk, 160, 96,
     "MD_PostProcMethod = 0\nMD_HogNormalizeMode = 0\nMD_ShiftMetric2_Th = 8\nMD_Bbox_PP_Enable = "
     "1\n"},
    {"method 0, reference at 1, padding 0", kStorm, 128, 96,
     "MD_PostProcMethod = 0\nMD_RefFrmIdx = 1\nMD_Padding_Method = 0\nMD_BlkCnt_Th = 2\n"},
    {"method 0, one needed", kSoft, 96, 64,
     "MD_PostProcMethod = 0\nMD_RefFrmIdx = 1\nMD_BlkCnt_Th = 1\nMD_HogNormalizeMode = 0\n"
     "MD_ShiftMetric2_Th = 8\nMD_LowDelayEn = 0\n"},
    {"method 1, running threshold", kBoil, 160, 96,
     "MD_PostProcMethod = 1\nMD_HogDist_AvgYDiffCalc_Method = 1\nMD_Padding_Method = 1\n"},
    {"method 1 with the gate, threshold of the last frame", kFlicker, 160, 96,
     "MD_PostProcMethod = 1\nMD_HogDist_AvgYDiffCalc_Method = 2\nMD_Bbox_PP_Enable = 1\n"
     "MD_Bbox_PP_Window = 3\nMD_RefFrmIdx = 2\n"},
    {"method 2", kWalk, 160, 96,
     "MD_PostProcMethod = 2\nMD_HogNormalizeMode = 0\nMD_ShiftMetric2_Th = 7\nMD_RefFrmIdx = 1\n"},
    {"method 2, rough", kStorm, 160, 96, "MD_PostProcMethod = 2\nMD_HogNormalizeMode = 2\n"},
    {"method 3, luma check", kFlicker, 160, 96,
     "MD_PostProcMethod = 3\nMD_HogDistAvailCheck = 1\nMD_HogDist_WeightMethod = 1\n"},
    {"method 3, correlation off", kStorm, 96, 96,
     "MD_PostProcMethod = 3\nMD_NeighborCorrelation = 0\nMD_HogCellSize = 8\nMD_Bbox_PP_Enable = "
     "1\n"},
    {"isolated ones that jump", kMurmur, 160, 96,
     "MD_PostProcMethod = 1\nMD_ActNeighborBlkCntTh = 9\nMD_ActBlkRepeatFrmCntTh = 2\n"
     "MD_HogDist_Th_highActiveAdj_scale = 31\nMD_HogNormalizeMode = 0\nMD_ShiftMetric2_Th = 8\n"
     "MD_HogDist_Th = 20\nMD_LowDelayEn = 0\n"},
    {"aspect too free, weak score", kSoft, 160, 96,
     "MD_PostProcMethod = 0\nMD_RefFrmIdx = 1\nMD_BlkCnt_Th = 1\nMD_HogNormalizeMode = 0\n"
     "MD_ShiftMetric2_Th = 7\nMD_Bbox_PP_Enable = 1\nMD_Bbox_PP_Window = 1\n"
     "MD_PP_Area_Converge_Thresh = 255\nMD_PP_Aspect_Converge_Thresh = 0.1\n"},
    {"method 1, weak", kNoise, 160, 96,
     "MD_PostProcMethod = 1\nMD_RefFrmIdx = 1\nMD_HogNormalizeMode = 0\nMD_ShiftMetric2_Th = 6\n"
     "MD_NeighborCorrelation = 0\n"},
    {"a box beyond the frame", kBoil, 144, 96,
     "MD_PostProcMethod = 3\nMD_HogBlockStride = 64\nMD_Bbox_PP_Enable = 1\n"
     "MD_Bbox_PP_Window = 2\nMD_NeighborCorrelation = 0\n"},
    {"isolated ones", kBoil, 160, 96,
     "MD_PostProcMethod = 0\nMD_ActNeighborBlkCntTh = 6\nMD_ActBlkRepeatFrmCntTh = 5\n"
     "MD_HogDist_Th_highActiveAdj_scale = 31\nMD_HogNormalizeMode = 0\nMD_ShiftMetric2_Th = 8\n"
     "MD_HogDist_Th = 60\n"},
    {"compared with itself", kWalk, 96, 64, "MD_RefFrmIdx = 0\nMD_PostProcMethod = 3\n"},
    {"no motion, stride 64", kStill, 208, 144, "MD_HogBlockStride = 64\nMD_PostProcMethod = 0\n"},
    {"stride 24, odd size", kStorm, 131, 97, "MD_HogBlockStride = 24\nMD_PostProcMethod = 1\n"},
};

// The reported boxes of a log.
struct LoggedFrame {
    int motion, objects;
    std::array<int, 4> before, after;  // left, right, top, bottom
};

std::vector<LoggedFrame> ReadLog(const std::string& log) {
    std::vector<LoggedFrame> frames;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);) {
        LoggedFrame f{};
        auto& b = f.before;
        int valid = 0;
        if (std::sscanf(line.c_str(), "MotionDetected=%d, objNum=%d, (%d, %d, %d, %d, %d)",
                        &f.motion, &f.objects, &valid, &b[0], &b[1], &b[2], &b[3]) == 7) {
            frames.push_back(f);
        }
        if (frames.empty()) continue;
        auto& a = frames.back().after;
        (void)std::sscanf(line.c_str(), "PP_V2: l,r,t,b = %d,%d,%d,%d", &a[0], &a[1], &a[2], &a[3]);
    }
    return frames;
}

std::array<int, 4> BoxOf(const PageFrame& frame, const std::string& which) {
    std::array<int, 4> box{};
    const char* sides[] = {"_left", "_right", "_top", "_bottom"};
    for (size_t i = 0; i < 4; ++i) box[i] = frame.columns.at(which + sides[i]);
    return box;
}

constexpr std::array<int, 4> kNone = {-1, -1, -1, -1};

bool InMask(int outcome) {
    static const std::set<int> kActive = {2, 6, 7, 8, 9, 10, 12, 15, 17};
    return kActive.contains(outcome);
}

// Everything that was seen in all cases.
struct Seen {
    std::set<int> outcomes, reasons, gates, cases;
};
Seen seen;

void ExpectBlocks(const PageFrame& frame, const lab::Frame& dumped) {
    ASSERT_TRUE(frame.has_blocks);
    int active = 0;
    for (size_t i = 0; i < dumped.Blocks(); ++i) {
        const int outcome = frame.outcome[i];
        seen.outcomes.insert(outcome);
        active += InMask(outcome) ? 1 : 0;
        ASSERT_EQ(outcome <= 1 ? 0 : frame.distance[i], dumped.values[lab::kDistance][i]) << i;
        ASSERT_EQ(InMask(outcome), dumped.values[lab::kActive][i] != 0) << i << ": " << outcome;
        if (outcome >= kNoChange && outcome <= kBelowAlone) {
            ASSERT_EQ(outcome == kNoChange, frame.distance[i] == 0) << i << ": " << outcome;
        }
        ASSERT_EQ(frame.luma[i], dumped.values[lab::kLuma][i]) << i;
        const auto vector = frame.vectors.find(static_cast<int>(i));
        ASSERT_TRUE(vector != frame.vectors.end() || frame.distance[i] == 0) << i;
        if (vector == frame.vectors.end()) continue;
        for (size_t k = 0; k < 10; ++k) {
            ASSERT_EQ(vector->second[k], dumped.values[lab::kVector][i * 10 + k]) << i << "." << k;
        }
    }
    EXPECT_EQ(frame.columns.at("active"), active);
}

std::string Numbered(char letter, int k) {
    std::string name(1, letter);
    return name += std::to_string(k);
}

void ExpectColumns(const PageFrame& frame, const LoggedFrame& logged) {
    EXPECT_EQ(frame.columns.at("motion"), logged.motion);
    EXPECT_EQ(BoxOf(frame, "before"), logged.objects > 0 ? logged.before : kNone);
    // A held or missing box is logged as zeros.
    const std::array<int, 4> zero{};
    EXPECT_EQ(BoxOf(frame, "after"), logged.after == zero ? kNone : logged.after);
    int sum = 0, classes = 0;
    for (int k = 0; k < 20; ++k) sum += frame.columns.at(Numbered('o', k));
    for (int k = 0; k < 17; ++k) classes += frame.columns.at(Numbered('d', k));
    EXPECT_EQ(sum, static_cast<int>(frame.outcome.size()));
    EXPECT_EQ(classes, sum);
    seen.reasons.insert(frame.columns.at("reason"));
    seen.gates.insert(frame.columns.at("gate"));
    for (const int value : frame.cases) seen.cases.insert(value);
}

// The reason must say the same as the box.
void ExpectReason(const PageFrame& frame) {
    static const std::set<int> kMotion = {10, 20, 30, 40};
    const int reason = frame.columns.at("reason");
    if (reason != 1) {
        EXPECT_EQ(kMotion.contains(reason), frame.columns.at("motion") == 1);
    }
    const int gate = frame.columns.at("gate");
    if (gate >= 1 && gate <= 5) {
        EXPECT_EQ(BoxOf(frame, "after"), kNone);
    } else if (gate == 6 || gate == 7) {
        EXPECT_NE(BoxOf(frame, "after"), kNone);
    }
    if (reason == 10) {
        EXPECT_EQ(frame.columns.at("p0"), frame.columns.at("counted"));
    }
}

void RunCase(const Case& t) {
    const TempFolder folder;
    WriteAll(folder / "in.yuv", SquaresBytes(t.clip, t.width, t.height));
    WriteAll(folder / "a.cfg", BaseConfig(t.width, t.height) + t.settings);
    const Outcome run = RunMd(folder.Path(), {"-d", "a.cfg", "-p", "MD_DbgEn=0x60"});
    ASSERT_EQ(run.nExit, 0) << run;
    const std::vector<LoggedFrame> log = ReadLog(run.sOut);
    const lab::Run dumps = lab::OpenRun((folder / "out").string());

    lab::ReportRequest request;
    request.out = (folder / "report.html").string();
    request.arguments = {"-d", (folder / "a.cfg").string()};
    request.quiet = true;
    ASSERT_EQ(lab::MakeReport(request, kStubPage), 0);
    const std::vector<PageFrame> frames = ReadPage(request.out).Frames();
    ASSERT_EQ(frames.size(), log.size());
    for (size_t f = 0; f < frames.size(); ++f) {
        SCOPED_TRACE(testing::Message() << "frame " << f);
        const auto dumped = lab::LoadFrame(dumps, static_cast<int64_t>(f));
        ASSERT_TRUE(dumped.has_value());
        ASSERT_NO_FATAL_FAILURE(ExpectBlocks(frames[f], *dumped));
        ExpectColumns(frames[f], log[f]);
        ExpectReason(frames[f]);
        if (testing::Test::HasFailure()) return;
    }
}

std::set<int> Missing(const std::set<int>& all, const std::set<int>& found) {
    std::set<int> missing;
    for (const int n : all) {
        if (!found.contains(n)) missing.insert(n);
    }
    return missing;
}

TEST(ReportData, EqualsDumpsAndLogAndReachesEveryReason) {
    const std::string path = std::getenv("PATH");
    setenv("PATH", "/nowhere", 1);  // no ffmpeg: the pictures are none of this test's matter
    for (const Case& t : kCases) {
        SCOPED_TRACE(t.name);
        RunCase(t);
    }
    setenv("PATH", path.c_str(), 1);
    std::set<int> outcomes;
    for (int k = 0; k < 20; ++k) outcomes.insert(k);
    EXPECT_EQ(Missing(outcomes, seen.outcomes), std::set<int>{});
    // 32 and 35 need what no real run gives; projection_box_test.cpp reaches them.
    EXPECT_EQ(Missing({1, 10, 11, 12, 20, 21, 22, 23, 30, 31, 33, 34, 40, 41, 42}, seen.reasons),
              std::set<int>{});
    EXPECT_EQ(Missing({0, 1, 2, 3, 4, 5, 6, 7, 8}, seen.gates), std::set<int>{});
    EXPECT_EQ(Missing({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, seen.cases), std::set<int>{});
}

}  // namespace
