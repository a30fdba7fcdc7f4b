// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/block_fetch.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int32_t kBorder = 2;

size_t Bytes(int32_t n) {
    return static_cast<size_t>(n);
}

}  // namespace

void BlockFetch_Extend(const uint8_t* pY, int32_t nWidth, int32_t nHeight, int32_t x0, int32_t y0,
                       int32_t nWindow, uint8_t* pBlkBuf) {
    const int32_t W = nWindow;
    const int32_t x1 = std::max(x0, 0);
    const int32_t y1 = std::max(y0, 0);
    const int32_t cw = std::min(W - (x1 - x0), nWidth - x1);
    const int32_t ch = std::min(W - (y1 - y0), nHeight - y1);
    const int32_t lc = x1 - x0;       // first column from the frame
    const int32_t rc = x1 + cw - x0;  // first column after it
    const int32_t tr = y1 - y0;       // first row from the frame
    const int32_t br = y1 + ch - y0;  // first row after it
    std::memset(pBlkBuf, 0, Bytes(W * W));
    for (int32_t r = 0; r < ch; ++r) {
        uint8_t* pRow = pBlkBuf + (tr + r) * W;
        std::memcpy(pRow + lc, pY + int64_t{y1 + r} * nWidth + x1, Bytes(cw));
        std::memset(pRow, pRow[lc], Bytes(lc));
        std::memset(pRow + rc, pRow[rc - 1], Bytes(W - rc));
    }
    // Columns first, so that these rows carry their padded ends into the corners.
    for (int32_t r = 0; r < tr; ++r) std::memcpy(pBlkBuf + r * W, pBlkBuf + tr * W, Bytes(W));
    for (int32_t r = br; r < W; ++r) {
        std::memcpy(pBlkBuf + r * W, pBlkBuf + (br - 1) * W, Bytes(W));
    }
}

void BlockFetch_Zero(const uint8_t* pY, int32_t nWidth, int32_t nHeight, int32_t x0, int32_t y0,
                     int32_t nBlock, uint8_t* pBlkBuf) {
    const int32_t W = nBlock + 2 * kBorder;
    const int32_t cw = std::min(nBlock, nWidth - x0);
    const int32_t ch = std::min(nBlock, nHeight - y0);
    std::memset(pBlkBuf, 0, Bytes(W * W));
    for (int32_t r = 0; r < ch; ++r) {
        std::memcpy(pBlkBuf + (kBorder + r) * W + kBorder, pY + int64_t{y0 + r} * nWidth + x0,
                    Bytes(cw));
    }
}

void BlockFetch_Replicate(const uint8_t* pY, int32_t nWidth, int32_t nHeight, int32_t x0,
                          int32_t y0, int32_t nBlock, uint8_t* pBlkBuf) {
    BlockFetch_Zero(pY, nWidth, nHeight, x0, y0, nBlock, pBlkBuf);
    const int32_t W = nBlock + 2 * kBorder;
    const int32_t nFirst = kBorder;
    const int32_t nLast = kBorder + nBlock - 1;
    for (int32_t r = nFirst; r <= nLast; ++r) {
        uint8_t* pRow = pBlkBuf + r * W;
        std::memset(pRow, pRow[nFirst], kBorder);
        std::memset(pRow + nLast + 1, pRow[nLast], kBorder);
    }
    // Columns first, so that the corners hold the block's corner pixels.
    for (int32_t r = 0; r < kBorder; ++r) {
        std::memcpy(pBlkBuf + r * W, pBlkBuf + nFirst * W, Bytes(W));
        std::memcpy(pBlkBuf + (nLast + 1 + r) * W, pBlkBuf + nLast * W, Bytes(W));
    }
}
