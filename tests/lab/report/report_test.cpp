// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Whole reports: what is refused and how, what a page holds beside its data, and its size.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>

#include "lab/report/report.h"
#include "lab/tool/error.h"
#include "tests/lab/report/page_reader.h"
#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

constexpr int kWidth = 96;
constexpr int kHeight = 64;

// A folder with a clip and settings for it, and temporary files of its own.
class ReportFile : public testing::Test {
  protected:
    ReportFile() {
        fs::create_directory(tFolder / "tmp");
        setenv("TMPDIR", (tFolder / "tmp").c_str(), 1);
        Clip({.nFrames = 30, .nSpeed = 5, .nNoise = 4});
        WriteAll(tFolder / "a.cfg", BaseConfig(kWidth, kHeight) + "MD_RefFrmIdx = 1\n");
        request.out = tFolder / "report.html";
        request.arguments = {"-d", tFolder / "a.cfg"};
        request.quiet = true;
    }
    ~ReportFile() override {
        unsetenv("TMPDIR");
        // Whatever happened, no file is left.
        EXPECT_TRUE(fs::is_empty(tFolder / "tmp"));
        EXPECT_FALSE(fs::exists(tFolder / "out"));
        for (const auto& entry : fs::directory_iterator(tFolder.Path())) {
            EXPECT_EQ(entry.path().string().find(".part"), std::string::npos) << entry.path();
        }
    }
    void Clip(const SquaresClip& clip) {
        WriteAll(tFolder / "in.yuv", SquaresBytes(clip, kWidth, kHeight));
    }
    void Set(const std::string& assignment) {
        request.arguments.insert(request.arguments.end(), {"-p", assignment});
    }
    Page Make() {
        EXPECT_EQ(lab::MakeReport(request, kStubPage), 0);
        return ReadPage(request.out);
    }
    // The message of a report that fails; the page must then not be there.
    std::string Failure() {
        try {
            lab::MakeReport(request, kStubPage);
        } catch (const lab::Error& error) {
            EXPECT_FALSE(fs::exists(request.out));
            return error.what();
        }
        return "no failure";
    }
    int64_t Size() { return static_cast<int64_t>(fs::file_size(request.out)); }

    TempFolder tFolder;
    lab::ReportRequest request;
};

TEST_F(ReportFile, RefusalsOfMdReachTheUserUnchanged) {
    const std::vector<std::vector<std::string>> refused = {
        {"-d", "a.cfg", "-p", "MD_HogBlockSize=32"},
        {"-d", "a.cfg", "-p", "InputFilePath=missing.yuv"},
        {"-d", "a.cfg", "-p", "MD_HogDist_Th=300"},
        {"-d", "a.cfg", "-p", "NoSuchKey=3"},
        {"-d", "missing.cfg"},
        {"-h"},
    };
    const fs::path before = fs::current_path();
    fs::current_path(tFolder.Path());
    for (const auto& arguments : refused) {
        const Outcome md = RunMd(tFolder.Path(), arguments);
        request.arguments = arguments;
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = lab::MakeReport(request, kStubPage);
        const std::string err = testing::internal::GetCapturedStderr();
        const std::string out = testing::internal::GetCapturedStdout();
        EXPECT_NE(status, 0);
        EXPECT_EQ(status, md.nExit) << arguments.back();
        EXPECT_FALSE(fs::exists(request.out));
        // The usage names the program by its path, which is another one here.
        if (md.sErr.find("Usage:") == std::string::npos) {
            EXPECT_EQ(err, md.sErr);
            EXPECT_EQ(out, md.sOut);
        } else {
            EXPECT_FALSE(err.empty());
        }
    }
    fs::current_path(before);
    fs::remove_all(tFolder / "out");  // MD's own
}

TEST_F(ReportFile, HoldsHostileNamesAsText) {
    const std::string name = "a b'c\"d <script>alert(1)&.yuv";
    fs::rename(tFolder / "in.yuv", tFolder / name);
    // No setting can hold a quote, so a link leads there.
    fs::create_symlink(tFolder / name, tFolder / "in yuv");
    Set("InputFilePath=\"in yuv\"");
    const std::string title = "</script><script>alert(2)</script>";
    request.title = title;
    const Page page = Make();
    EXPECT_EQ(page.head["title"], title);
    EXPECT_EQ(page.head["clip"]["name"], "in yuv");
    const std::string text = ReadAll(request.out);
    EXPECT_EQ(text.find("<script>alert"), std::string::npos);
    EXPECT_NE(page.header.find("&lt;/script&gt;"), std::string::npos);
    EXPECT_NE(page.title.find("&lt;/script&gt;"), std::string::npos);
}

TEST_F(ReportFile, WritesInFoldersWithBlanksAndQuotes) {
    const fs::path odd = tFolder / "it's \"odd\" $HOME";
    fs::create_directory(odd);
    setenv("TMPDIR", odd.c_str(), 1);
    request.out = odd / "r.html";
    EXPECT_EQ(Make().Frames().size(), 30U);
    EXPECT_EQ(std::distance(fs::directory_iterator(odd), fs::directory_iterator()), 1);
}

TEST_F(ReportFile, SaysWhenTheClipEndsEarly) {
    Set("FramesToBeProcessed=50");
    EXPECT_NE(Make().header.find("Run ended after frame 29"), std::string::npos);
    request.arguments.resize(2);
    Set("FramesToBeProcessed=20");
    EXPECT_FALSE(Make().head["clip"]["ended_early"].get<bool>());
    request.arguments.resize(2);
    Clip({.nFrames = 3, .nTail = 100});
    EXPECT_TRUE(Make().head["clip"]["ended_early"].get<bool>());
    Set("StartFrameIdx=2");
    const Page one = Make();
    EXPECT_EQ(one.Frames().size(), 1U);
    EXPECT_EQ(one.head["clip"]["first"], 2);
    Set("StartFrameIdx=3");
    fs::remove(request.out);
    EXPECT_NE(Failure().find("not one whole frame"), std::string::npos);
}

TEST_F(ReportFile, LeavesNoHalfPageOnAFullDisk) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    // Enough for the recording, not for the page.
    for (const rlim_t bytes : {rlim_t{2000}, rlim_t{30000}}) {
        const rlimit small{bytes, limit.rlim_max};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &small);
        const std::string message = Failure();
        setrlimit(RLIMIT_FSIZE, &limit);
        EXPECT_NE(message.find("cannot be written"), std::string::npos) << message;
    }
    request.out = tFolder / "missing" / "report.html";
    EXPECT_NE(Failure().find("cannot be written"), std::string::npos);
}

TEST_F(ReportFile, TakesTheStepsOfItsBudgetInOrder) {
    Clip({.nFrames = 130, .nSquares = 2, .nSpeed = 5, .nTo = 70, .nNoise = 9});
    request.budget = 0;
    const Page whole = Make();
    ASSERT_TRUE(whole.head["left_out"].empty());
    int64_t size = Size();
    size_t steps = 0;
    std::vector<std::string> parts;
    // Each budget is one byte less than the page before, until nothing more can go.
    for (int i = 0; i < 12; ++i) {
        request.budget = size - 1;
        testing::internal::CaptureStderr();
        const Page page = Make();
        if (!testing::internal::GetCapturedStderr().empty()) break;
        EXPECT_LT(Size(), size);
        size = Size();
        ++steps;
        parts.push_back(page.head["left_out"].back()["part"]);
        EXPECT_NE(page.header.find("cell short"), std::string::npos);
        const auto& run = page.head["runs"][0];
        EXPECT_TRUE(run["vectors_of"].is_null());
        const std::vector<PageFrame> frames = page.Frames();
        if (run["has_blocks"] == "some") {
            EXPECT_TRUE(frames[40].has_blocks);
            EXPECT_FALSE(frames[120].has_blocks);
        }
        EXPECT_EQ(page.blocks.contains("md-video"), !page.head["video"].is_null());
    }
    EXPECT_GE(steps, 5U) << testing::PrintToString(parts);
    EXPECT_EQ(parts.front(), "Vectors");
    EXPECT_EQ(parts.back(), "Block values");
}

TEST_F(ReportFile, KeepsTheDetailRangeWhateverTheBudget) {
    Clip({.nFrames = 130, .nSquares = 2, .nSpeed = 5, .nTo = 40, .nNoise = 9});
    request.budget = 1;
    request.detail = lab::IndexRange{70, 72};
    testing::internal::CaptureStderr();
    const Page page = Make();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("more than the budget"),
              std::string::npos);
    const std::vector<PageFrame> frames = page.Frames();
    for (size_t f = 0; f < frames.size(); ++f) {
        EXPECT_EQ(frames[f].has_blocks, f >= 70 && f <= 72) << f;
        EXPECT_EQ(frames[f].luma.empty(), f < 60 || f >= 120) << f;
    }
    EXPECT_EQ(page.head["runs"][0]["luma_frames"], nlohmann::json({60, 119}));
    fs::remove(request.out);
    request.detail = lab::IndexRange{100, 130};
    EXPECT_NE(Failure().find("0 to 129"), std::string::npos);
}

TEST_F(ReportFile, ComparesTwoRuns) {
    request.against = {"MD_HogDist_Th=40"};
    const Page page = Make();
    const auto& head = page.head;
    ASSERT_EQ(head["runs"].size(), 2U);
    EXPECT_EQ(head["comparison"]["keys"], nlohmann::json({"MD_HogDist_Th"}));
    EXPECT_EQ(head["runs"][1]["settings"]["MD_HogDist_Th"]["value"], 40);
    EXPECT_EQ(head["runs"][1]["luma_of"], 0);
    EXPECT_EQ(head["runs"][1]["vectors_of"], 0);
    EXPECT_FALSE(page.blocks.contains("md-l1-0"));
    // The first difference and the number of frames, found once more from the masks.
    const auto a = page.Frames(0);
    const auto b = page.Frames(1);
    int frames = 0, first = -1;
    for (size_t f = 0; f < a.size(); ++f) {
        const bool differs = a[f].columns.at("active") != b[f].columns.at("active") ||
                             a[f].columns.at("after_left") != b[f].columns.at("after_left");
        frames += differs ? 1 : 0;
        if (differs && first < 0) first = static_cast<int>(f);
    }
    EXPECT_GT(frames, 0);
    EXPECT_GE(head["comparison"]["frames"], frames);
    EXPECT_LE(head["comparison"]["first"]["frame"], first);
    EXPECT_EQ(head["comparison"]["first"]["stage"], "decision");

    request.against = {"MD_HogRefMode=0"};
    EXPECT_TRUE(Make().head["comparison"]["first"].is_null());
    request.against = {"MD_Padding_Method=0"};
    EXPECT_EQ(Make().head["comparison"]["first"]["stage"], "vectors");
    request.against = {"MD_HogDist_Scale2=40"};
    EXPECT_EQ(Make().head["comparison"]["first"]["stage"], "distances");
    request.against = {"MD_Bbox_PP_Enable=1"};
    EXPECT_EQ(Make().head["comparison"]["first"]["stage"], "gate");
    fs::remove(request.out);
    for (const char* other : {"MD_HogBlockStride=16", "FramesToBeProcessed=7", "StartFrameIdx=1"}) {
        request.against = {other};
        EXPECT_NE(Failure().find("cannot be compared"), std::string::npos) << other;
    }
}

}  // namespace
