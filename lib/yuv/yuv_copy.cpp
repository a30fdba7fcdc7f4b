// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "yuv/yuv_copy.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Row by row; a row that would leave either plane (at odd sizes only) is cut to what is in both.
void CopyRows(const uint8_t* pSrc, const YuvPlane& tSrc, int64_t nFrom, uint8_t* pDst,
              const YuvPlane& tDst, int64_t nTo, int32_t nRows, int32_t nBytes) {
    for (int32_t r = 0; r < nRows; ++r) {
        const int64_t nFit = std::min({int64_t{nBytes}, tSrc.nSize - nFrom, tDst.nSize - nTo});
        if (nFit <= 0) return;
        std::memcpy(pDst + tDst.nStart + nTo, pSrc + tSrc.nStart + nFrom,
                    static_cast<size_t>(nFit));
        nFrom += tSrc.nPitch;
        nTo += tDst.nPitch;
    }
}

}  // namespace

void YuvCpyRoi(const uint8_t* pSrc, int32_t nSrcW, int32_t nSrcH, const YuvRect* pSrcRc,
               uint8_t* pDst, int32_t nDstW, int32_t nDstH, const YuvRect* pDstRc) {
    const YuvRect& s = *pSrcRc;
    const YuvRect& d = *pDstRc;
    if (s.x + s.w > nSrcW || s.y + s.h > nSrcH || d.x + d.w > nDstW || d.y + d.h > nDstH ||
        s.w != d.w || s.h != d.h) {
        std::printf("YuvCpyRoi: pSrcRc or pDstRc error.\n");
        std::exit(-1);
    }
    CopyRows(pSrc, LumaPlane(nSrcW, nSrcH), int64_t{s.y} * nSrcW + s.x, pDst,
             LumaPlane(nDstW, nDstH), int64_t{d.y} * nDstW + d.x, d.h, d.w);
    for (int32_t i = 0; i < 2; ++i) {
        CopyRows(pSrc, ChromaPlane(nSrcW, nSrcH, i), ((int64_t{s.y} * nSrcW) >> 2) + (s.x >> 1),
                 pDst, ChromaPlane(nDstW, nDstH, i), ((int64_t{d.y} * nDstW) >> 2) + (d.x >> 1),
                 d.h >> 1, d.w >> 1);
    }
}
