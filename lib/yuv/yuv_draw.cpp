// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "yuv/yuv_draw.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

uint8_t ClampByte(double dValue) {
    if (dValue < 0.0) return 0;
    if (dValue > 255.0) return 255;
    return static_cast<uint8_t>(static_cast<int32_t>(dValue));
}

void PutSample(uint8_t* pYuv, const YuvPlane& tPlane, int64_t nAt, uint8_t nValue) {
    if (nAt < tPlane.nSize) pYuv[tPlane.nStart + nAt] = nValue;
}

void FillRows(uint8_t* pYuv, const YuvPlane& tPlane, const YuvRect& rc, uint8_t nValue) {
    for (int32_t r = 0; r < rc.h; ++r) {
        const int64_t nAt = int64_t{rc.y + r} * tPlane.nPitch + rc.x;
        const int64_t nFit = std::min(int64_t{rc.w}, tPlane.nSize - nAt);
        if (nFit <= 0) return;
        std::memset(pYuv + tPlane.nStart + nAt, nValue, static_cast<size_t>(nFit));
    }
}

// Left, top, right and bottom band, or the whole rectangle. Lines as wide as the rectangle or wider
// fill it.
void DrawBands(uint8_t* pYuv, const YuvPlane& tPlane, const YuvRect& rc, int32_t nLineW, bool bFill,
               uint8_t nValue) {
    if (bFill || nLineW > rc.w || nLineW > rc.h) {
        FillRows(pYuv, tPlane, rc, nValue);
        return;
    }
    FillRows(pYuv, tPlane, {rc.x, rc.y, nLineW, rc.h}, nValue);
    FillRows(pYuv, tPlane, {rc.x, rc.y, rc.w, nLineW}, nValue);
    FillRows(pYuv, tPlane, {rc.x + rc.w - nLineW, rc.y, nLineW, rc.h}, nValue);
    FillRows(pYuv, tPlane, {rc.x, rc.y + rc.h - nLineW, rc.w, nLineW}, nValue);
}

}  // namespace

void RgbToYuv(uint8_t nR, uint8_t nG, uint8_t nB, uint8_t* pY, uint8_t* pU, uint8_t* pV) {
    const double R = nR;
    const double G = nG;
    const double B = nB;
    *pY = ClampByte(0.299 * R + 0.587 * G + 0.114 * B + 0.5);
    *pU = ClampByte(-0.169 * R - 0.331 * G + 0.5 * B + 0.5 + 128.0);
    *pV = ClampByte(0.5 * R - 0.419 * G - 0.081 * B + 0.5 + 128.0);
}

void YuvFillCircle(uint8_t* pYuv, int32_t nW, int32_t nH, int32_t nCx, int32_t nCy, int32_t nRadius,
                   const RgbColour pRgb) {
    if (nRadius <= 0) return;
    const int32_t cx = nCx & ~1;
    const int32_t cy = nCy & ~1;
    const int32_t r = nRadius & ~1;
    const int32_t x0 = std::max(cx - r, 0);
    const int32_t x1 = std::min(cx + r, nW - 1);
    const int32_t y0 = std::max(cy - r, 0);
    const int32_t y1 = std::min(cy + r, nH - 1);
    uint8_t nY, nU, nV;
    RgbToYuv(pRgb[0], pRgb[1], pRgb[2], &nY, &nU, &nV);
    const YuvPlane tY = LumaPlane(nW, nH);
    const YuvPlane tU = ChromaPlane(nW, nH, 0);
    const YuvPlane tV = ChromaPlane(nW, nH, 1);
    // Row starts at column x0; the chroma one serves two luma rows.
    int64_t nLuma = int64_t{y0} * nW + x0;
    int64_t nChroma = ((int64_t{y0} * nW) >> 2) + (x0 >> 1);
    for (int32_t dy = y0 - cy; dy <= y1 - cy; ++dy) {
        for (int32_t dx = x0 - cx, i = 0; dx <= x1 - cx; ++dx, ++i) {
            if (dx * dx + dy * dy > r * r) continue;
            PutSample(pYuv, tY, nLuma + i, nY);
            PutSample(pYuv, tU, nChroma + (i >> 1), nU);
            PutSample(pYuv, tV, nChroma + (i >> 1), nV);
        }
        nLuma += nW;
        if ((dy & 1) != 0) nChroma += nW >> 1;
    }
}

void YuvDrawRect(uint8_t* pYuv, int32_t nW, int32_t nH, const YuvRect* pRc, const RgbColour pRgb,
                 int32_t nLineW) {
    if (pRc->w <= 0 || pRc->h <= 0) return;
    const int32_t nLine = nLineW > 0 ? nLineW + (nLineW & 1) : 0;
    const int32_t x = std::max(pRc->x & ~1, 0);
    const int32_t y = std::max(pRc->y & ~1, 0);
    // The far edges follow from the clipped start.
    const YuvRect rc{x, y, std::min((pRc->w & ~1) + x - 1, nW - 1) - x + 1,
                     std::min((pRc->h & ~1) + y - 1, nH - 1) - y + 1};
    if (rc.w <= 0 || rc.h <= 0) return;
    uint8_t nY, nU, nV;
    RgbToYuv(pRgb[0], pRgb[1], pRgb[2], &nY, &nU, &nV);
    const YuvRect rcChroma{rc.x >> 1, rc.y >> 1, rc.w >> 1, rc.h >> 1};
    const bool bFill = nLine == 0;
    DrawBands(pYuv, LumaPlane(nW, nH), rc, nLine, bFill, nY);
    DrawBands(pYuv, ChromaPlane(nW, nH, 0), rcChroma, nLine >> 1, bFill, nU);
    DrawBands(pYuv, ChromaPlane(nW, nH, 1), rcChroma, nLine >> 1, bFill, nV);
}
