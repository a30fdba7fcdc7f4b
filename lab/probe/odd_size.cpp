// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/probe/odd_size.h"

#include <filesystem>

#include "lab/tool/error.h"

namespace lab {

int64_t FrameBytesOfTool(int64_t width, int64_t height) {
    return width * height + 2 * ((width + 1) / 2) * ((height + 1) / 2);
}

int64_t FrameBytesOfMd(int64_t width, int64_t height) {
    return width * height * 3 / 2;
}

void RefuseOtherLayout(const std::string& clip, const std::string& raw, int64_t width,
                       int64_t height, bool scaled) {
    const int64_t by_tool = FrameBytesOfTool(width, height);
    const int64_t by_md = FrameBytesOfMd(width, height);
    std::error_code error;
    const auto bytes = static_cast<int64_t>(std::filesystem::file_size(raw, error));
    if (error || by_tool == by_md) return;
    const int64_t expected = scaled ? by_tool : by_md;
    const int64_t other = scaled ? by_md : by_tool;
    if (bytes % expected == 0 || bytes % other != 0) return;
    const std::string even = std::to_string(width & ~1) + ":" + std::to_string(height & ~1);
    throw Error(clip + ": its frames have the odd size " + std::to_string(width) + "x" +
                std::to_string(height) +
                " and would be read at the wrong places; crop it to an even size first, by ffmpeg "
                "with -vf crop=" +
                even + ":0:0");
}

}  // namespace lab
