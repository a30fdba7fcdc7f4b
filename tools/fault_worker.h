// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A copy of the tree with a build of its own, in which one fault after another is tried. Not for
// Windows: the commands are lines of a shell. All of it throws std::runtime_error when a file
// cannot be read or written.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct FaultWorker {
    std::filesystem::path tTree;   // the copy, absolute
    std::filesystem::path tBuild;  // absolute
};

inline constexpr char kNoBuild[] = "no build";
inline constexpr char kCaught[] = "caught by ";
inline constexpr char kSurvived[] = "SURVIVED";

std::string ReadWhole(const std::filesystem::path& tPath);

// Files under version control that are there, relative to the current folder, which is the root of
// the tree. tScratch: a folder to write in.
std::vector<std::string> TreeFiles(const std::filesystem::path& tScratch);

// Brings the copy to the state of the current folder. Files that are the same keep their time, so
// that a build from before is of use.
void CopyTree(const FaultWorker& tWorker, const std::vector<std::string>& aFiles);

// Builds the copy and runs its tests; throws std::runtime_error if that fails, since then no fault
// would be noticed for its own sake.
void Prepare(const FaultWorker& tWorker);

// Tries a file of the copy with other contents and puts its own back: kNoBuild, kSurvived, or
// kCaught with the test that fails first or with the status that the tests ended with.
std::string TryContents(const FaultWorker& tWorker, const std::string& sPath,
                        const std::string& sContents);
