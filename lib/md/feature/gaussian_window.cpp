// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/gaussian_window.h"

#include <cmath>

#include "md/md_result.h"

namespace {

uint8_t Weight(double dSigma, int32_t nScale, int32_t i, int32_t j) {
    const double dDenominator = (2.0 * dSigma) * dSigma;
    const double dExponent = static_cast<double>(-(i * i + j * j)) / dDenominator;
    return static_cast<uint8_t>(static_cast<int32_t>(nScale * std::exp(dExponent) + 0.5));
}

}  // namespace

void GaussianWindowInit(double dSigma, int32_t nSize, int32_t nScale, uint8_t* pTable) {
    const int32_t nHalf = nSize >> 1;
    const int32_t nLast = nSize - 1;
    const auto Entry = [&](int32_t r, int32_t c) -> uint8_t& {
        return pTable[r * kGaussPitch + c];
    };
    if (nSize % 2 == 0) {
        for (int32_t i = 1 - nHalf, ii = 0; i <= 0; ++i, ++ii) {
            for (int32_t j = 1 - nHalf, jj = 0; j <= 0; ++j, ++jj) {
                const uint8_t nWeight = Weight(dSigma, nScale, i, j);
                Entry(nLast - ii, nLast - jj) = nWeight;
                Entry(nLast - ii, jj) = nWeight;
                Entry(ii, nLast - jj) = nWeight;
                Entry(ii, jj) = nWeight;
            }
        }
    } else {
        for (int32_t i = -nHalf; i <= nHalf; ++i) {
            for (int32_t j = -nHalf; j <= nHalf; ++j) {
                Entry(i + nHalf, j + nHalf) = Weight(dSigma, nScale, i, j);
            }
        }
    }
}
