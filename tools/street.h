// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What the generated clips show: a street with a brick wall, and figures that walk on it. Integer
// arithmetic and a fixed hash only: the same numbers give the same picture on every machine.
#pragma once

#include <cstdint>

struct Colour {
    int32_t nY, nU, nV;  // of 8-bit 4:2:0; luma may be outside 0 to 255 until it is sensed
};

// Where a figure is in a frame, in pixels.
struct Pose {
    int32_t nCentre;  // x of its middle
    int32_t nTop;     // y of its crown
    int32_t nTall;    // height, at least 1
    int32_t nSwing;   // of the front foot, -14 to 14 hundredths of the height
};

// Noise on a lattice of nCell pixels, blended between its corners: 0 to 255. Coordinates from 0.
int32_t Texture(int32_t nX, int32_t nY, int32_t nCell, uint32_t nSeed);

// A brick wall over the upper two fifths of nHeight, rough ground below.
Colour StreetAt(int32_t x, int32_t y, int32_t nHeight);

// Swing of the legs in frame nFrame of a walk.
int32_t SwingAt(int32_t nFrame);

// Colour of the figure at a pixel; false, with nothing stored, where it does not cover the pixel.
bool FigureAt(int32_t x, int32_t y, const Pose& tPose, Colour* pColour);

// Luma as a sensor delivers it: steps of up to nReach to either side, then cut to 0 to 255.
uint8_t Sensed(int32_t nValue, int32_t nReach, int32_t x, int32_t y, int32_t nFrame);
