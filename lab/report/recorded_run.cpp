// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/recorded_run.h"

#include <cstdint>
#include <utility>

#include "lab/report/recorder.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

class Bytes {
  public:
    explicit Bytes(const std::string& text) : text_(text) {}
    uint8_t Next() {
        if (at_ >= text_.size()) throw Error("internal error: a block record ends early");
        return static_cast<uint8_t>(text_[at_++]);
    }
    uint32_t Varint() {
        uint32_t value = 0;
        for (int shift = 0;; shift += 7) {
            const uint32_t byte = Next();
            value |= (byte & 127) << shift;
            if (byte < 128) return value;
        }
    }
    int32_t Zigzag() {
        const uint32_t value = Varint();
        return static_cast<int32_t>(value >> 1 ^ (0u - (value & 1)));
    }

  private:
    const std::string& text_;
    size_t at_ = 0;
};

}  // namespace

int RecordedRun::Blocks() const {
    return facts["run"]["grid"]["w"].get<int>() * facts["run"]["grid"]["h"].get<int>();
}

RecordedRun ReadRun(const std::string& folder, nlohmann::json facts) {
    RecordedRun run{folder, std::move(facts), ReadRows(folder + "/frames"), {}};
    run.summary = Summarise(run.rows);
    if (run.rows.empty()) {
        throw Error(run.facts["clip"]["name"].get<std::string>() +
                    ": not one whole frame was read, so there is nothing to report");
    }
    return run;
}

ReplayedFrame DecodeBlocks(const std::string& record, int blocks, int thresholds) {
    ReplayedFrame frame;
    Bytes bytes(record);
    const uint8_t ordinary = bytes.Next();
    int32_t last = 0;
    for (int i = 0; i < thresholds; ++i) {
        last += bytes.Zigzag();
        frame.thresholds.push_back(last);
    }
    const auto count = static_cast<size_t>(blocks);
    while (frame.outcome.size() < count) {
        const size_t live = frame.outcome.size() + bytes.Varint();
        const size_t end = live + bytes.Varint();
        if (end > count) throw Error("internal error: a block record is too long");
        frame.distance.resize(live, 0);
        frame.state.resize(live, 0);
        frame.outcome.resize(live, ordinary);
        while (frame.outcome.size() < end) {
            frame.distance.push_back(bytes.Next());
            frame.state.push_back(bytes.Next());
            frame.outcome.push_back(bytes.Next());
        }
    }
    return frame;
}

}  // namespace lab
