// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/inv_sqrt.h"

namespace {

constexpr int kSteps = 15;
constexpr uint32_t kMask26 = 0x3FFFFFF;
constexpr uint32_t kMask27 = 0x7FFFFFF;

}  // namespace

int32_t inv_sqrt_core_hw(uint32_t nNormalised, uint16_t* pInvSqrtTmp) {
    uint32_t x_array[kSteps + 1];  // the halving term
    uint32_t w_array[kSteps + 1];  // the running remainder
    uint32_t p_array[kSteps + 1];  // the running product term
    uint32_t p_array1[kSteps];     // per step, the trial subtrahend
    uint32_t p_array2[kSteps];     // per step, the next product term on success
    x_array[0] = nNormalised << 8;
    p_array[0] = nNormalised << 8;
    w_array[0] = 0x1000000 - (nNormalised << 8);
    uint32_t nWord = 0x8000;
    for (int i = 0; i < kSteps; ++i) {
        x_array[i + 1] = (x_array[i] >> 1) & kMask26;
        p_array1[i] = (x_array[i + 1] + 2 * p_array[i]) & kMask26;
        p_array2[i] = (p_array[i] + x_array[i + 1]) & kMask26;
        const uint32_t t = (2 * w_array[i] - p_array1[i]) & kMask27;
        const uint32_t b = (t >> 26) == 0 ? 1 : 0;
        nWord |= b << (14 - i);
        w_array[i + 1] = b != 0 ? t : (2 * w_array[i]) & kMask26;
        p_array[i + 1] = b != 0 ? p_array2[i] : p_array[i];
    }
    *pInvSqrtTmp = static_cast<uint16_t>(nWord);
    return w_array[kSteps] == 0 ? 0 : 1;
}

int32_t inv_sqrt_hw(uint32_t nInput, uint16_t* pResult) {
    // e counts the pairs of bits below the highest pair that is not 0; the shift by 14 - 2e puts
    // that pair at bits 15-14.
    int32_t e = 9;
    while (e > 0 && ((nInput >> (2 * e)) & 3) == 0) --e;
    const int32_t nShift = 14 - 2 * e;
    uint32_t m = nShift >= 0 ? nInput << nShift : nInput >> -nShift;
    if ((nInput & 0xFFFFF) == 0) m = 0;
    uint16_t inv_sqrt_tmp = 0;
    const int32_t nRemainder = inv_sqrt_core_hw(m, &inv_sqrt_tmp);
    *pResult = nRemainder == 0 ? uint16_t{0} : static_cast<uint16_t>(inv_sqrt_tmp >> e);
    return 1;
}
