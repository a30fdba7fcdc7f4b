// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/scenes.h"

#include <algorithm>
#include <cstdlib>

#include "tools/hash.h"

namespace {

// nAt 0 to nOf, carried to 0 to nTo.
int32_t Part(int32_t nAt, int32_t nOf, int32_t nTo) {
    return static_cast<int32_t>(int64_t{nAt} * nTo / std::max(nOf, 1));
}

// Back and forth between -nReach and nReach in nPeriod frames.
int32_t Swing(int32_t nFrame, int32_t nPeriod, int32_t nReach) {
    const int32_t nPhase = nFrame % nPeriod;
    const int32_t nUp = nPhase < nPeriod / 2 ? nPhase : nPeriod - nPhase;
    return nUp * 4 * nReach / nPeriod - nReach;
}

Walker WalkerAt(const SceneClip& tClip, int32_t nCentre, int32_t nFrame, bool bMoves = true) {
    Walker t{};
    t.tPose.nCentre = nCentre;
    t.tPose.nTop = tClip.nHeight * 2 / 5;
    t.tPose.nTall = std::max(tClip.nHeight * 9 / 20, 1);
    t.tPose.nSwing = SwingAt(nFrame);
    t.bMoves = bMoves;
    return t;
}

// From left of the picture to right of it. A sixth of the clip before and after is empty.
int32_t Crossing(const SceneClip& tClip, int32_t nFrame) {
    const int32_t nStart = tClip.nFrames / 6;
    const int32_t nTime = std::clamp(nFrame - nStart, 0, tClip.nFrames - 2 * nStart);
    const int32_t nBeyond = tClip.nHeight / 5;  // half a figure is a tenth of the height wide
    return Part(nTime, tClip.nFrames - 2 * nStart, tClip.nWidth + 2 * nBeyond) - nBeyond;
}

Shot WalkerShot(const SceneClip& tClip, int32_t n) {
    return {.aWalkers = {WalkerAt(tClip, Crossing(tClip, n), n)}};
}

Shot TwoShot(const SceneClip& tClip, int32_t n) {
    Walker tNear = WalkerAt(tClip, Crossing(tClip, n), n);
    // The other one walks further off, to the left, and is half as tall.
    Walker tFar = WalkerAt(tClip, tClip.nWidth - Crossing(tClip, n), n + 5);
    tFar.tPose.nTall = std::max(tFar.tPose.nTall * 5 / 9, 1);
    return {.aWalkers = {tFar, tNear}};
}

// A fifth of the width in the whole clip.
Shot SlowShot(const SceneClip& tClip, int32_t n) {
    const int32_t nWay = Part(n, tClip.nFrames, tClip.nWidth / 5);
    return {.aWalkers = {WalkerAt(tClip, tClip.nWidth * 2 / 5 + nWay, n / 4)}};
}

// Walks to the middle, stops there for a third of the clip, walks on. The frames right after the
// stop are not judged: their reference is a frame of the walk.
Shot StopsShot(const SceneClip& tClip, int32_t n) {
    const int32_t nThird = tClip.nFrames / 3;
    const int32_t nWalked = n < nThird ? n : std::max(n - nThird, nThird);
    const int32_t nStart = -tClip.nHeight / 5;
    const int32_t nWay = tClip.nWidth - 2 * nStart;
    const bool bMoves = n < nThird || n >= 2 * nThird;
    Shot t{};
    t.aWalkers = {WalkerAt(tClip, nStart + Part(nWalked, 2 * nThird, nWay), nWalked, bMoves)};
    t.bJudged = bMoves || n >= nThird + 8;
    return t;
}

// Dusk, then a lamp that needs two frames to its full light.
Shot LightShot(const SceneClip& tClip, int32_t n) {
    const int32_t nOn = std::clamp(n - tClip.nFrames / 2, 0, 2);
    return {.nGain = 150 + 30 * nOn, .nLamp = 35 * nOn};
}

Shot CloudsShot(const SceneClip& tClip, int32_t n) {
    return {.nCloud = Part(n, tClip.nFrames, tClip.nWidth)};
}

Shot NightShot(const SceneClip&, int32_t) {
    return {.nGain = 64, .nNoise = 14};
}

Shot RainShot(const SceneClip&, int32_t) {
    return {.nGain = 200, .bRain = true};
}

Shot TreeShot(const SceneClip& tClip, int32_t n) {
    const int32_t nReach = std::max(tClip.nHeight / 36, 1);
    return {.nSway = Swing(n, 24, nReach), .bTree = true};
}

Shot ShakeShot(const SceneClip& tClip, int32_t n) {
    const auto Draw = [&](uint32_t nSeed) {
        const auto nReach = static_cast<uint32_t>(std::max(tClip.nHeight / 90, 1));
        // Two frames a step, as a pole swings in the wind.
        return static_cast<int32_t>(Hash(static_cast<uint32_t>(n / 2), nSeed, 40) %
                                    (2 * nReach + 1)) -
               static_cast<int32_t>(nReach);
    };
    return {.nPanX = Draw(1), .nPanY = Draw(2)};
}

// Across the picture in a twelfth of the clip, twice.
Shot InsectShot(const SceneClip& tClip, int32_t n) {
    const int32_t nFlight = std::max(tClip.nFrames / 12, 2);
    for (const int32_t nStart : {tClip.nFrames / 3, tClip.nFrames * 2 / 3}) {
        if (n < nStart || n >= nStart + nFlight) continue;
        return {.nInsect = Part(n - nStart, nFlight - 1, tClip.nWidth)};
    }
    return {};
}

Shot NothingShot(const SceneClip&, int32_t) {
    return {};
}

}  // namespace

const std::vector<SceneRow>& Scenes() {
    static const std::vector<SceneRow> aScenes = {
        {"walker", "one walker crosses from left to right", WalkerShot},
        {"two", "two walkers of different size pass each other", TwoShot},
        {"slow", "a walker who moves a fifth of the width in the whole clip", SlowShot},
        {"stops", "a walker who stops in the middle and walks on", StopsShot},
        {"light", "a light is switched on", LightShot},
        {"clouds", "shadows of clouds drift over the street", CloudsShot},
        {"night", "a dark street with strong sensor noise", NightShot},
        {"rain", "rain", RainShot},
        {"tree", "a tree whose crown sways", TreeShot},
        {"shake", "a camera that shakes", ShakeShot},
        {"insect", "an insect flies past the lens, twice", InsectShot},
        {"nothing", "nothing at all", NothingShot},
    };
    return aScenes;
}

namespace {

constexpr int32_t kPanRoom = 64;  // added to coordinates, so that a pan never makes them negative

// The crown is an ellipse of leaves; at (x, y) once the sway is taken out.
bool TreeAt(int32_t x, int32_t y, const SceneClip& tClip, int32_t nSway, Colour* pColour) {
    const int32_t nCentreX = tClip.nWidth * 3 / 4;
    const int32_t nCentreY = tClip.nHeight * 3 / 10;
    const int32_t nRadius = std::max(tClip.nHeight / 4, 1);
    if (std::abs(x - nCentreX) < tClip.nHeight / 45 && y >= nCentreY && y < tClip.nHeight * 3 / 4) {
        *pColour = {52, 120, 134};
        return true;
    }
    // The top moves most, the lower edge does not move.
    const int32_t nMoved = x - nSway * std::clamp(nCentreY + nRadius - y, 0, 2 * nRadius) / nRadius;
    const int32_t dx = nMoved - nCentreX;
    const int32_t dy = y - nCentreY;
    if (dx * dx + dy * dy > nRadius * nRadius) return false;
    const int32_t nLeaf = Texture(nMoved + kPanRoom, y, 6, 21);
    if (nLeaf < 70) return false;
    *pColour = {50 + nLeaf / 3, 112, 116};
    return true;
}

// Streaks that fall past the lens, drawn anew for each frame.
bool RainAt(int32_t x, int32_t y, const SceneClip& tClip, int32_t nFrame) {
    const int32_t nLong = std::max(tClip.nHeight / 12, 2);
    const uint32_t nColumn = Hash(static_cast<uint32_t>(x), static_cast<uint32_t>(nFrame), 31);
    if (nColumn % 10 != 0) return false;
    const auto nTop = static_cast<int32_t>((nColumn >> 8) % static_cast<uint32_t>(tClip.nHeight));
    return y >= nTop && y < nTop + nLong;
}

// A dark spot out of focus: luma to take away.
int32_t InsectAt(int32_t x, int32_t y, const SceneClip& tClip, int32_t nInsect) {
    const int32_t nRadius = std::max(tClip.nHeight / 8, 1);
    const int32_t dx = x - nInsect;
    const int32_t dy = y - tClip.nHeight / 3 - nInsect / 8;
    const int32_t nSquare = dx * dx + dy * dy;
    if (nSquare >= nRadius * nRadius) return 0;
    return 90 - 90 * nSquare / (nRadius * nRadius);
}

int32_t LitLuma(int32_t nY, int32_t x, int32_t y, const Shot& t, const SceneClip& tClip) {
    nY = nY * t.nGain / 256;
    if (t.nLamp > 0) {
        // Falls off with the distance from the lamp, to nothing at the far side.
        const int32_t nFar = std::abs(x - tClip.nWidth / 4) + std::abs(y - tClip.nHeight / 5);
        nY += t.nLamp * std::max(tClip.nWidth - nFar, 0) / tClip.nWidth;
    }
    if (t.nCloud >= 0) {
        const int32_t nCell = std::max(tClip.nWidth / 3, 1);
        nY -= Texture(x + 4 * tClip.nWidth - t.nCloud, y, nCell, 11) * nY / 640;
    }
    return nY;
}

// The light of a pixel, before the sensor.
Colour PixelAt(int32_t x, int32_t y, const Shot& t, const SceneClip& tClip, int32_t nFrame) {
    Colour tColour =
        StreetAt(x + t.nPanX + kPanRoom, y + t.nPanY + kPanRoom, tClip.nHeight + 5 * kPanRoom / 2);
    if (t.bTree) TreeAt(x, y, tClip, t.nSway, &tColour);
    for (const Walker& tWalker : t.aWalkers) FigureAt(x, y, tWalker.tPose, &tColour);
    // Less light, less colour.
    tColour.nU = 128 + (tColour.nU - 128) * t.nGain / 256;
    tColour.nV = 128 + (tColour.nV - 128) * t.nGain / 256;
    tColour.nY = LitLuma(tColour.nY, x, y, t, tClip);
    if (t.bRain && RainAt(x, y, tClip, nFrame)) tColour.nY += 45;
    if (t.nInsect >= 0) tColour.nY -= InsectAt(x, y, tClip, t.nInsect);
    return tColour;
}

struct Box {
    int32_t nLeft, nTop, nRight, nBottom;  // pixels, all inclusive
};

// The pixels of a picture that a figure covers; false if there are none.
bool CoveredBox(const Pose& tPose, const SceneClip& tClip, Box* pBox) {
    Box t{tClip.nWidth, tClip.nHeight, -1, -1};
    Colour tIgnored{};
    // A figure is less wide than tall.
    const int32_t nFrom = std::max(tPose.nCentre - tPose.nTall, 0);
    const int32_t nTo = std::min(tPose.nCentre + tPose.nTall, tClip.nWidth - 1);
    for (int32_t y = tPose.nTop; y < std::min(tPose.nTop + tPose.nTall, tClip.nHeight); ++y) {
        for (int32_t x = nFrom; x <= nTo; ++x) {
            if (!FigureAt(x, y, tPose, &tIgnored)) continue;
            t.nLeft = std::min(t.nLeft, x);
            t.nRight = std::max(t.nRight, x);
            t.nTop = std::min(t.nTop, y);
            t.nBottom = std::max(t.nBottom, y);
        }
    }
    *pBox = t;
    return t.nRight >= 0;
}

}  // namespace

std::string SceneFrame(const SceneRow& tScene, const SceneClip& tClip, int32_t nFrame) {
    const Shot tShot = tScene.fnShot(tClip, nFrame);
    const auto nPixels = static_cast<size_t>(tClip.nWidth) * static_cast<size_t>(tClip.nHeight);
    std::string sFrame(nPixels * 3 / 2, '\0');
    char* pY = sFrame.data();
    char* pU = pY + nPixels;
    char* pV = pU + nPixels / 4;
    for (int32_t y = 0; y < tClip.nHeight; ++y) {
        for (int32_t x = 0; x < tClip.nWidth; ++x) {
            const Colour tColour = PixelAt(x, y, tShot, tClip, nFrame);
            *pY++ = static_cast<char>(Sensed(tColour.nY, tShot.nNoise, x, y, nFrame));
            if (x % 2 == 0 && y % 2 == 0) {
                *pU++ = static_cast<char>(tColour.nU);
                *pV++ = static_cast<char>(tColour.nV);
            }
        }
    }
    return sFrame;
}

std::string SceneLabels(const SceneRow& tScene, const SceneClip& tClip) {
    std::string sRows = "first,last,left,top,right,bottom,what\n";
    for (int32_t n = 0; n < tClip.nFrames; ++n) {
        const Shot tShot = tScene.fnShot(tClip, n);
        const std::string sFrames = std::to_string(n) + "," + std::to_string(n) + ",";
        if (!tShot.bJudged) sRows += sFrames + ",,,,ignore\n";
        for (const Walker& tWalker : tShot.aWalkers) {
            Box t{};
            if (!tWalker.bMoves || !CoveredBox(tWalker.tPose, tClip, &t)) continue;
            sRows += sFrames + std::to_string(t.nLeft) + "," + std::to_string(t.nTop) + "," +
                     std::to_string(t.nRight) + "," + std::to_string(t.nBottom) + ",motion\n";
        }
    }
    return sRows;
}
