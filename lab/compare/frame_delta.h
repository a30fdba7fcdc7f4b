// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What differs in one frame, gathered from all files that show the frame.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "lab/compare/comparison.h"

namespace lab {

class FrameDelta {
  public:
    // Forgets what it held.
    void Start(int64_t frame);

    // A file of `kind` that both runs have, with equal bytes.
    void AddEqual(FileKind kind);

    // The same with unequal bytes, as read. False when the grids are unlike: nothing is added then.
    bool Add(FileKind kind, const Frame& golden, const Frame& other);

    [[nodiscard]] int64_t FrameIndex() const { return frame_; }

    // All values that differ in the stages wanted: by stage, then by block in raster order.
    [[nodiscard]] std::vector<Difference> Differences(const StageSet& stages) const;

    // Some file's bytes differ, whether or not its values do.
    [[nodiscard]] bool BytesDiffer() const { return bytes_differ_; }

    // Some file was left out for its grid.
    [[nodiscard]] bool Unlike() const { return unlike_; }

    // Some file of both runs shows the stage or the field.
    [[nodiscard]] bool Shows(Stage stage) const;
    [[nodiscard]] bool Shows(Field field) const { return holders_[field] != 0; }

  private:
    struct Value {
        uint16_t golden, other;
        Sources shown;  // none: equal, or shown by no file
    };
    void AddField(Field main, Field field, Sources source, const Frame& golden, const Frame& other);
    void AddReport(const ObjectReport& golden, const ObjectReport& other);

    int64_t frame_ = 0;
    int columns_ = 0;
    bool bytes_differ_ = false, unlike_ = false;
    std::array<std::vector<Value>, kFieldCount> values_;  // empty: no file differs
    std::array<Sources, kFieldCount> holders_{};          // files of both runs that hold the field
    bool report_held_ = false;
    std::vector<Difference> box_;
};

}  // namespace lab
