// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Walks over the avail bitmap: bit i & 7 of byte i >> 3 is 1 if block i is available.
#pragma once

#include <bit>
#include <cstdint>

inline bool BlockAvailable(const uint8_t* pAvailBits, int32_t i) {
    return ((pAvailBits[i >> 3] >> (i & 7)) & 1) != 0;
}

// Calls fnTake(j) for every available block j of nFirst to nEnd - 1, in ascending order.
template <typename Take>
void ForEachAvailable(const uint8_t* pAvailBits, int32_t nFirst, int32_t nEnd, Take fnTake) {
    for (int32_t b = nFirst / 8; b < (nEnd + 7) / 8; ++b) {
        for (uint32_t nBits = pAvailBits[b]; nBits != 0; nBits &= nBits - 1) {
            const int32_t j = 8 * b + std::countr_zero(nBits);
            if (j >= nFirst && j < nEnd) fnTake(j);
        }
    }
}
