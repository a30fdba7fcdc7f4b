// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The picture of the page: the working frames of a run as H.264, encoded so that jumping to any
// frame is quick and the file is small.
#pragma once

#include <cstdint>
#include <string>

#include "lab/tool/interrupt.h"

namespace lab {

struct VideoSource {
    std::string path;         // raw working frames
    int64_t offset = 0;       // of the first frame, bytes
    int64_t frame_bytes = 0;  // of one
    int64_t frames = 0;
    int width = 0, height = 0;  // pixels
};

struct VideoSettings {
    int crf = 27;
    int max_width = 960;  // pixels
};

// Width and height of the video, and the part of it, from its top left corner, that shows the
// frame: the coder takes even sizes only, so an odd frame is padded.
struct PictureSize {
    int width, height, shown_width, shown_height;
};
PictureSize SizeOfVideo(const VideoSource& source, const VideoSettings& settings);

// Encodes all frames to `out`, an mp4, at 25 frames a second whatever the clip has, with a key
// frame every 25. Throws Error if the source ends early or the coder fails.
void EncodeVideo(const VideoSource& source, const VideoSettings& settings, const std::string& out,
                 bool quiet, const InterruptGuard& interrupt);

// The codec of an mp4 as browsers name it ("avc1.64001f"); empty if it is not found.
std::string CodecOf(const std::string& mp4);

}  // namespace lab
