// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The fast walk against the plain one: numbers for a setting, then bytes for the pictures.
#include <fuzzer/FuzzedDataProvider.h>

#include "tests/fuzz/exit_trap.h"
#include "tests/support/walks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nData) {
    FuzzedDataProvider tData(pData, nData);
    const Picker Pick = [&](int32_t a, int32_t b) { return tData.ConsumeIntegralInRange(a, b); };
    // Narrow, or wide enough for a second chunk of a row.
    const int32_t nWidth = Pick(16, 56) + (Pick(0, 7) == 7 ? 496 : 0);
    const Setting s = PickSetting(Pick, nWidth, Pick(16, 40));
    const size_t nShift = static_cast<size_t>(Pick(0, 255));
    Plane aBytes = tData.ConsumeRemainingBytes<uint8_t>();
    aBytes.push_back(0);
    // Frames are windows into the same bytes, each further on.
    std::vector<Plane> aFrames(static_cast<size_t>(s.nFrames));
    const auto nPixels = static_cast<size_t>(s.nWidth * s.nHeight);
    for (size_t f = 0; f < aFrames.size(); ++f) {
        for (size_t i = 0; i < nPixels; ++i) {
            aFrames[f].push_back(aBytes[(i + f * nShift) % aBytes.size()]);
        }
    }
    const Walked tPlain = Walk(s, aFrames, nullptr);
    for (const RowKernels& tPath : OfferedKernels()) {
        const std::string sFault = Difference(tPlain, Walk(s, aFrames, &tPath));
        Require(sFault.empty(), (sFault + " " + tPath.szName + " " + s.Text()).c_str());
    }
    return 0;
}
