// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/object/projection_box.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "md/object/avail_bits.h"

ProjectionState tProjectionState;

namespace {

constexpr int32_t kBinCols = 16;
constexpr int32_t kBinRows = 9;
constexpr int32_t kBoxExtent = 16;    // from a block's position to its far edge, pixels
constexpr int32_t kStableFrames = 4;  // in a row that a box must last
constexpr int32_t kMinAreaSum = 6;    // of three frames, square pixels

// Outcome of the refinement of one block.
enum Outcome : int32_t {
    kDropped = 0,
    kConfirmed = 1,  // enters the list with at least two near blocks
    kListed = 2,     // enters the list without counting for its neighbours
};

struct Refined {
    int32_t o;
    int32_t cnt;
    RefineCase nCase;
};

// One place of the grid seen from a block: what its neighbours hold.
struct BlockPlace {
    const BlkCorParams& p;
    int32_t row, col;

    int32_t Index() const { return row * p.nBlkW + col; }
    bool Inside(int32_t dx, int32_t dy) const {
        return col + dx >= 0 && col + dx < p.nBlkW && row + dy >= 0 && row + dy < p.nBlkH;
    }
    int32_t Neighbour(int32_t dx, int32_t dy) const { return Index() + dy * p.nBlkW + dx; }
    // This frame's distance there, or `nOutside` beyond the grid.
    int32_t Dist(int32_t dx, int32_t dy, int32_t nOutside) const {
        return Inside(dx, dy) ? p.pDistMap[Neighbour(dx, dy)] : nOutside;
    }
};

// Confirmed blocks among the nine places. The pass runs in place and in raster order: blocks before
// this one hold this frame's state, it and those after it the last frame's.
int32_t CountNear(const BlockPlace& at) {
    const ProjectionState& st = tProjectionState;
    int32_t nNear = 0;
    for (int32_t dy = -1; dy <= 1; ++dy) {
        for (int32_t dx = -1; dx <= 1; ++dx) {
            const bool bLastFrame = dy > 0 || (dy == 0 && dx >= 0);
            if (!at.Inside(dx, dy) || (bLastFrame && st.nPpFrame == 0)) continue;
            nNear += (st.aBlkState[at.Neighbour(dx, dy)] & kRefineActive) != 0 ? 1 : 0;
        }
    }
    return nNear;
}

int32_t CountUp(int32_t cnt) {
    return std::min(cnt + 1, 15);
}

// Case 4: the distance must be steady over this frame and the two before it.
Refined CheckStability(int32_t i, int32_t v, int32_t nNear, int32_t cnt) {
    const ProjectionState& st = tProjectionState;
    if (cnt < 3) return {kDropped, cnt, kRefineTooNew};
    const int32_t d1 = st.aDistRing[(st.nPpFrame + 2) % 3][i];
    const int32_t d2 = st.aDistRing[(st.nPpFrame + 1) % 3][i];
    const int32_t nMax = std::max({v, d1, d2});
    const int32_t nMin = std::min({v, d1, d2});
    if (nMax <= (nMin * 10) >> 3) return {kConfirmed, cnt, kRefineSteady};
    cnt = std::min(nNear, 2);
    return nNear >= 4 ? Refined{kConfirmed, cnt, kRefineJumpHeld}
                      : Refined{kDropped, cnt, kRefineJumps};
}

// The first case that fits decides.
Refined RefineBlock(const BlockPlace& at, int32_t v, int32_t nNear, int32_t nLumaAvg2) {
    const int32_t i = at.Index();
    const int32_t dAbove = at.Dist(0, -1, 256);
    const int32_t dLeft = at.Dist(-1, 0, -1);
    const int32_t dAboveLeft = at.Dist(-1, -1, 256);
    const int32_t dAboveRight = at.Dist(1, -1, 256);
    const int32_t nDynTh = std::clamp((nLumaAvg2 * 60) >> 3, 15, 255);
    const int32_t cnt = tProjectionState.aBlkState[i] & kRefineCntMask;

    if (v >= 255 && dAboveLeft >= 255 && dAbove >= 255 && dLeft >= 255) {
        return {kListed, CountUp(cnt), kRefineSaturatedPatch};
    }
    if (v >= 255 && dAboveLeft <= 0 && dAbove <= 0 && dAboveRight <= 0) {
        return dLeft >= 180 ? Refined{kListed, CountUp(cnt), kRefineSaturatedEdge}
                            : Refined{kConfirmed, cnt, kRefineSaturated};
    }
    if (v >= 170) {
        const bool bEdge = dAboveLeft <= 2 && dAbove <= 2 && dAboveRight <= 2 && dLeft >= 200;
        return bEdge ? Refined{kListed, CountUp(cnt), kRefineStrongEdge}
                     : Refined{kConfirmed, cnt, kRefineStrong};
    }
    if ((nNear == 0 && v > 60) || (nNear > 0 && v > nDynTh)) {
        return CheckStability(i, v, nNear, CountUp(cnt));
    }
    return {kDropped, std::max(cnt - 1, 0), kRefineBelow};
}

// Bins of one axis, and how far they are filled without a gap around the fullest one.
template <int32_t N>
struct Projection {
    int32_t aCount[N] = {};
    int32_t nBest = 0;
    int32_t nPeak = 0;

    // Among equal bins the one that reached the count first is the peak.
    void Add(int32_t nBin) {
        if (++aCount[nBin] > nBest) {
            nBest = aCount[nBin];
            nPeak = nBin;
        }
    }
    // Pixel bounds of the run of filled bins; 0, 0 when the peak itself is empty.
    void Extent(int32_t nBinSize, int32_t* pStart, int32_t* pEnd) const {
        *pStart = 0;
        *pEnd = 0;
        for (int32_t b = nPeak; b < N && aCount[b] != 0; ++b) *pEnd = (b + 1) * nBinSize;
        for (int32_t b = nPeak; b >= 0 && aCount[b] != 0; --b) *pStart = b * nBinSize;
    }
};

// Whether a valid box is reported (kProjectionMotion), else the first test that it fails.
BoxReason TestBox(int32_t nNew, int32_t nOld) {
    const int32_t nStood = tProjectionState.nStableRun;
    if (nStood < kStableFrames) return {kProjectionTooNew, {nStood, kStableFrames}};
    if (nNew < kMinAreaSum)
        return {kProjectionTooSmall, {nStood, kStableFrames, nNew, kMinAreaSum}};
    const bool bGrew = nNew * 10 > nOld * 13;
    return {bGrew ? kProjectionGrew : kProjectionMotion, {nStood, kStableFrames, nNew, nOld}};
}

void ReportNoBox(MdResult* pResult) {
    std::memset(pResult->tObjects, 0, sizeof pResult->tObjects);
    pResult->nObjNum = 0;
}

}  // namespace

void PpProjectionBox(const MdPpConfig* pConfig, MdResult* pResult) {
    ProjectionState& st = tProjectionState;
    const BlkCorParams tBlkCorParams{
        CurrentRecords(*pResult), SlotRecords(*pResult, pConfig->nRefBufIdx),
        pResult->pDistMap,        pResult->pAvailBits,
        pResult->nBlkW,           pResult->nBlkH,
        pConfig->nWidth,          pConfig->nHeight,
        pConfig->nStride,
    };
    ActiveBlk aList[kProjectionMaxBlocks];
    int32_t nActiveBlkNum = 0;
    BlkRefine(&tBlkCorParams, aList, &nActiveBlkNum);
    BoxProject(&tBlkCorParams, aList, nActiveBlkNum, pResult);
    if (BoxTemporalGrow(pResult->nBlkW, pResult->nBlkH, st.nPpFrame, pResult) != 0) {
        pResult->bMotionDetected = 1;
    } else {
        pResult->nObjNum = 0;
        MdObject& tObject = pResult->tObjects[0];
        tObject.bValid = 0;
        tObject.left = tObject.top = tObject.right = tObject.bottom = 0;
    }
    ++st.nPpFrame;
}

void ProjectionBoxReset() {
    tProjectionState = ProjectionState{};
}

void BlkRefine(const BlkCorParams* pParams, ActiveBlk* pList, int32_t* pActiveBlkNum) {
    const BlkCorParams& p = *pParams;
    ProjectionState& st = tProjectionState;
    uint8_t* pRing = st.aDistRing[st.nPpFrame % 3];
    int32_t iLumaSum = 0;
    for (int32_t i = 0; i < p.nBlkW * p.nBlkH; ++i) {
        iLumaSum += std::abs(p.pCurFeat[i].nAvgY - p.pRefFeat[i].nAvgY);
        const int32_t nLumaAvg2 = ((iLumaSum / (i + 1)) * 32) >> 4;
        const int32_t v = p.pDistMap[i];
        pRing[i] = static_cast<uint8_t>(v);
        if (v == 0 || !BlockAvailable(p.pAvailBits, i)) {
            st.aBlkState[i] = 0;
            st.aBlkCase[i] = kRefineNone;
            continue;
        }
        const BlockPlace at{p, i / p.nBlkW, i % p.nBlkW};
        const int32_t nNear = CountNear(at);
        Refined r = RefineBlock(at, v, nNear, nLumaAvg2);
        st.aBlkState[i] = static_cast<uint8_t>(r.cnt);
        st.aBlkCase[i] = r.nCase;
        if (r.o == kConfirmed) {
            st.aBlkState[i] |= kRefineActive;
            if (nNear < 2) {
                r.o = kDropped;
                st.aBlkCase[i] |= kRefineLonely;
            }
        }
        if (r.o != kDropped) {
            pList[(*pActiveBlkNum)++] = {static_cast<uint8_t>(at.col), static_cast<uint8_t>(at.row),
                                         static_cast<uint8_t>(v)};
        }
    }
}

void BoxProject(const BlkCorParams* pParams, const ActiveBlk* pList, int32_t nActiveBlkNum,
                MdResult* pResult) {
    const BlkCorParams& p = *pParams;
    const int32_t binW = p.nWidth / kBinCols;
    const int32_t binH = p.nHeight / kBinRows;
    Projection<kBinCols> tX;
    Projection<kBinRows> tY;
    for (int32_t n = 0; n < nActiveBlkNum; ++n) {
        tX.Add((pList[n].nColumn * p.nStride) / binW);
        tY.Add((pList[n].nRow * p.nStride) / binH);
    }
    int32_t xStart, xEnd, yStart, yEnd;
    tX.Extent(binW, &xStart, &xEnd);
    tY.Extent(binH, &yStart, &yEnd);
    const int32_t c0 = xStart / p.nStride, c1 = xEnd / p.nStride;
    const int32_t r0 = yStart / p.nStride, r1 = yEnd / p.nStride;

    int32_t minX = p.nWidth, minY = p.nHeight, maxX = 0, maxY = 0, nCount = 0;
    for (int32_t n = 0; n < nActiveBlkNum; ++n) {
        const ActiveBlk& blk = pList[n];
        if (blk.nColumn < c0 || blk.nColumn > c1 || blk.nRow < r0 || blk.nRow > r1) continue;
        ++nCount;
        minX = std::min(minX, blk.nColumn * p.nStride);
        maxX = std::max(maxX, blk.nColumn * p.nStride);
        minY = std::min(minY, blk.nRow * p.nStride);
        maxY = std::max(maxY, blk.nRow * p.nStride);
    }
    if (nCount == 0) {
        ReportNoBox(pResult);
        pResult->tBoxReason = {nActiveBlkNum == 0 ? kProjectionNoBlock : kProjectionNoMeeting,
                               {nActiveBlkNum}};
        return;
    }
    // The box may reach the frame's width and height themselves.
    maxX = std::min(maxX + kBoxExtent, p.nWidth);
    maxY = std::min(maxY + kBoxExtent, p.nHeight);
    if (maxX - minX <= 0 || maxY - minY <= 0) {
        ReportNoBox(pResult);
        return;
    }
    pResult->nObjNum = 1;
    MdObject& tObject = pResult->tObjects[0];
    tObject.bValid = 1;
    tObject.left = static_cast<uint16_t>(minX);
    tObject.top = static_cast<uint16_t>(minY);
    tObject.right = static_cast<uint16_t>(maxX);
    tObject.bottom = static_cast<uint16_t>(maxY);
}

int32_t BoxTemporalGrow(int32_t nBlkW, int32_t nBlkH, int32_t nPpFrame, MdResult* pResult) {
    ProjectionState& st = tProjectionState;
    MdObject& tObject = pResult->tObjects[0];
    const int32_t f = nPpFrame;
    const int32_t nArea =
        tObject.bValid != 0 ? (tObject.right - tObject.left) * (tObject.bottom - tObject.top) : 0;
    const int32_t nOld = st.nAreaSum;
    const int32_t nNew = nOld - (f > 0 ? st.aAreaRing[(f - 1) % 3] : 0) + nArea;
    st.aAreaRing[f % 3] = nArea;
    st.nAreaSum = nNew;
    if (tObject.bValid != 0) {
        ++st.nStableRun;
    } else {
        st.nStableRun = 0;
        std::fill_n(st.aAreaRing, 3, 0);
        st.nAreaSum = 0;
    }
    if (tObject.bValid == 0) return 0;
    pResult->tBoxReason = TestBox(nNew, nOld);
    if (pResult->tBoxReason.nCode != kProjectionMotion) return 0;
    if (tObject.left >> 3 > 0 && tObject.right >> 3 < nBlkW - 1 && tObject.top >> 3 > 0) {
        tObject.left = static_cast<uint16_t>(std::max(tObject.left - 8, 0));
        tObject.top = static_cast<uint16_t>(std::max(tObject.top - 8, 0));
        tObject.right = static_cast<uint16_t>(std::min(tObject.right + 8, nBlkW * 8 + 7));
        tObject.bottom = static_cast<uint16_t>(std::min(tObject.bottom + 8, nBlkH * 8 + 7));
    }
    return 1;
}
