// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/walker.h"

#include "tools/street.h"

namespace {

constexpr int32_t kSensorNoise = 3;  // luma levels to either side

Pose PoseAt(int32_t nFrame, const WalkerClip& tClip) {
    Pose t{};
    t.nTall = tClip.nHeight * 9 / 20;
    t.nTop = tClip.nHeight * 2 / 5;
    // From a tenth of the width to nine tenths.
    t.nCentre = tClip.nWidth / 10 + tClip.nWidth * 4 * nFrame / (5 * tClip.nFrames);
    t.nSwing = SwingAt(nFrame);
    return t;
}

}  // namespace

std::string WalkerFrame(const WalkerClip& tClip, int32_t nFrame) {
    const Pose tPose = PoseAt(nFrame, tClip);
    const auto nPixels = static_cast<size_t>(tClip.nWidth) * static_cast<size_t>(tClip.nHeight);
    std::string sFrame(nPixels * 3 / 2, '\0');
    char* pY = sFrame.data();
    char* pU = pY + nPixels;
    char* pV = pU + nPixels / 4;
    for (int32_t y = 0; y < tClip.nHeight; ++y) {
        for (int32_t x = 0; x < tClip.nWidth; ++x) {
            Colour tColour = StreetAt(x, y, tClip.nHeight);
            FigureAt(x, y, tPose, &tColour);
            *pY++ = static_cast<char>(Sensed(tColour.nY, kSensorNoise, x, y, nFrame));
            if (x % 2 == 0 && y % 2 == 0) {
                *pU++ = static_cast<char>(tColour.nU);
                *pV++ = static_cast<char>(tColour.nV);
            }
        }
    }
    return sFrame;
}
