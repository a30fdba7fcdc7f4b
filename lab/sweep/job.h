// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A job of a sweep: one conversion, or a chunk of points that share a clip at one working size. The
// engine runs it as `mdlab sweep-job FILE MARK`, on this machine or on another one that sees the
// same folders.
#pragma once

#include <string>
#include <vector>

#include "lab/sweep/clip_store.h"

namespace CLI {
class App;
}

namespace lab {

struct ChunkRun {
    std::string id;
    std::string settings;  // assignments on top of the chunk's
};

struct ChunkJob {
    ClipJob clip;          // settings unused; folder holds the converted clip
    std::string settings;  // assignments that all runs share
    std::vector<ChunkRun> runs;
    std::string store;     // folder of the finished runs
    std::string progress;  // file that grows by a byte for each run that is over
    std::string failures;  // file with a line for each run that failed: ID TAB REASON
};

void WriteClipJob(const std::string& path, const ClipJob& job, const std::string& progress,
                  const std::string& failures);
void WriteChunkJob(const std::string& path, const ChunkJob& job);

// Runs the points of a chunk and stores those that MD ran to its end or refused. Returns the number
// of the others: crashed or killed.
int RunChunk(const ChunkJob& job);

// The hidden subcommand.
void AddSweepJob(CLI::App* app, int* status);

}  // namespace lab
