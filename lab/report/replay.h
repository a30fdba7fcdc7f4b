// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Why each block of a frame is active or not: the decisions of the frame that MD has just made, run
// again by the library's own rules over the distances and states as they were, so that they give
// the rule that decided. The mask and the distances of every block are compared with MD's.
#pragma once

#include <cstdint>
#include <vector>

#include "md/decision/activity_rules.h"

namespace lab {

// All per-block tables are in raster order.
struct ReplayedFrame {
    std::vector<uint8_t> distance;    // as the block's history keeps it
    std::vector<uint8_t> state;       // after the frame: counter and flags (md/block_history.h)
    std::vector<uint8_t> outcome;     // ActivityOutcome
    std::vector<int32_t> thresholds;  // luma thresholds: one a row, one a block or one in all
    int32_t end_threshold = 0;        // over the whole frame; with method 2 the one in force
};

// One for a run, from its first frame on. It reads the state of the run (md/run_state.h), whose
// feature records must be kept (FrameScanKeepRecords).
class Replay {
  public:
    // The run must be started.
    Replay();

    // After MdSimNext. The result lasts until the next call. Throws Error when a block differs from
    // MD's, which is a fault of this program.
    const ReplayedFrame& Next();

    // Number of luma thresholds of a frame.
    [[nodiscard]] int ThresholdCount() const;

  private:
    void FindThresholds();
    void DecideBlocks();
    [[nodiscard]] NeighbourCounts CountAround(int at) const;
    uint8_t Decide(int block, int x, int y, int luma_threshold);
    void Check(int block) const;

    // Tables with a border of zeros, which is what an absent neighbour counts as.
    [[nodiscard]] int At(int x, int y) const { return (y + 1) * pitch_ + x + 1; }

    int width_, height_, pitch_;         // blocks
    std::vector<uint8_t> distances_[3];  // ring of history, bordered
    std::vector<uint8_t> states_;        // bordered
    std::vector<int32_t> luma_change_;   // |mean luma - the reference's|
    int32_t carried_threshold_ = 0;      // of the last frame
    ReplayedFrame frame_;
};

}  // namespace lab
