// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a video file says about itself, by ffprobe: what MD's own preparation does not look at.
#pragma once

#include <string>

namespace lab {

struct ClipFacts {
    int width = 0, height = 0;   // as stored, before any rotation; 0: not known
    int rotation = 0;            // degrees, a multiple of 90 as a rule, 0 to 359
    double fps = 0;              // of the frames that the conversion delivers; 0: not known
    bool variable_rate = false;  // frames of the file do not come at one rate
};

// All zero for a file that ffprobe cannot read, or without ffprobe.
ClipFacts ProbeClip(const std::string& path);

// The facts in ffprobe's json.
ClipFacts ParseProbe(const std::string& text);

// Throws Error if the clip is to be shown rotated, other than upside down: the conversion would
// turn it, but its size is read unturned, which scrambles every frame. The message says how to bake
// the rotation in.
void RefuseRotated(const std::string& path, const ClipFacts& facts);

}  // namespace lab
