// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What one run of the slow twin remembers. All numbers are plain ints, masked only where a value
// can leave the width that the chip gives it.
#pragma once

#include <array>
#include <vector>

#include "tests/twin/twin.h"

struct TwinFeature {
    std::array<int, 10> v{};    // 0 to 255: x and y moments of four cells, then of the block
    int nAvgY = 0, nNorm2 = 1;  // mean luma; length class, 1 to 255
};

struct TwinHistory {
    std::array<int, 3> aDist{};  // ring of distances, slot = frame mod 3
    int nCnt = 0;                // frames over threshold, 0 to 15
    bool bActive = false, bHigh = false;
};

struct TwinBox {
    int bValid = 0, left = 0, right = 0, top = 0, bottom = 0, xCenter = 0, xDim = 0, yCenter = 0,
        yDim = 0;
};

struct TwinState {
    SimParams tSim;
    MdParams p;
    int W = 0, H = 0, S = 0;              // frame and step between blocks, pixels
    int nCols = 0, nRows = 0, nBlks = 0;  // block grid
    std::string sFrame;
    int nFrame = 0, nCurSlot = 0, nRefSlot = 0;
    std::vector<TwinFeature> aPool[15];
    std::vector<int> aDist, aAvail;  // maps of this frame
    std::vector<TwinHistory> aHistory;
    int nCarry = 0;  // luma threshold left by the frame before

    int bMotion = 0, nObj = 0;
    TwinBox tBox;
    int nScore = 0;                                              // grid method
    std::vector<int> aRefineDist[3], aRefineCnt, aRefineActive;  // projection method
    int nPpFrame = 0, nLastArea = 0, nStableRun = 0;
    std::array<int, 10> aGateArea{}, aGateAspect{};
    int nGateAreaSum = 0, nGateAspectSum = 0, nGateRun = 0, nGateFrame = 0, bLatch = 0;

    std::string sOut;
    Files aFiles;
    const TwinFeature& Cur(int i) const { return aPool[nCurSlot][size_t(i)]; }
    const TwinFeature& Ref(int i) const { return aPool[nRefSlot][size_t(i)]; }
    int Dist(int i) const { return aDist[size_t(i)]; }
    bool Avail(int i) const { return aAvail[size_t(i)] != 0; }
    int X(int i) const { return i % nCols * S; }  // corner of block i, pixels
    int Y(int i) const { return i / nCols * S; }
};

void Put(std::string& s, const char* pFormat, ...) __attribute__((format(printf, 2, 3)));
void TwinScan(TwinState& t);   // features, distances, decisions of one frame
void TwinBoxes(TwinState& t);  // the selected method, the gate and their lines
