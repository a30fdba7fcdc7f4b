// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What differs between systems. One source file for each; no other file asks which system it is.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

extern const char kNativePathSep;    // what cfgCompletePath joins with
extern const char* const kToolFile;  // file name of the video converter

// Once at start: a write beyond a limit on file sizes fails as on a full disk, where the system
// would else end the process.
void KeepRunningAtFileLimit();

// Once at start, before any file is opened. Reserves descriptors 0 to 2 if they are closed, so that
// no output file gets one; ignores SIGPIPE, so that the files are finished when the reader of our
// output goes away. In both cases writing to the stream fails.
void GuardStandardStreams();

// As fopen of a file to read; null for a folder too, which some systems would open.
std::FILE* OpenToRead(const char* szPath);

// Seeks from the file's start; false if the file cannot.
bool FileSeek64(std::FILE* pFile, int64_t nOffset);

// Length in bytes of a regular file, as it is now; -1 for anything else (pipe, device, folder).
int64_t RegularFileSize(std::FILE* pFile);

bool PathExists(const char* szPath);

// Makes one folder level. Whether that worked shows when a file in it is opened.
void MakeFolder(const char* szPath);

// Runs a command line through the system's command processor, waits for it and returns its status.
// Our standard output is flushed first, so that the log keeps its order; the child's standard input
// is the null device.
int RunCommand(const char* szCommand);

// A path as one word of a command line, which is never run or expanded: unchanged if it is made of
// letters, digits and harmless marks only, else quoted.
std::string CommandWord(const char* szPath);
