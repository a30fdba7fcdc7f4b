// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Command lines for this system's processor: their text, and what reaches a real child.
#ifdef _WIN32
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "md/platform/platform.h"

namespace fs = std::filesystem;

TEST(PlatformWindows, AWordIsQuotedOnlyWhenItMustAndClosesItsQuotes) {
    const struct {
        const char *szPath, *szWord;
    } aRows[] = {
        {R"(C:\in\a_P420.yuv)", R"(C:\in\a_P420.yuv)"},
        {"", R"("")"},
        {R"(my clips\a.yuv)", R"("my clips\a.yuv")"},
        {R"(my clips\)", R"("my clips\\")"},     // one backslash would escape the quote
        {R"(my clips\\)", R"("my clips\\\\")"},  // so would the odd one of three
        {"50%", R"("50"%"")"},                   // no variable is looked up
        {R"(in\%PATH%)", R"("in\\"%"PATH"%"")"},
        {R"(a"&b)", R"("a&b")"},
        {"a;b", R"("a;b")"},
    };
    for (const auto& t : aRows) EXPECT_EQ(CommandWord(t.szPath), t.szWord);
}

// The child is MD from a folder of that name; it prints the path that it was given.
TEST(PlatformWindows, PathsReachTheChildByteByByte) {
    const fs::path tTop = fs::temp_directory_path() / "md platform test";
    for (const char* szName : {"plain", "two words", "a&b", "a^b", "(a) b", "it's", "a;b", "100%",
                               "%PATH%", "%PATH% & %TEMP%", "a!b", "#$~{}`"}) {
        SCOPED_TRACE(szName);
        fs::remove_all(tTop);
        const fs::path tFolder = tTop / szName;
        fs::create_directories(tFolder);
        fs::copy_file(MD_PROGRAM, tFolder / "MD.exe");
        const std::string sConfig = (tFolder / "%no such%\\a.cfg").string();
        const std::string sCommand = CommandWord(tFolder.string().c_str()) + "\\MD.exe -d " +
                                     CommandWord(sConfig.c_str()) + " 2> NUL > " +
                                     CommandWord(tFolder.string().c_str()) + "\\out.txt";
        RunCommand(sCommand.c_str());
        std::ostringstream tText;
        tText << std::ifstream(tFolder / "out.txt").rdbuf();
        EXPECT_EQ(tText.str(),
                  "Setting Default Parameters...\nParsing Configfile...... " + sConfig + "\n")
            << sCommand;
    }
    fs::remove_all(tTop);
}
#endif
