// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Scenes by cause: short clips of one thing that happens in front of a camera, each with labels
// that say where motion is to be found. Some hold walkers; the others hold what a detector should
// not report: light, weather, noise, a camera that shakes. The same numbers give the same bytes on
// every machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/street.h"

struct SceneClip {
    int32_t nWidth;   // luma pixels, even
    int32_t nHeight;  // luma pixels, even
    int32_t nFrames;  // the action scales with them
};

struct Walker {
    Pose tPose;
    bool bMoves;  // false while it does not move
};

// What differs from frame to frame. A default one is the empty street by day.
struct Shot {
    std::vector<Walker> aWalkers = {};
    int32_t nPanX = 0, nPanY = 0;  // camera, pixels
    int32_t nGain = 256;           // of all luma, in 256ths
    int32_t nLamp = 0;             // luma that a lamp at the wall adds right under it
    int32_t nCloud = -1;           // way of the clouds, pixels; below 0: a clear sky
    int32_t nNoise = 3;            // largest step of the sensor's noise, luma levels
    bool bRain = false;
    int32_t nSway = 0;     // of the tree's crown to the right, pixels; used with bTree
    bool bTree = false;    // a tree before the wall
    int32_t nInsect = -1;  // x of an insect before the lens, pixels; below 0: none
    bool bJudged = true;   // false: the labels take this frame out of the judgement
};

struct SceneRow {
    const char* szName;
    const char* szWhat;  // one line
    Shot (*fnShot)(const SceneClip& tClip, int32_t nFrame);
};

const std::vector<SceneRow>& Scenes();

// Frame nFrame of a scene as raw 4:2:0.
std::string SceneFrame(const SceneRow& tScene, const SceneClip& tClip, int32_t nFrame);

// The labels of a clip as csv: a head line, then "first,last,left,top,right,bottom,what". Frames
// count from 0; edges are pixels that the walker covers, all four inclusive.
std::string SceneLabels(const SceneRow& tScene, const SceneClip& tClip);
