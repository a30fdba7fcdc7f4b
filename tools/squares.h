// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Squares of hard texture on a softly textured ground. The numbers below choose which cases of the
// detection a clip reaches; the same numbers give the same bytes on every machine.
#pragma once

#include <cstdint>
#include <string>

struct SquaresClip {
    int nFrames = 8;
    int nSquares = 1, nSize = 40;
    int nStepY = 17;            // square k is 48 pixels right of square k - 1, and this far down
    int nSpeed = 0;             // pixels a frame to the right, half of it down, wrapping round
    int nBoil = 0;              // non-zero: new texture every nBoil frames
    int nStop = 1000;           // squares stop at this frame
    int nFrom = 0, nTo = 1000;  // the squares show in frames nFrom to nTo - 1
    int nContrast = 255;        // of the squares' texture
    int nNoise = 0;             // largest step up of a pixel
    int nFlicker = 0;           // luma step of every second frame
    int nCut = 1000;            // frame of a scene cut
    int nTail = 0;              // bytes of a frame cut short, after the last whole one
};

// Reads one "name=number", as in "size=40" or "stepy=-21", into its member. False for any other
// text, and for "frames", which the commands give in a place of its own.
bool SquaresSet(SquaresClip* pClip, const std::string& sText);

// Frame f as raw 4:2:0, with flat chroma. Any size.
std::string SquaresFrame(const SquaresClip& t, int nWidth, int nHeight, int f);

// All frames and the tail.
std::string SquaresBytes(const SquaresClip& t, int nWidth, int nHeight);
