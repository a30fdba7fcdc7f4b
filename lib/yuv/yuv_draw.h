// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Discs and rectangles on a 4:2:0 frame. Coordinates are aligned to even luma pixels, shapes are
// clipped to the frame, and a shape with no size draws nothing.
#pragma once

#include "yuv/yuv_frame.h"

// Fills a disc in all three planes; it is 2r + 1 pixels wide for the even radius r. A chroma sample
// is painted as soon as one of its luma pixels is.
void YuvFillCircle(uint8_t* pYuv, int32_t nW, int32_t nH, int32_t nCx, int32_t nCy, int32_t nRadius,
                   const RgbColour pRgb);

// Draws a rectangle with lines of width nLineW (rounded up to even) that grow inwards, or fills it
// when nLineW is 0 or negative or its lines meet. A rectangle that starts left of or above the
// frame is moved to column or row 0 with its size kept; right and bottom edges cut.
void YuvDrawRect(uint8_t* pYuv, int32_t nW, int32_t nH, const YuvRect* pRc, const RgbColour pRgb,
                 int32_t nLineW);

// Full-range conversion in double precision, half rounds up, clamped to 0 to 255.
void RgbToYuv(uint8_t nR, uint8_t nG, uint8_t nB, uint8_t* pY, uint8_t* pU, uint8_t* pV);
