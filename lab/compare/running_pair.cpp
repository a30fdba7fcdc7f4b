// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/running_pair.h"

#include <algorithm>

namespace lab {

RunningPair::RunningPair(const std::string& golden, const std::string& other, FileKind kind)
    : a_(golden, kind), b_(other, kind) {}

// Both files are at a heading. Goes on to the heading before the next byte that differs; false if
// there is none.
bool RunningPair::SkipEqual() {
    const int64_t a = a_.file.Offset(), b = b_.file.Offset();
    const int64_t equal = compare_.EqualBytes(a_.bytes, a, b_.bytes, b);
    if (equal < 0) return false;
    const int64_t heading = HeadingBefore(a_.bytes, a + equal, a);
    if (heading > a) {
        a_.file.Seek(heading);
        b_.file.Seek(b + (heading - a));
    }
    return true;
}

// Frames of equal values and equal bytes: the search for a heading went back over one.
bool RunningPair::BothEqual() {
    const int64_t bytes = a_.file.Offset() - a_.start;
    if (a_.frame.values != b_.frame.values || b_.file.Offset() - b_.start != bytes) return false;
    const int64_t equal = compare_.EqualBytes(a_.bytes, a_.start, b_.bytes, b_.start);
    return equal < 0 || equal >= bytes;
}

RunningPair::Step RunningPair::Next() {
    for (;;) {
        if (!a_.waiting && !b_.waiting && !a_.ended && !b_.ended && !SkipEqual()) break;
        for (Side* side : {&a_, &b_}) {
            if (side->waiting || side->ended) continue;
            side->start = side->file.Offset();
            side->waiting = side->file.Next(&side->frame);
            side->ended = !side->waiting;
        }
        if (a_.ended && b_.ended) break;
        if (a_.waiting && b_.waiting && a_.frame.index == b_.frame.index) {
            a_.waiting = b_.waiting = false;
            if (BothEqual()) continue;
            return Step::kBoth;
        }
        if (b_.ended || (a_.waiting && a_.frame.index < b_.frame.index)) {
            a_.waiting = false;
            return Step::kOnlyGolden;
        }
        b_.waiting = false;
        return Step::kOnlyOther;
    }
    return Step::kEnd;
}

}  // namespace lab
