// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Records a run frame by frame into a folder, while it runs. What it leaves:
//
//     frames    the FrameRow of each frame, as it is in memory
//     blocks    spool: a record a frame, as in the page before compression (FORMAT.md, section 6)
//     luma      spool: mean luma of each block of a frame
//     vectors   spool: bitmap, then the planes of one frame (section 8, of one frame only)
//     cases     spool: cases of the refinement; method 2 only
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "lab/report/frame_row.h"
#include "lab/report/replay.h"
#include "lab/report/spool.h"

namespace lab {

// Sums over a run.
struct RunSums {
    int64_t distances[256] = {};  // blocks of each distance of the map
    int64_t active[256] = {};     // those of the mask
    uint64_t luma_hash =
        0xCBF29CE484222325;  // over the luma of all frames: equal clips give equal ones
};

// Of one run, which must be started, with its records kept (FrameScanKeepRecords).
class Recorder {
  public:
    explicit Recorder(const std::string& folder);

    // After each MdSimNext that was true. Throws Error on a full disk, or when the replay and MD
    // disagree.
    void Frame();

    // After the last frame.
    void Finish();

    [[nodiscard]] const RunSums& Sums() const { return sums_; }
    [[nodiscard]] int ThresholdCount() const { return replay_.ThresholdCount(); }

  private:
    // A frame whose vectors wait until it is known which of them later frames are compared with.
    struct Waiting {
        std::vector<bool> wanted;
        std::string planes;  // all blocks
    };

    FrameRow Row(const ReplayedFrame& frame);
    void KeepVectors(const ReplayedFrame& frame);
    void WriteVectors();

    int blocks_;
    Replay replay_;
    RunSums sums_;
    File frames_;
    SpoolWriter blocks_spool_, luma_, vectors_;
    std::unique_ptr<SpoolWriter> cases_;
    std::deque<Waiting> waiting_;
    int first_waiting_ = 0;
};

// Bytes of a frame in the spool "blocks".
std::string EncodeBlocks(const ReplayedFrame& frame);

// Planes of the vectors of this run: ten, and their length class where it can differ from 1.
int VectorPlanes();

// The rows of the file "frames".
std::vector<FrameRow> ReadRows(const std::string& path);

}  // namespace lab
