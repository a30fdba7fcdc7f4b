// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Configuration text: reading a file into memory and cutting it into tokens.
#pragma once

#include <cstdint>
#include <string>

constexpr int32_t kMaxConfigBytes = 60000;  // of a configuration file
constexpr int32_t kMaxTokens = 600;         // of one parsed text

// Returns the file's text, newly allocated with an end mark, for the caller to free; null after
// printing its message. No memory for the text ends the run with status 1.
char* cfgGetConfigFileContent(const char* szPath);

// The directory part of a path; "." if it has none.
std::string cfgDirName(const char* szPath);

// Cuts `szText` into tokens in place, writing end marks into it, and stores a pointer to the start
// of each in `aTokens`. Returns their number; more than kMaxTokens end the run with status 4.
//
// White space separates tokens. Double quotes make one token of the text between them, blanks
// included, up to the end of the line at most. '#' ends the line, within quotes too.
int32_t cfgTokenise(char* szText, int32_t nLength, char* aTokens[kMaxTokens]);
