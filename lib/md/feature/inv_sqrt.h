// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Fixed-point inverse square root, digit by digit, as the chip computes it: only additions,
// subtractions and shifts.
#pragma once

#include <cstdint>

// *pResult = about 65536 / sqrt(nInput), rounded down, 0 for input 0. Input: 20 bits, 1 to 650251
// from the feature stage; bits above bit 19 take no part in the range normalisation. Exact powers
// of four come out one unit low (input 1 gives 65535). Always returns 1.
int32_t inv_sqrt_hw(uint32_t nInput, uint16_t* pResult);

// The digit loop on a normalised value, 2^14 to 2^16 - 1: *pInvSqrtTmp = about 2^23 / sqrt(m), one
// integer bit set and 15 digits. Returns 0 when the final remainder is 0, else 1.
int32_t inv_sqrt_core_hw(uint32_t nNormalised, uint16_t* pInvSqrtTmp);
