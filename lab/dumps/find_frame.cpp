// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Headings of running files, searched as text: far faster than parsing what is between them.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include "lab/dumps/readers.h"
#include "lab/tool/raw_file.h"

namespace lab {

namespace {

constexpr std::string_view kMark = "Frame_idx=";
constexpr int64_t kChunk = 256 * 1024;
constexpr int64_t kAfter = 32;  // bytes of a heading before its mark, and after it, at most
// Pieces overlap, so that a heading is always whole in one of them.

struct Heading {
    int64_t frame, offset;
};

// The heading whose mark is at `at` of `text`, which begins at `start` of the file. Its offset
// is that of the stars before it.
Heading HeadingAt(const std::string& text, std::size_t at, int64_t start) {
    const int64_t frame = std::strtoll(text.c_str() + at + kMark.size(), nullptr, 10);
    std::size_t begin = at;
    while (begin > 0 &&
           (text[begin - 1] == '\n' || text[begin - 1] == '\r' || text[begin - 1] == ' ')) {
        --begin;
    }
    while (begin > 0 && text[begin - 1] == '*') --begin;
    return {frame, start + static_cast<int64_t>(begin)};
}

std::optional<Heading> LastHeading(const RawFile& file, int64_t offset, int64_t from) {
    for (int64_t end = std::min(file.Size(), offset + 2 * kAfter); end > from; end -= kChunk) {
        const int64_t begin = std::max(from, end - kChunk - 2 * kAfter);
        const std::string text = file.Read(begin, end - begin + kAfter);
        for (std::size_t at = text.rfind(kMark); at != std::string::npos;
             at = at == 0 ? std::string::npos : text.rfind(kMark, at - 1)) {
            const Heading heading = HeadingAt(text, at, begin);
            if (heading.offset <= offset) return heading;
        }
    }
    return std::nullopt;
}

}  // namespace

// Frames are in order, so their headings can be bisected.
int64_t FindFrame(const std::string& path, int64_t frame) {
    const RawFile file(path);
    for (int64_t first = 0, last = file.Size(); first <= last;) {
        const int64_t middle = first + (last - first) / 2;
        const auto heading = LastHeading(file, middle, first);
        if (heading && heading->frame == frame) return heading->offset;
        if (!heading || heading->frame < frame) {
            first = middle + 1;
        } else {
            last = heading->offset - 1;
        }
    }
    return -1;
}

std::optional<FrameRange> RunningRange(const std::string& path) {
    const RawFile file(path);
    const std::string head = file.Read(0, 64);
    const std::size_t at = head.find(kMark);
    if (at == std::string::npos) return std::nullopt;
    const auto last = LastHeading(file, file.Size(), 0);
    return FrameRange{HeadingAt(head, at, 0).frame, last->frame};
}

int64_t HeadingBefore(const RawFile& file, int64_t offset, int64_t from) {
    const auto heading = LastHeading(file, offset, from);
    return heading ? heading->offset : -1;
}

}  // namespace lab
