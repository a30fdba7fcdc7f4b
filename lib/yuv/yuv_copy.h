// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Copy of a region between two frames, which may differ in width.
#pragma once

#include "yuv/yuv_frame.h"

// Copies pSrcRc of the source to pDstRc of the destination, all three planes. Both regions must be
// within their frames' right and bottom edges and have one size; else a message on standard output
// and the process ends with status -1 before a byte is written.
void YuvCpyRoi(const uint8_t* pSrc, int32_t nSrcW, int32_t nSrcH, const YuvRect* pSrcRc,
               uint8_t* pDst, int32_t nDstW, int32_t nDstH, const YuvRect* pDstRc);
