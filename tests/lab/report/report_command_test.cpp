// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The command line of `mdlab report`, as a user meets it, with the page that is built in.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "lab/embedded.h"
#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

class ReportCommand : public testing::Test {
  protected:
    void SetUp() override {
        if (lab::ReportPage().empty()) GTEST_SKIP() << "built without node";
        WriteAll(tFolder / "in.yuv", SquaresBytes({.nFrames = 9, .nSpeed = 5}, 96, 64));
        WriteAll(tFolder / "a.cfg", BaseConfig(96, 64));
    }
    Outcome Report(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {MDLAB_PROGRAM, "report"});
        return RunProgram(tFolder.Path(), arguments);
    }
    TempFolder tFolder;
};

TEST_F(ReportCommand, WritesAPageThatLoadsNothing) {
    const Outcome run = Report({"--out", "r.html", "--log", "log", "--", "-d", "a.cfg"});
    EXPECT_EQ(run.nExit, 0) << run;
    EXPECT_EQ(run.sOut + run.sErr, "");
    const std::string page = ReadAll(tFolder / "r.html");
    EXPECT_NE(page.find("default-src 'none'"), std::string::npos);
    EXPECT_EQ(page.find("<!--md:"), std::string::npos);
    // The log is MD's own, for those who know it.
    const std::string log = ReadAll(tFolder / "log");
    EXPECT_NE(log.find("*****frame 8\n"), std::string::npos);
    EXPECT_NE(log.find("finish.\n"), std::string::npos);
}

TEST_F(ReportCommand, ComparesAsItsHelpSays) {
    const Outcome run = Report({"--out", "r.html", "--against", "MD_HogDist_Th=40", "--against",
                                "MD_BlkCnt_Th=2", "--", "-d", "a.cfg"});
    EXPECT_EQ(run.nExit, 0) << run;
    EXPECT_NE(ReadAll(tFolder / "r.html").find("id=\"md-f1\""), std::string::npos);
}

TEST_F(ReportCommand, RefusesWhatItCannotMean) {
    const std::vector<std::vector<std::string>> refused = {
        {"--", "-d", "a.cfg"},
        {"--out", "r.html", "--budget", "-1", "--", "-d", "a.cfg"},
        {"--out", "r.html", "--detail", "5", "--", "-d", "a.cfg"},
        {"--out", "r.html", "--detail", "7-5", "--", "-d", "a.cfg"},
        {"--out", "r.html", "--detail", "5-9", "--", "-d", "a.cfg"},
        {"--out", "missing/r.html", "--", "-d", "a.cfg"},
    };
    for (const auto& arguments : refused) {
        const Outcome run = Report(arguments);
        EXPECT_EQ(run.nExit, 2) << run;
        EXPECT_NE(run.sErr, "");
        EXPECT_FALSE(fs::exists(tFolder / "r.html"));
    }
}

TEST_F(ReportCommand, RemovesEverythingWhenInterrupted) {
    fs::create_directory(tFolder / "tmp");
    // A pipe that nobody writes to keeps the run waiting.
    ASSERT_EQ(mkfifo((tFolder / "pipe").c_str(), 0600), 0);
    setenv("TMPDIR", (tFolder / "tmp").c_str(), 1);
    const Outcome run =
        RunProgram(tFolder.Path(),
                   {"/usr/bin/timeout", "--preserve-status", "-s", "INT", "2", MDLAB_PROGRAM,
                    "report", "--out", "r.html", "--", "-d", "a.cfg", "-p", "InputFilePath=pipe"});
    unsetenv("TMPDIR");
    EXPECT_EQ(run.nExit, 130) << run;
    EXPECT_TRUE(fs::is_empty(tFolder / "tmp"));
    EXPECT_FALSE(fs::exists(tFolder / "r.html"));
}

TEST_F(ReportCommand, LeavesNothingWhereThePageFindsNoRoom) {
    fs::create_directory(tFolder / "tmp");
    setenv("TMPDIR", (tFolder / "tmp").c_str(), 1);
    // In blocks of 512 bytes: enough for the run, less than the page.
    const Outcome run = RunProgram(
        tFolder.Path(), {"/bin/sh", "-c", "ulimit -f 300; exec \"$0\" \"$@\"", MDLAB_PROGRAM,
                         "report", "--out", "r.html", "-q", "--", "-d", "a.cfg"});
    unsetenv("TMPDIR");
    EXPECT_EQ(run.nExit, 2) << run;
    EXPECT_EQ(run.sErr, "mdlab: r.html: cannot be written: File too large\n");
    EXPECT_TRUE(fs::is_empty(tFolder / "tmp"));
    for (const auto& entry : fs::directory_iterator(tFolder.Path())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with("r.html")) << entry.path();
    }
}

}  // namespace
