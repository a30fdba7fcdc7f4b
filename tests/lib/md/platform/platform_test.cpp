// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/platform/platform.h"

#include <gtest/gtest.h>

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
