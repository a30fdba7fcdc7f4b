// Clips for whole runs: squares of hard texture on a softly textured ground, from their numbers
// alone.
#pragma once

#include <cstdint>
#include <string>

struct Clip {
    int nFrames = 8;
    int nSquares = 1, nSize = 40;
    int nStepY = 17;            // square k stands 48 pixels right of square k - 1, this far down
    int nSpeed = 0;             // pixels a frame to the right, half of it down, wrapping round
    int nBoil = 0;              // non-zero: new texture every nBoil frames
    int nStop = 1000;           // squares stand still from this frame on
    int nFrom = 0, nTo = 1000;  // frames that show the squares
    int nContrast = 255;        // of the squares' texture
    int nNoise = 0;             // largest step up of a pixel
    int nFlicker = 0;           // luma step of every second frame
    int nCut = 1000;            // frame of a scene cut
    int nTail = 0;              // bytes of a frame cut short behind the last whole one
};

// All frames as raw 4:2:0, with flat chroma.
std::string ClipBytes(const Clip& t, int nWidth, int nHeight);

// 24 bits that follow from the three numbers and look like chance.
uint32_t Hash(uint32_t a, uint32_t b, uint32_t c);
