// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/scenes.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tools/walker.h"

namespace {

constexpr SceneClip kClip = {.nWidth = 96, .nHeight = 64, .nFrames = 36};

const SceneRow& SceneOf(const std::string& sName) {
    for (const SceneRow& tScene : Scenes()) {
        if (tScene.szName == sName) return tScene;
    }
    throw std::runtime_error("no scene " + sName);
}

struct Row {
    int nFirst = 0, nLast = 0, nLeft = 0, nTop = 0, nRight = 0, nBottom = 0;
};

// The rows that say "motion".
std::vector<Row> MotionRows(const SceneRow& tScene) {
    std::istringstream tText(SceneLabels(tScene, kClip));
    std::vector<Row> aRows;
    std::string sLine;
    while (std::getline(tText, sLine)) {
        Row t;
        if (std::sscanf(sLine.c_str(), "%d,%d,%d,%d,%d,%d,motion", &t.nFirst, &t.nLast, &t.nLeft,
                        &t.nTop, &t.nRight, &t.nBottom) == 6) {
            aRows.push_back(t);
        }
    }
    return aRows;
}

uint64_t Fnv(const std::string& sBytes, uint64_t n) {
    for (const char c : sBytes) n = (n ^ static_cast<uint8_t>(c)) * 0x100000001B3U;
    return n;
}

// The noise of a frame depends on its number only, so what differs from the empty street is the
// walker, and the labels have to hold him exactly.
TEST(Scenes, LabelsHoldAllThatDiffersFromTheEmptyStreet) {
    for (const char* szName : {"walker", "two", "slow"}) {
        const std::vector<Row> aRows = MotionRows(SceneOf(szName));
        ASSERT_FALSE(aRows.empty()) << szName;
        for (int n = 0; n < kClip.nFrames; ++n) {
            const std::string sScene = SceneFrame(SceneOf(szName), kClip, n);
            const std::string sEmpty = SceneFrame(SceneOf("nothing"), kClip, n);
            int nInside = 0;
            bool bLabelled = false;
            for (const Row& t : aRows) bLabelled |= t.nFirst <= n && n <= t.nLast;
            for (int y = 0; y < kClip.nHeight; ++y) {
                for (int x = 0; x < kClip.nWidth; ++x) {
                    const size_t i = static_cast<size_t>(y) * kClip.nWidth + static_cast<size_t>(x);
                    if (sScene[i] == sEmpty[i]) continue;
                    bool bHeld = false;
                    for (const Row& t : aRows) {
                        bHeld |= t.nFirst <= n && n <= t.nLast && t.nLeft <= x && x <= t.nRight &&
                                 t.nTop <= y && y <= t.nBottom;
                    }
                    ASSERT_TRUE(bHeld) << szName << " frame " << n << " at " << x << "," << y;
                    ++nInside;
                }
            }
            EXPECT_EQ(bLabelled, nInside > 0) << szName << " frame " << n;
        }
    }
}

TEST(Scenes, WhoStandsStillIsNotLabelled) {
    const SceneRow& tScene = SceneOf("stops");
    const std::string sLabels = SceneLabels(tScene, kClip);
    EXPECT_EQ(SceneFrame(tScene, kClip, 21).substr(0, 40),
              SceneFrame(SceneOf("nothing"), kClip, 21).substr(0, 40));
    EXPECT_NE(sLabels.find("\n11,11,"), std::string::npos);
    EXPECT_NE(sLabels.find("\n12,12,,,,,ignore"), std::string::npos);
    EXPECT_EQ(sLabels.find("\n22,22,"), std::string::npos);
    EXPECT_NE(sLabels.find("\n24,24,"), std::string::npos);
}

// What is no walker changes the picture and is not labelled.
TEST(Scenes, DisturbancesShowAndCarryNoLabels) {
    for (const char* szName : {"light", "clouds", "night", "rain", "tree", "shake", "insect"}) {
        EXPECT_TRUE(MotionRows(SceneOf(szName)).empty()) << szName;
        bool bShows = false;
        for (int n = 1; n < kClip.nFrames && !bShows; ++n) {
            bShows =
                SceneFrame(SceneOf(szName), kClip, n) != SceneFrame(SceneOf("nothing"), kClip, n);
        }
        EXPECT_TRUE(bShows) << szName;
    }
}

// Sweeps are compared across machines: a scene that comes out different there is a fault.
TEST(Scenes, BytesAreFrozen) {
    uint64_t nScenes = 0xCBF29CE484222325U;
    for (const SceneRow& tScene : Scenes()) {
        for (int n = 0; n < kClip.nFrames; n += 5)
            nScenes = Fnv(SceneFrame(tScene, kClip, n), nScenes);
        nScenes = Fnv(SceneLabels(tScene, kClip), nScenes);
    }
    EXPECT_EQ(nScenes, 2594603050666613427U);
    EXPECT_EQ(Fnv(WalkerFrame({96, 64, 36}, 20), 0xCBF29CE484222325U), 17015625028552314791U);
}

}  // namespace
