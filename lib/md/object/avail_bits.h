// Walks over the avail bitmap: bit i & 7 of byte i >> 3 tells whether block i is available. A zero
// byte lets a reader pass eight blocks at once.
#pragma once

#include <algorithm>
#include <cstdint>

inline bool BlockAvailable(const uint8_t* pAvailBits, int32_t i) {
    return ((pAvailBits[i >> 3] >> (i & 7)) & 1) != 0;
}

// Calls fnTake(j) for every available block j below nBlocks, in ascending order.
template <typename Take>
void ForEachAvailable(const uint8_t* pAvailBits, int32_t nBlocks, Take fnTake) {
    for (int32_t b = 0; b < (nBlocks + 7) / 8; ++b) {
        if (pAvailBits[b] == 0) continue;
        const int32_t nEnd = std::min(8 * b + 8, nBlocks);
        for (int32_t j = 8 * b; j < nEnd; ++j) {
            if (BlockAvailable(pAvailBits, j)) fnTake(j);
        }
    }
}
