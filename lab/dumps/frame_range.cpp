// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/dumps/frame_range.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

#include "lab/tool/error.h"

namespace lab {

namespace {

// The whole of `text`, which may be empty: `*number` stays then.
bool ParseNumber(std::string_view text, int64_t* number) {
    if (text.empty()) return true;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, *number);
    return error == std::errc{} && stop == end && *number >= 0;
}

}  // namespace

FrameRange ParseFrames(const std::string& text) {
    FrameRange range{0, std::numeric_limits<int64_t>::max()};
    if (text.empty()) return range;
    const std::string_view view = text;
    const std::size_t colon = std::min(view.find(':'), view.size());
    const bool alone = colon == view.size();
    const std::string_view last = alone ? view : view.substr(colon + 1);
    if (text == ":" || !ParseNumber(view.substr(0, colon), &range.first) ||
        !ParseNumber(last, &range.last)) {
        throw Error("'" + text + "' is not of the form --frames A:B, with frames counted from 0");
    }
    if (range.first > range.last) throw Error("--frames " + text + " ends before it begins");
    return range;
}

}  // namespace lab
