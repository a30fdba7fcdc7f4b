// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The window that weights a pixel's gradient magnitude by its distance from the block's centre.
#pragma once

#include <cstdint>

// Fills rows and columns 0 to nSize - 1 (1 to 32) of `pTable`, 32 rows of 32 bytes; the rest stays
// as it is. Weight of offsets i, j: nScale * exp(-(i*i + j*j) / (2 sigma^2)), rounded to nearest.
// For an even size the two middle rows and columns all have offset 0. The one floating-point step
// of the feature path, run once at start.
void GaussianWindowInit(double dSigma, int32_t nSize, int32_t nScale, uint8_t* pTable);
