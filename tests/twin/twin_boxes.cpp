// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The four box methods and the temporal gate of the slow twin.
#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "tests/twin/twin_state.h"

namespace {

void SetBox(TwinState& t, int nLeft, int nRight, int nTop, int nBottom) {
    t.bMotion = t.nObj = t.tBox.bValid = 1;
    t.tBox.left = nLeft;
    t.tBox.right = nRight;
    t.tBox.top = nTop;
    t.tBox.bottom = nBottom;
}

int Area(const TwinBox& b) {
    return (b.right - b.left) * (b.bottom - b.top);
}

// Box about the centres and half sizes in place, with `nPad` more on each side, kept in the frame.
void SetBoxAround(TwinState& t, int nPad) {
    const TwinBox& b = t.tBox;
    const int l = b.xCenter - b.xDim - nPad, r = b.xCenter + b.xDim + nPad;
    const int u = b.yCenter - b.yDim - nPad, d = b.yCenter + b.yDim + nPad;
    SetBox(t, std::max(l, 0), std::min(r, t.W - 1), std::max(u, 0), std::min(d, t.H - 1));
}

// The span of the given blocks' corners, in pixels; empty when no block was added.
struct Extent {
    int left = 9999, right = 0, top = 9999, bottom = 0, nCount = 0;
    void Add(int x, int y) {
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
        ++nCount;
    }
};

void WeightedCentroid(TwinState& t) {
    Extent e;
    int nSumW = 0, nSumXW = 0, nSumYW = 0;
    for (int i = 0; i < t.nBlks; ++i) {
        if (!t.Avail(i) || t.Dist(i) <= t.p.nMD_HogDist_Th) continue;
        e.Add(t.X(i), t.Y(i));
        nSumW += t.Dist(i);
        nSumXW += t.X(i) * t.Dist(i);
        nSumYW += t.Y(i) * t.Dist(i);
    }
    if (e.left >= e.right || e.top >= e.bottom || e.nCount < t.p.nMD_BlkCnt_Th) return;
    const int h = t.S / 2, xC = nSumXW / nSumW, yC = nSumYW / nSumW;
    const int nReachX = std::min(e.right - xC, xC - e.left);
    const int nReachY = std::min(e.bottom - yC, yC - e.top);
    t.tBox.xDim = std::max(nReachX, h);
    t.tBox.yDim = std::max(nReachY, h);
    t.tBox.xCenter = xC + h;
    t.tBox.yCenter = yC + h;
    SetBoxAround(t, h);
}

struct Region {
    int left = 0, top = 0, right = 0, bottom = 0, nBlocks = 0;
    bool bMerged = false;
};

void Merge(Region& a, Region& b) {
    // The gap of two spans: start of the one that begins later less the end of the other.
    const int nGapX = a.left > b.left ? a.left - b.right : b.left - a.right;
    const int nGapY = a.top > b.top ? a.top - b.bottom : b.top - a.bottom;
    if (std::max(nGapX, nGapY) > 8) return;
    a.left = std::min(a.left, b.left);
    a.top = std::min(a.top, b.top);
    a.right = std::max(a.right, b.right);
    a.bottom = std::max(a.bottom, b.bottom);
    a.nBlocks += b.nBlocks;
    b.bMerged = true;
}

// A region whose span so far ends at 0 has none: its next block sets it anew.
void Gather(Region& r, int x, int y) {
    r.left = r.right == 0 ? x : std::min(r.left, x);
    r.right = std::max(r.right, x);
    r.top = r.bottom == 0 ? y : std::min(r.top, y);
    r.bottom = std::max(r.bottom, y);
    ++r.nBlocks;
}

int RegionScore(const TwinState& t, const Region& r) {
    int nHits = 0, nSum = 0;
    for (int i = 0; i < t.nBlks; ++i) {
        const int x = t.X(i), y = t.Y(i);
        if (x < r.left || x > r.right || y < r.top || y > r.bottom || !t.Avail(i)) continue;
        nHits += t.Dist(i) > 0;
        nSum += t.Dist(i);
    }
    return nSum / nHits;
}

void GridCluster(TwinState& t) {
    const bool bFirst = t.W == 640 && t.H == 360;
    const int nGridCols = bFirst ? 4 : 8, nGridRows = bFirst ? 3 : 6, nMinBlocks = bFirst ? 10 : 3;
    std::vector<Region> aRegions(size_t(nGridCols * nGridRows));
    for (int i = 0; i < t.nBlks; ++i) {
        if (!t.Avail(i) || t.Dist(i) <= (bFirst ? 10 : 4)) continue;
        const int nRow = t.Y(i) / (t.H / nGridRows), nCol = t.X(i) / (t.W / nGridCols);
        Gather(aRegions[size_t(nRow * nGridCols + nCol)], t.X(i), t.Y(i));
    }
    for (Region& a : aRegions) {
        if (a.nBlocks <= nMinBlocks || a.bMerged) a = Region{};
        for (Region& b : aRegions) {
            if (&a != &b && a.nBlocks > 0 && b.nBlocks > nMinBlocks) Merge(a, b);
        }
    }
    Region tBest;
    int nBest = 0;
    for (const Region& r : aRegions) {
        const int nScore = r.nBlocks > 0 ? RegionScore(t, r) : 0;
        if (nScore > nBest) tBest = r;
        nBest = std::max(nBest, nScore);
    }
    t.nScore = (t.nScore * 65 + nBest * 35) / 100;
    const int nArea = (tBest.right - tBest.left) * (tBest.bottom - tBest.top);
    if (nArea == 0 || t.nScore <= (bFirst ? 16 : 10)) return;
    SetBox(t, tBest.left, tBest.right, tBest.top, tBest.bottom);
}

// The check on the last three distances; gives the outcome 0 or 1 and may set the count back.
int CheckSteady(TwinState& t, size_t i, int nNear) {
    if (t.aRefineCnt[i] < 3) return 0;
    const auto& a = t.aRefineDist;
    const auto [nMin, nMax] = std::minmax({a[0][i], a[1][i], a[2][i]});
    if (nMax <= nMin * 10 / 8) return 1;
    t.aRefineCnt[i] = std::min(nNear, 2);
    return nNear >= 4 ? 1 : 0;
}

// One block with a distance; true when it enters the list.
bool RefineBlock(TwinState& t, int i, int nLumaAvg2) {
    const int x = i % t.nCols, y = i / t.nCols, v = t.Dist(i);
    int nNear = 0;  // confirmed neighbours: this frame's before the block, last frame's from it on
    for (int j = 0; j < t.nBlks; ++j) {
        const bool bClose = std::abs(j % t.nCols - x) <= 1 && std::abs(j / t.nCols - y) <= 1;
        nNear += bClose && t.aRefineActive[size_t(j)];
    }
    const int dAbove = y > 0 ? t.Dist(i - t.nCols) : 256;
    const int dLeft = x > 0 ? t.Dist(i - 1) : -1;
    const int dAboveLeft = y > 0 && x > 0 ? t.Dist(i - t.nCols - 1) : 256;
    const int dAboveRight = y > 0 && x < t.nCols - 1 ? t.Dist(i - t.nCols + 1) : 256;
    const int nUp = std::max({dAbove, dAboveLeft, dAboveRight});
    const int nDynTh = std::clamp(nLumaAvg2 * 60 / 8, 15, 255);
    int& nCnt = t.aRefineCnt[size_t(i)];
    const int nUpOne = std::min(nCnt + 1, 15);
    int o = 1;
    if (std::min({v, dAboveLeft, dAbove, dLeft}) >= 255) {
        o = 2;
    } else if (v >= 255 && nUp <= 0) {
        o = dLeft >= 180 ? 2 : 1;
    } else if (v >= 170) {
        o = nUp <= 2 && dLeft >= 200 ? 2 : 1;
    } else if (nNear == 0 ? v > 60 : v > nDynTh) {
        nCnt = nUpOne;
        o = CheckSteady(t, size_t(i), nNear);
    } else {
        nCnt = std::max(nCnt - 1, 0);
        o = 0;
    }
    if (o == 2) nCnt = nUpOne;
    t.aRefineActive[size_t(i)] = o == 1;
    return o == 2 || (o == 1 && nNear >= 2);
}

std::vector<int> Refine(TwinState& t) {
    std::vector<int> aList;
    int nLumaSum = 0;
    for (int i = 0; i < t.nBlks; ++i) {
        nLumaSum += std::abs(t.Cur(i).nAvgY - t.aPool[0][size_t(i)].nAvgY);
        t.aRefineDist[t.nPpFrame % 3][size_t(i)] = t.Dist(i);
        if (t.Dist(i) == 0 || !t.Avail(i)) {
            t.aRefineCnt[size_t(i)] = t.aRefineActive[size_t(i)] = 0;
        } else if (RefineBlock(t, i, nLumaSum / (i + 1) * 2)) {
            aList.push_back(i);
        }
    }
    return aList;
}

struct Span {
    int nStart = 0, nEnd = 0;  // pixels
};

// The filled bins on both sides of the first peak.
Span SpanAtPeak(const std::vector<int>& aPixels, int nBins, int nBinSize) {
    std::vector<int> aBins(size_t(nBins), 0);
    int nPeak = 0, nBest = 0;
    for (const int nPixel : aPixels) {
        const int nCount = ++aBins[size_t(nPixel / nBinSize)];
        if (nCount > nBest) nPeak = nPixel / nBinSize;
        nBest = std::max(nBest, nCount);
    }
    Span s;
    for (int b = nPeak; b < nBins && aBins[size_t(b)] > 0; ++b) s.nEnd = (b + 1) * nBinSize;
    for (int b = nPeak; b >= 0 && aBins[size_t(b)] > 0; --b) s.nStart = b * nBinSize;
    return s;
}

void Project(TwinState& t, const std::vector<int>& aList) {
    std::vector<int> aX, aY;
    for (const int i : aList) aX.push_back(t.X(i));
    for (const int i : aList) aY.push_back(t.Y(i));
    const Span c = SpanAtPeak(aX, 16, t.W / 16), r = SpanAtPeak(aY, 9, t.H / 9);
    Extent e;
    for (const int i : aList) {
        const int x = i % t.nCols, y = i / t.nCols;
        const bool bInX = x >= c.nStart / t.S && x <= c.nEnd / t.S;
        if (bInX && y >= r.nStart / t.S && y <= r.nEnd / t.S) e.Add(t.X(i), t.Y(i));
    }
    if (e.nCount > 0) SetBox(t, e.left, e.right + 16, e.top, e.bottom + 16);
}

bool GrowConfirmed(TwinState& t) {
    const TwinBox b = t.tBox;
    const int nOld = t.nLastArea;  // the sum of areas always holds one frame's
    t.nLastArea = Area(b);
    t.nStableRun = b.bValid ? t.nStableRun + 1 : 0;
    if (t.nStableRun < 4 || Area(b) * 10 > nOld * 13) return false;
    if (b.left < 8 || b.top < 8 || b.right / 8 >= t.nCols - 1) return true;
    SetBox(t, b.left - 8, std::min(b.right + 8, t.nCols * 8 + 7), b.top - 8,
           std::min(b.bottom + 8, t.nRows * 8 + 7));
    return true;
}

void ProjectionBox(TwinState& t) {
    Project(t, Refine(t));
    ++t.nPpFrame;
    if (GrowConfirmed(t)) return;
    t.bMotion = t.nObj = 0;
    t.tBox = TwinBox{};
}

struct Slab {
    int nArea, nCenter, nDim;
};

Slab Bisect(const TwinState& t, int lo, int hi, bool bAlongX) {
    const int nLast = (bAlongX ? t.nCols : t.nRows) - 1;
    const int nFrom = std::min((lo + t.S - 1) / t.S, nLast), nTo = std::min(hi / t.S, nLast);
    int nArea = 0, nMoment = 0;
    for (int i = 0; i < t.nBlks; ++i) {
        const int nAt = bAlongX ? i % t.nCols : i / t.nCols;
        if (nAt < nFrom || nAt > nTo || !t.Avail(i) || t.Dist(i) < t.p.nMD_HogDist_Th) continue;
        nArea += t.Dist(i);
        nMoment += nAt * t.S * t.Dist(i);
    }
    const int c = nArea > 0 ? (nMoment + nArea / 2) / nArea : lo;
    const Slab tLow = c < hi ? Bisect(t, lo, c, bAlongX) : Slab{0, c, c - hi};
    const Slab tHigh = c > lo ? Bisect(t, c, hi, bAlongX) : Slab{0, c, lo - c};
    const int a = tLow.nDim + c - tLow.nCenter, b = tHigh.nDim + tHigh.nCenter - c;
    return {nArea, c, a + b >= 5 ? a * b * 2 / (a + b) + 1 : 0};
}

bool Keeps(TwinState& t, const Slab& tSlab, bool bAlongX) {
    const int nArea = tSlab.nArea & 0xFFFF, nDim = tSlab.nDim;
    if (nDim < 2) {
        Put(t.sOut, "LOG: Dimension desense! %d\n", nDim);
        return false;
    }
    if (nArea >= nDim * (bAlongX ? 2 : 1)) return true;
    Put(t.sOut, "LOG: Area desense! Area:%d, Dim:%d\n", nArea, nDim);
    return false;
}

void Bisection(TwinState& t) {
    const Slab tX = Bisect(t, 0, 10000, true), tY = Bisect(t, 0, 10000, false);
    const bool bX = Keeps(t, tX, true), bY = Keeps(t, tY, false);
    if (!bX || !bY) return;
    t.tBox.xCenter = tX.nCenter + t.S;
    t.tBox.yCenter = tY.nCenter + t.S;
    t.tBox.xDim = tX.nDim;
    t.tBox.yDim = tY.nDim;
    SetBoxAround(t, 0);
    Put(t.sOut, "obj RECT[l,r, t, b]: (1-0: %d,%d,%d,%d)\n", t.tBox.left, t.tBox.right, t.tBox.top,
        t.tBox.bottom);
}

void GateGrow(TwinState& t) {
    TwinBox& b = t.tBox;
    const int nX = std::max(int(b.xDim * 0.2), 8), nY = std::max(int(b.yDim * 0.2), 16);
    const int nRight = t.nCols * 8 + 7, nBottom = t.nRows * 8 + 7;
    b.left = std::max(b.left - nX, 0);
    b.top = std::max(b.top - nY, 0);
    b.right = std::min(b.right + nX, nRight);
    b.bottom = std::min(b.bottom + nY, nBottom);
}

// One frame of the waiting gate: the rings and their lines; true when all tests hold.
bool GateOpens(TwinState& t) {
    const int w = t.p.nMD_Bbox_PP_Window;
    const size_t nSlot = size_t(t.nGateFrame % w);
    auto &aArea = t.aGateArea, &aAspect = t.aGateAspect;
    const int nPrevArea = t.nGateAreaSum, nPrevAspect = t.nGateAspectSum;
    if (t.nObj > 0) {
        ++t.nGateRun;
        aArea[nSlot] = Area(t.tBox);
        if (t.tBox.yDim > 0 && t.tBox.xDim > 0) aAspect[nSlot] = t.tBox.yDim * 100 / t.tBox.xDim;
    } else {
        t.nGateRun = 0;
        aArea.fill(0);
        aAspect.fill(0);
    }
    t.nGateAreaSum = t.nGateAspectSum = 0;
    for (const int n : aArea) t.nGateAreaSum += n;
    for (const int n : aAspect) t.nGateAspectSum += n;
    Put(t.sOut, "bbox_area[0]=%d  bbox_area[1]=%d  bbox_area[2]=%d  sum=%d\n", aArea[0], aArea[1],
        aArea[2], t.nGateAreaSum);
    Put(t.sOut, "bbox_aspect[0]=%d  bbox_aspect[1]=%d  bbox_aspect[2]=%d  sum=%d\n", aAspect[0],
        aAspect[1], aAspect[2], t.nGateAspectSum);
    const bool bRun = t.nGateRun >= w && t.nGateAreaSum >= 2 * w;
    const bool bArea = nPrevArea * t.p.dMD_PP_Area_Converge_Thresh >= t.nGateAreaSum;
    const bool bAspect = nPrevAspect * t.p.dMD_PP_Aspect_Converge_Thresh >= t.nGateAspectSum;
    return bRun && bArea && bAspect;
}

void Gate(TwinState& t) {
    if (t.bLatch != 0) {
        t.bLatch = t.bMotion;
    } else if (GateOpens(t)) {
        t.bLatch = 1;
        GateGrow(t);
        t.sOut += "bbox triggered\n";
    } else {
        t.nObj = 0;
        t.tBox = TwinBox{.bValid = t.tBox.bValid};
    }
    ++t.nGateFrame;
}

}  // namespace

void TwinBoxes(TwinState& t) {
    constexpr void (*aMethods[])(TwinState&) = {WeightedCentroid, GridCluster, ProjectionBox,
                                                Bisection};
    static_assert(std::size(aMethods) == kPostProcMethods, "each box method has its twin here");
    const TwinBox& b = t.tBox;
    t.bMotion = t.nObj = 0;
    t.tBox = TwinBox{};
    aMethods[t.p.nMD_PostProcMethod](t);
    Put(t.sOut, "MotionDetected=%d, objNum=%d, (%d, %d, %d, %d, %d)\n", t.bMotion, t.nObj, b.bValid,
        b.left, b.right, b.top, b.bottom);
    if (t.p.nMD_Bbox_PP_Enable != 0) Gate(t);
    Put(t.sOut, "PP_V2: l,r,t,b = %d,%d,%d,%d\n", b.left, b.right, b.top, b.bottom);
}
