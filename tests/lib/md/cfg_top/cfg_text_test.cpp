// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/cfg_top/cfg_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Tokens(std::string sText) {
    char* aTokens[kMaxTokens];
    const int32_t n = cfgTokenise(sText.data(), static_cast<int32_t>(sText.size()), aTokens);
    return {aTokens, aTokens + n};
}

}  // namespace

TEST(Tokeniser, CutsEveryByteAsItsKindAsks) {
    const std::pair<const char*, std::vector<std::string>> aRows[] = {
        {"", {}},
        {" \t\n\r\n# all comment", {}},
        {"a b\tc\nd", {"a", "b", "c", "d"}},
        {"a=5 ==", {"a=5", "=="}},
        {"\x80\xff =", {"\x80\xff", "="}},
        // A carriage return belongs to the token that it is in, and starts none.
        {"a\r\nb\rc\r\rd\n\re", {"a\r", "b\rc\r\rd", "e"}},
        // A comment takes the rest of its line, from within a token or a string too.
        {"a#b c\nd", {"a", "d"}},
        {"\"a #b\" c\nd", {"a ", "d"}},
        {"\"#\" c\nd", {"", "d"}},
        {"# \"open\nb c", {"b", "c"}},
        // Strings keep blanks and end with their line at the latest.
        {"\"a b\tc\" d", {"a b\tc", "d"}},
        {"\"\" a", {"", "a"}},
        {"\"a b\nc d\"", {"a b", "c", "d", ""}},
        {"a \"", {"a", ""}},
        {"\"a\"b \"c\"\"d\"", {"a", "b", "c", "d"}},
        // A quote right after an item lets the next byte start a token once more.
        {"ab\"cd\" e", {"ab", "cd", "cd", "e"}},
        {"ab\" cd\"", {"ab", " cd", "cd"}},
        {"ab\"\"e", {"ab", "", "e"}},
        {"ab\"\ncd", {"ab", "", "cd"}},
    };
    for (const auto& [szText, aTokens] : aRows) EXPECT_EQ(Tokens(szText), aTokens) << szText;
}

TEST(Tokeniser, StopsAtTheLengthItIsGiven) {
    char szText[] = "ab cd ef";
    char* aTokens[kMaxTokens];
    EXPECT_EQ(cfgTokenise(szText, 5, aTokens), 2);
    EXPECT_STREQ(aTokens[1], "cd ef") << "no end mark beyond the length";
}

TEST(CfgDirName, CutsAtTheLastSeparatorOfEitherKind) {
    const std::pair<const char*, const char*> aRows[] = {
        {"", "."},        {"x", "x"},    {"/", "/"},        {"\\", "\\"},       {"ab", "."},
        {"ab/", "."},     {"/a", "/"},   {"\\a", "\\"},     {"/a/", "/"},       {"//", "/"},
        {"a/b", "a"},     {"a\\b", "a"}, {"a/b\\c", "a/b"}, {"a/b/", "a"},      {"a//b", "a/"},
        {"/a/b.c", "/a"}, {"a\\", "."},  {"./a", "."},      {"../a/b", "../a"}, {"a//", "a"}};
    for (const auto& [szPath, szDir] : aRows) EXPECT_EQ(cfgDirName(szPath), szDir) << szPath;
}
