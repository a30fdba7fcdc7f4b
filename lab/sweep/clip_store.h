// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Clips at working size, converted by MD itself and kept for all points that use them.
#pragma once

#include <cstdint>
#include <string>

#include "lab/score/log.h"

namespace lab {

// What a conversion made, or MD's refusal of it.
struct WorkingClip {
    std::string path;  // of the raw 4:2:0 file; empty: the clip itself is one of working size
    FrameSize input, working;
    int64_t frames = 0;
    int64_t bytes = 0;  // of the raw file
    bool refused = false;
    int status = 0;
    std::string message;
};

// All that a conversion needs.
struct ClipJob {
    std::string md, md_digest;      // program, and the digest of its bytes
    std::string clip, clip_digest;  // the file, and the digest of its bytes
    std::string settings;           // assignments, without the output folder
    std::string folder;             // in the store
};

// False if the folder holds no whole result.
bool ReadWorkingClip(const std::string& folder, WorkingClip* clip);

// Converts and leaves the result in the folder. A refusal of MD is a result. Throws Error for
// everything else: a clip that vanished or changed, a full disk.
void ConvertClip(const ClipJob& job);

// Throws Error if the file does not have these bytes any more.
void RefuseChanged(const std::string& path, const std::string& digest);

}  // namespace lab
