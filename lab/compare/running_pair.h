// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Two running files side by side: equal stretches are passed over as bytes, only frames that differ
// are parsed.
#pragma once

#include <cstdint>
#include <string>

#include "lab/compare/bytes.h"
#include "lab/dumps/readers.h"

namespace lab {

class RunningPair {
  public:
    RunningPair(const std::string& golden, const std::string& other, FileKind kind);

    enum class Step { kBoth, kOnlyGolden, kOnlyOther, kEnd };

    // The next frame whose bytes differ or that one file lacks; Golden() and Other() then hold it.
    // Throws TextError where a file is broken.
    Step Next();
    [[nodiscard]] const Frame& Golden() const { return a_.frame; }
    [[nodiscard]] const Frame& Other() const { return b_.frame; }

  private:
    struct Side {
        Side(const std::string& path, FileKind kind) : bytes(path), file(path, kind) {}
        RawFile bytes;
        RunningFile file;
        Frame frame;
        int64_t start = 0;     // where it began
        bool waiting = false;  // the frame is read and not yet passed on
        bool ended = false;
    };
    bool SkipEqual();
    bool BothEqual();

    Side a_, b_;
    ByteCompare compare_;
};

}  // namespace lab
