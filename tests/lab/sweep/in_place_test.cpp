// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Points read the converted clip in place. Each must report what a plain run from the clip reports.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "lab/settings/settings.h"
#include "lab/sweep/job.h"
#include "lab/sweep/md_process.h"
#include "lab/sweep/run_store.h"
#include "lab/tool/digest.h"
#include "lab/tool/temp_folder.h"

namespace fs = std::filesystem;

namespace lab {
namespace {

const std::string kSettings =
    "MD_HogMethod = 1 MD_MetricMode = 2 MD_HogGradX = \"-1,-2,0,2,1\" FramesToBeProcessed = -1\n"
    "MD_HogGradY = \"-1,-2,0,2,1\" MD_ShiftMetric2_Th = 8 MD_RefFrmIdx = 1 StartFrameIdx = 3\n";

struct Case {
    const char *name, *clip, *input, *size;
};

class InPlace : public testing::TestWithParam<Case> {};

TEST_P(InPlace, ReportsWhatAPlainRunReports) {
    const Case& tried = GetParam();
    if (!fs::exists(fs::path(MD_PROGRAM).parent_path() / "ffmpeg")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    const auto at = [&](const std::string& name) { return folder.Path() + "/" + name; };
    const std::string make = std::string("cd ") + folder.Path() + " && " + MAKE_CLIP_PROGRAM +
                             " --scene two 192 128 40 two_192x128_P420.yuv labels.csv && "
                             "ffmpeg -v error -f rawvideo -pix_fmt yuv420p -s 192x128 -r 25 "
                             "-i two_192x128_P420.yuv -c:v ffv1 two.avi";
    ASSERT_EQ(std::system(make.c_str()), 0);

    const std::string settings = std::string(tried.input) + tried.size;
    const std::string input = Assignment(RowOf("InputFilePath"), at(tried.clip));
    fs::create_directory(at("plain"));
    WritePlain(at("plain.cfg"), kSettings + settings + input + "EnableBatch = 1\n" +
                                    Assignment(RowOf("OutputFilePath"), at("plain")));
    const MdOutcome plain = RunMd(MD_PROGRAM, at("plain.cfg"), folder.Path());
    ASSERT_EQ(plain.status, 0);
    ASSERT_EQ(plain.log.frames.size(), 37U);

    ChunkJob chunk;
    chunk.clip = {MD_PROGRAM,
                  DigestOfFile(MD_PROGRAM),
                  at(tried.clip),
                  DigestOfFile(at(tried.clip)),
                  settings + input +
                      "MD_HogMethod = 1 MD_MetricMode = 2 FramesToBeProcessed = 0 "
                      "EnableBatch = 1\n",
                  at("clip")};
    ConvertClip(chunk.clip);
    WorkingClip made;
    ASSERT_TRUE(ReadWorkingClip(at("clip"), &made));
    EXPECT_EQ(made.input, (FrameSize{192, 128}));
    EXPECT_EQ(made.frames, 40);
    chunk.settings = kSettings;
    chunk.runs = {{"a", ""}, {"b", "MD_RefFrmIdx = 15\n"}};
    chunk.store = at("runs");
    chunk.progress = at("progress");
    chunk.failures = at("failures");
    ASSERT_EQ(RunChunk(chunk), 0);
    RunIndex index;
    index.AddFolder(at("runs"));
    ASSERT_NE(index.Find("a"), nullptr);
    EXPECT_EQ(FramesOf(*index.Find("a")), plain.log.frames);
    ASSERT_NE(index.Find("b"), nullptr);
    EXPECT_EQ(index.Find("b")->message, "ERROR: nMD_RefFrmIdx >= 15, not supported");
}

INSTANTIATE_TEST_SUITE_P(
    Clips, InPlace,
    testing::Values(Case{"ScaledVideo", "two.avi", "InputFileType = 1\n", "MD_ScaledW = 128\n"},
                    Case{"VideoOfWorkingSize", "two.avi", "InputFileType = 1\n",
                         "MD_ScaledW = 192\n"},
                    Case{"ScaledRaw", "two_192x128_P420.yuv",
                         "InputFileType = 0 InputWidth = 192 InputHeight = 128\n",
                         "MD_ScaledW = 96 MD_Scale_KeepAspectRatio = 0 MD_ScaledH = 80\n"},
                    Case{"RawOfWorkingSizeByItsName", "two_192x128_P420.yuv", "InputFileType = 1\n",
                         "MD_ScaledW = 192\n"}),
    [](const auto& tried) { return std::string(tried.param.name); });

}  // namespace
}  // namespace lab
