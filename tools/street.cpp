// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/street.h"

#include <algorithm>
#include <cstdlib>

#include "tools/hash.h"

namespace {

constexpr int32_t kStepFrames = 16;  // frames of one full swing of the legs

constexpr Colour kWall = {150, 118, 138};
constexpr Colour kGround = {104, 116, 122};
constexpr Colour kSkin = {190, 108, 150};
constexpr Colour kJacket = {40, 116, 176};
constexpr int32_t kCheck = 150;  // luma of a light check of the jacket above its dark ones
constexpr Colour kTrousers = {44, 140, 124};

int32_t Distance(int32_t a, int32_t b) {
    return std::abs(a - b);
}

}  // namespace

int32_t Texture(int32_t nX, int32_t nY, int32_t nCell, uint32_t nSeed) {
    const auto Corner = [&](int32_t nDx, int32_t nDy) {
        return static_cast<int32_t>(Hash(static_cast<uint32_t>(nX / nCell + nDx),
                                         static_cast<uint32_t>(nY / nCell + nDy), nSeed) &
                                    255U);
    };
    const int32_t fx = nX % nCell;
    const int32_t fy = nY % nCell;
    const int32_t nUpper = Corner(0, 0) * (nCell - fx) + Corner(1, 0) * fx;
    const int32_t nLower = Corner(0, 1) * (nCell - fx) + Corner(1, 1) * fx;
    return (nUpper * (nCell - fy) + nLower * fy) / (nCell * nCell);
}

Colour StreetAt(int32_t x, int32_t y, int32_t nHeight) {
    if (y >= nHeight * 2 / 5) {
        const int32_t nRough = Texture(x, y, 5, 1) + Texture(x, y, 17, 2);
        return {kGround.nY + (nRough - 256) / 6, kGround.nU, kGround.nV};
    }
    const int32_t nRow = y / 10;
    const bool bJoint = y % 10 == 0 || (x + (nRow % 2) * 12) % 24 == 0;
    const int32_t nStain = Texture(x, y, 23, 3) - 128;
    return {kWall.nY + nStain / 6 - (bJoint ? 40 : 0), kWall.nU, kWall.nV};
}

int32_t SwingAt(int32_t nFrame) {
    const int32_t nPhase = nFrame % kStepFrames * 56 / kStepFrames;  // 0 to 55
    return nPhase < 28 ? nPhase - 14 : 42 - nPhase;
}

bool FigureAt(int32_t x, int32_t y, const Pose& tPose, Colour* pColour) {
    // In hundredths of the figure's height, from its crown.
    const int32_t u = (x - tPose.nCentre) * 100 / tPose.nTall;
    const int32_t v = (y - tPose.nTop) * 100 / tPose.nTall;
    if (y < tPose.nTop || v >= 100 || Distance(u, 0) > 24) return false;
    const int32_t nLeg = tPose.nSwing * (v - 52) / 48;
    const int32_t nArm = -tPose.nSwing * (v - 18) / 34;
    if (u * u + (v - 8) * (v - 8) <= 64) {
        *pColour = kSkin;
    } else if (v >= 17 && v < 54 && Distance(u, 0) <= 10) {
        *pColour = kJacket;
        if ((v / 6 + (u + 60) / 6) % 2 != 0) pColour->nY += kCheck;
    } else if (v >= 18 && v < 52 && (Distance(u, nArm) <= 4 || Distance(u, -nArm) <= 4)) {
        *pColour = kJacket;
    } else if (v >= 52 && (Distance(u, nLeg) <= 5 || Distance(u, -nLeg) <= 5)) {
        *pColour = kTrousers;
    } else {
        return false;
    }
    return true;
}

uint8_t Sensed(int32_t nValue, int32_t nReach, int32_t x, int32_t y, int32_t nFrame) {
    const uint32_t n = Hash(static_cast<uint32_t>(x), static_cast<uint32_t>(y),
                            static_cast<uint32_t>(nFrame) + 100U);
    // Two even draws, so that small steps are more frequent than large ones.
    const uint32_t nDraw = static_cast<uint32_t>(nReach) + 1U;
    const int32_t nNoisy = nValue + static_cast<int32_t>(n % nDraw + (n >> 8) % nDraw) - nReach;
    return static_cast<uint8_t>(std::clamp(nNoisy, 0, 255));
}
