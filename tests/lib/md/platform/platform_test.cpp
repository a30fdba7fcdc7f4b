// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/platform/platform.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <csignal>
#include <string>

#include "md/platform/run_tool.h"
#include "tests/support/program.h"

TEST(CommandWord, ShellHandsEveryPathBackByteForByte) {
    const std::string aPaths[] = {
        "",  "a b",        "it's", "''",  "\"$HOME\"", "$(touch x)",  "`touch x`", "a;b&c|d>e<f",
        "~", "*?[a]{b,c}", "#a!b", "a\\", "a\nb\tc",   "\xc3\xa9\x80"};
    const TempFolder tFolder;
    for (const std::string& sPath : aPaths) {
        const std::string sWord = CommandWord(sPath.c_str());
        EXPECT_EQ(RunProgram(tFolder.Path(), {"sh", "-c", "printf '<%s>' " + sWord}).sOut,
                  "<" + sPath + ">");
        EXPECT_NE(sWord, sPath);
    }
    EXPECT_TRUE(fs::is_empty(tFolder.Path())) << "something ran";
    EXPECT_EQ(CommandWord("az-AZ_09./:+,=@%"), "az-AZ_09./:+,=@%");
}

TEST(CommandFolder, EmptyFolderLeavesThePathAtTheRoot) {
    EXPECT_EQ(CommandFolder("", '/') + "comp.mp4", "/comp.mp4");
    EXPECT_EQ(CommandFolder("out", '\\') + "comp.mp4", "out\\comp.mp4");
    EXPECT_EQ(CommandFolder("my out", '/') + "comp.mp4", "'my out'/comp.mp4");
}

namespace {

volatile std::sig_atomic_t nAlarms;

}  // namespace

// The shell is waited for through signals that a handler takes without going on with the call.
TEST(RunCommand, StatusSurvivesInterruptingSignals) {
    struct sigaction tOld, tNew = {};
    tNew.sa_handler = [](int) { nAlarms = nAlarms + 1; };
    ASSERT_EQ(sigaction(SIGALRM, &tNew, &tOld), 0);
    const itimerval tEvery = {{0, 20000}, {0, 20000}}, tNever = {};  // microseconds
    setitimer(ITIMER_REAL, &tEvery, nullptr);
    const int nStatus = RunCommand("sleep 0.2; exit 3");
    setitimer(ITIMER_REAL, &tNever, nullptr);
    sigaction(SIGALRM, &tOld, nullptr);
    EXPECT_EQ(nStatus, 3);
    EXPECT_GT(nAlarms, 0);
}

TEST(RunCommand, KilledCommandGivesItsSignal) {
    EXPECT_EQ(RunCommand("kill -TERM $$"), 128 + SIGTERM);
    EXPECT_EQ(RunCommand("exit 0"), 0);
}
