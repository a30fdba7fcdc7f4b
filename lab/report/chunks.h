// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The data of a run in chunks of frames, compressed, in temporary files: what the page unpacks one
// by one when it wants them (FORMAT.md, sections 6 to 9).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "lab/report/recorded_run.h"
#include "lab/tool/interrupt.h"

namespace lab {

constexpr int kChunkFrames = 60;

// Compressed chunks of one kind: a spool with a record a chunk.
struct Chunks {
    std::string path;
    std::vector<int64_t> sizes;  // bytes of each record
};

// Says whether a frame index keeps its block values.
using KeepFrame = std::function<bool(int)>;

// `name` is that of the file made in the run's folder.
Chunks PackBlocks(const RecordedRun& run, const std::string& name, const KeepFrame& keep,
                  const InterruptGuard& interrupt);
Chunks PackLuma(const RecordedRun& run, const InterruptGuard& interrupt);
Chunks PackVectors(const RecordedRun& run, const InterruptGuard& interrupt);
Chunks PackCases(const RecordedRun& run, const InterruptGuard& interrupt);  // method 2 only

}  // namespace lab
