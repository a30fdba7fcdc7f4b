// Walks over the avail bitmap: bit i & 7 of byte i >> 3 tells whether block i is available.
#pragma once

#include <bit>
#include <cstdint>

inline bool BlockAvailable(const uint8_t* pAvailBits, int32_t i) {
    return ((pAvailBits[i >> 3] >> (i & 7)) & 1) != 0;
}

// Calls fnTake(j) for every available block j below nBlocks, in ascending order. Bits behind the
// last block are 0.
template <typename Take>
void ForEachAvailable(const uint8_t* pAvailBits, int32_t nBlocks, Take fnTake) {
    for (int32_t b = 0; b < (nBlocks + 7) / 8; ++b) {
        for (uint32_t nBits = pAvailBits[b]; nBits != 0; nBits &= nBits - 1) {
            fnTake(8 * b + std::countr_zero(nBits));
        }
    }
}
