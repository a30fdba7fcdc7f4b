// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A textured figure that walks from left to right across a textured still scene, with sensor noise.
// Integer arithmetic and a fixed hash only: the same numbers give the same bytes on every machine.
#pragma once

#include <cstdint>
#include <string>

struct WalkerClip {
    int32_t nWidth;   // luma pixels, even
    int32_t nHeight;  // luma pixels, even
    int32_t nFrames;  // the walk takes all of them
};

// Frame nFrame, 0 to nFrames - 1, as raw 4:2:0.
std::string WalkerFrame(const WalkerClip& tClip, int32_t nFrame);
