// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Raw 4:2:0 frames of an odd size have two layouts: ffmpeg rounds the chroma planes up, MD rounds
// the bytes of a frame down.
#pragma once

#include <cstdint>
#include <string>

namespace lab {

// Bytes of a frame of width x height pixels, both at least 1. With an even size they are equal.
int64_t FrameBytesOfTool(int64_t width, int64_t height);
int64_t FrameBytesOfMd(int64_t width, int64_t height);

// Throws Error if the frames of `raw` have the other layout than the one that reads them: ffmpeg,
// where MD scales, or MD itself. `clip` is the file that the message names.
void RefuseOtherLayout(const std::string& clip, const std::string& raw, int64_t width,
                       int64_t height, bool scaled);

}  // namespace lab
