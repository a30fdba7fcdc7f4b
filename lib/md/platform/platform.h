// What the systems we run on do differently. One file per system; nothing else asks which it is.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

extern const char kNativePathSep;    // what cfgCompletePath joins with
extern const char* const kToolFile;  // file name of the video converter

// Once at start: a write beyond a limit on file sizes comes back short, as one on a full disk does,
// where the system would else end the process.
void KeepRunningAtFileLimit();

// Once at start, before any file is opened: a standard stream that the caller has closed takes no
// write, rather than lending its number to the first file opened; and a reader of our output that
// goes away ends no run, whose product are its files. Either shows as an error of the stream.
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

// The form in which a path stands for one word in a command line and is never run or expanded:
// as it is when made of letters, digits and harmless marks only, else quoted.
std::string CommandWord(const char* szPath);
