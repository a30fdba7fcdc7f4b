// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Fetches the window of a block: the block with a border of 2 pixels on all four sides, which the
// 5-tap gradient filters reach into. The three functions differ in what the border holds.
//
// Window: W * W bytes, W = B + 4 for block size B, row pitch W. The block is at columns and rows 2
// to B + 1. Source: luma plane of nWidth x nHeight bytes, row pitch nWidth; only read. The block
// is wholly inside the frame.
#pragma once

#include <cstdint>

// kPadNeighbours: the pixels around the block, those beyond the frame repeated from its edge. x0,
// y0 are the window's corner in the frame (-2 or more), nWindow is W.
void BlockFetch_Extend(const uint8_t* pY, int32_t nWidth, int32_t nHeight, int32_t x0, int32_t y0,
                       int32_t nWindow, uint8_t* pBlkBuf);

// kPadZeros. x0, y0 are the block's corner in the frame, nBlock is B.
void BlockFetch_Zero(const uint8_t* pY, int32_t nWidth, int32_t nHeight, int32_t x0, int32_t y0,
                     int32_t nBlock, uint8_t* pBlkBuf);

// kPadEdge: the block's own edge pixels. Arguments as for kPadZeros.
void BlockFetch_Replicate(const uint8_t* pY, int32_t nWidth, int32_t nHeight, int32_t x0,
                          int32_t y0, int32_t nBlock, uint8_t* pBlkBuf);
