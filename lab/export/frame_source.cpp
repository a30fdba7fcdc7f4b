// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/export/frame_source.h"

#include <array>
#include <cstdint>
#include <set>

#include "lab/dumps/readers.h"

namespace lab {

namespace {

// The first that a frame has is read. Those with active flags come first.
constexpr std::array<FileKind, 4> kDistanceKinds = {kFullCsvFile, kFullJsonFile, kHogDistTextFile,
                                                    kHogDistJsonFile};

void AddReport(const Run& run, Frame* frame) {
    frame->report.reset();
    if (run.frames[kObjectFile].contains(frame->index)) {
        ReadFrameFile(kObjectFile, run.PathOf(kObjectFile, frame->index), frame);
    }
}

void EachOfRunningFile(const Run& run, FrameRange range,
                       const std::function<void(const Frame&)>& use) {
    RunningFile file(run.PathOf(kDistFile), kDistFile);
    Frame frame;
    while (file.Next(&frame) && frame.index <= range.last) {
        if (frame.index < range.first) continue;
        AddReport(run, &frame);
        use(frame);
    }
}

void EachOfFrameFiles(const Run& run, FrameRange range,
                      const std::function<void(const Frame&)>& use) {
    std::set<int64_t> numbers;
    for (const FileKind kind : kDistanceKinds) {
        numbers.insert(run.frames[kind].begin(), run.frames[kind].end());
    }
    if (numbers.empty()) numbers = run.frames[kObjectFile];
    for (auto number = numbers.lower_bound(range.first);
         number != numbers.end() && *number <= range.last; ++number) {
        Frame frame;
        for (const FileKind kind : kDistanceKinds) {
            if (!run.frames[kind].contains(*number)) continue;
            ReadFrameFile(kind, run.PathOf(kind, *number), &frame);
            break;
        }
        frame.index = *number;
        AddReport(run, &frame);
        use(frame);
    }
}

}  // namespace

void EachFrame(const Run& run, FrameRange range, const std::function<void(const Frame&)>& use) {
    if (run.has[kDistFile]) {
        EachOfRunningFile(run, range, use);
    } else {
        EachOfFrameFiles(run, range, use);
    }
}

}  // namespace lab
