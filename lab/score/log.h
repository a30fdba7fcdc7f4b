// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a run of MD reported, frame by frame, read from the text it prints: the line
// "*****frame N" and the two result lines that follow it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/score/box.h"

namespace lab {

struct FrameReport {
    int32_t frame = 0;  // number of the frame in the clip
    std::optional<Box>
        box;  // pixels of the working frame, after the temporal gate; none: no motion
    bool operator==(const FrameReport&) const = default;
};

struct FrameSize {
    int32_t width = 0, height = 0;  // pixels
    bool operator==(const FrameSize&) const = default;
};

// What a run scaled from and to. MD prints it only when it scales.
struct Scaling {
    FrameSize input, working;
};

// The reader of a log. It is given the text in pieces, as it comes.
class LogReader {
  public:
    void Add(std::string_view piece);
    // The text is at its end; a last line may lack its line end.
    void Finish();

    // The frames whose result lines are complete, in the order of the log.
    std::vector<FrameReport> frames;
    std::optional<Scaling> scaling;
    // The working height, where it follows from the shape of the input and was set otherwise.
    std::optional<int32_t> height;
    // Both "finish." lines came: the run went to its end.
    [[nodiscard]] bool Complete() const { return finish_lines_ == 2; }
    // The last line that begins as MD's refusals do; empty if there is none.
    std::string complaint;

  private:
    void Line(std::string_view line);

    std::string rest_;  // a line that has not ended yet
    int32_t frame_ = -1;
    bool detected_ = false;
    int finish_lines_ = 0;
};

}  // namespace lab
