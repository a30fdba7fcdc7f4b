// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/decision/row_walk.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "md/block_grid.h"
#include "md/decision/luma_threshold.h"
#include "md/decision/row_decision.h"
#include "md/memory.h"

struct RowWalk {
    RowKernels tKernels;
    CellSetup tCells;
    RecordSetup tRecords;
    DistanceSetup tDistances;
    int32_t nWidth, nHeight, nBlkW, nBlkH;
    int32_t nRowPlace;               // blocks of a row in planes of sums and records
    int32_t* apHalves[3];            // planes: tops of this row, bottoms of it, tops of the next
    uint8_t* apRecords[kPoolSlots];  // planes, row by row; nMD_RefFrmIdx + 1 slots, others null
    BytePlane aDist[kHistoryDepth];  // distances, by HistorySlot
    BytePlane tState;                // nState of each block
    uint8_t* pYDiff;                 // of one row
};

namespace {

template <typename T>
void Zeroed(T** pp, size_t nCount) {
    *pp = AllocateZeroed<T>(nCount, "the block scan");
}

void AllocatePlane(BytePlane* pPlane, int32_t nBlkW, int32_t nBlkH) {
    pPlane->nPitch = (nBlkW + 2 * kGroup) / kGroup * kGroup;
    Zeroed(&pPlane->pBytes, static_cast<size_t>(pPlane->nPitch * (nBlkH + 2) + kGroup));
}

void AllocateAll(RowWalk* p, int32_t nSlots) {
    const auto nRow = static_cast<size_t>(p->nRowPlace);
    const size_t nRecords = nRow * static_cast<size_t>(p->nBlkH) * kRecordElements;
    Zeroed(&p->pYDiff, nRow + kGroup);
    for (int32_t*& pHalf : p->apHalves) Zeroed(&pHalf, nRow * kHalfPlanes);
    for (BytePlane& t : p->aDist) AllocatePlane(&t, p->nBlkW, p->nBlkH);
    AllocatePlane(&p->tState, p->nBlkW, p->nBlkH);
    for (int32_t i = 0; i < nSlots; ++i) Zeroed(&p->apRecords[i], nRecords);
}

HalfRow HalfAt(const RowWalk& s, int32_t nHalf) {
    HalfRow t{};
    for (int32_t n = 0; n < kHalfPlanes; ++n) {
        t.apPlane[n] = s.apHalves[nHalf] + static_cast<ptrdiff_t>(n) * s.nRowPlace;
    }
    return t;
}

RecordRow RecordsAt(const RowWalk& s, int32_t nSlot, int32_t y) {
    const ptrdiff_t nPlaneBytes = s.nRowPlace * ptrdiff_t{kRecordElements / kRecordPlanes};
    RecordRow t{};
    for (int32_t n = 0; n < kRecordPlanes; ++n) {
        t.apPlane[n] = s.apRecords[nSlot] + (ptrdiff_t{y} * kRecordPlanes + n) * nPlaneBytes;
    }
    return t;
}

// Halves 0 and 1 of block row y. At stride 8 the cell row below a block row is the upper half of
// the next, so each cell row is read once and gives both.
void SumHalves(RowWalk* pWalk, const uint8_t* pY, int32_t y) {
    RowWalk& s = *pWalk;
    const int32_t nStride = s.tCells.nStrideCells;
    const auto Sums = [&](int32_t nCellRow, const HalfRow* pTop, const HalfRow* pBottom) {
        s.tKernels.pCellRowSums(s.tCells, {pY, s.nWidth, s.nHeight}, 8 * nCellRow, s.nBlkW, pTop,
                                pBottom);
    };
    const bool bHaveTop = nStride == 1 && y > 0;
    if (bHaveTop) std::swap(s.apHalves[0], s.apHalves[2]);
    const HalfRow tTop = HalfAt(s, 0), tBottom = HalfAt(s, 1), tNextTop = HalfAt(s, 2);
    if (!bHaveTop) Sums(y * nStride, &tTop, nullptr);
    const bool bNext = nStride == 1 && y + 1 < s.nBlkH;
    Sums(y * nStride + 1, bNext ? &tNextTop : nullptr, &tBottom);
}

// Records of block row y into a slot, distances from another slot's into the row's places.
void MeasureRow(RowWalk* pWalk, int32_t y, int32_t nCurSlot, int32_t nRefSlot, uint8_t* pDist) {
    RowWalk& s = *pWalk;
    const RecordRow tCur = RecordsAt(s, nCurSlot, y), tRef = RecordsAt(s, nRefSlot, y);
    s.tKernels.pBlockRowRecords(s.tRecords, HalfAt(s, 0), HalfAt(s, 1), s.nBlkW, tCur);
    s.tKernels.pRowDistances(s.tDistances, tCur, tRef, s.nBlkW, pDist, s.pYDiff);
    // An absent neighbour's distance is 0, and the kernel leaves junk there.
    std::memset(pDist + s.nBlkW, 0, static_cast<size_t>(s.nRowPlace - s.nBlkW));
}

DecisionRow DecisionRowAt(RowWalk* pWalk, int32_t nFrame, int32_t y, uint8_t* pAvailMap,
                          uint8_t* pDistMap) {
    RowWalk& s = *pWalk;
    DecisionRow row{
        .nBlkW = s.nBlkW,
        .bInner = 0 < y && y < s.nBlkH - 1,
        .apDist = {},
        .pDistAbove = s.aDist[HistorySlot(nFrame, 0)].At(0, y - 1),
        .pYDiff = s.pYDiff,
        .pState = s.tState.At(0, y),
        .nStatePitch = s.tState.nPitch,
        .pAvailMap = pAvailMap + static_cast<ptrdiff_t>(y) * s.nBlkW,
        .pDistMap = pDistMap + static_cast<ptrdiff_t>(y) * s.nBlkW,
    };
    for (int32_t n = 0; n < kHistoryDepth; ++n) {
        row.apDist[n] = s.aDist[HistorySlot(nFrame, n)].At(0, y);
    }
    return row;
}

}  // namespace

RowWalk* RowWalkCreate(const RowKernels& tKernels, const MdParams* pParams, int32_t nWidth,
                       int32_t nHeight, const uint8_t* pGaussWin) {
    RowWalk* p = new (std::nothrow) RowWalk{};  // aligned for vectors
    RequireMemory(p != nullptr, "the block scan");
    p->tKernels = tKernels;
    CellSetupInit(pParams, pGaussWin, &p->tCells);
    p->tRecords = RecordSetupOf(*pParams);
    p->tDistances = DistanceSetupOf(*pParams);
    p->nWidth = nWidth;
    p->nHeight = nHeight;
    p->nBlkW = BlockCount(nWidth, *pParams);
    p->nBlkH = BlockCount(nHeight, *pParams);
    p->nRowPlace = RoundToRowStep(p->nBlkW);
    AllocateAll(p, pParams->nMD_RefFrmIdx + 1);
    return p;
}

void RowWalkRelease(RowWalk* pWalk) {
    if (pWalk == nullptr) return;
    for (uint8_t* p : pWalk->apRecords) std::free(p);
    for (int32_t* p : pWalk->apHalves) std::free(p);
    for (const BytePlane& t : pWalk->aDist) std::free(t.pBytes);
    std::free(pWalk->tState.pBytes);
    std::free(pWalk->pYDiff);
    delete pWalk;
}

void RowWalkFrame(RowWalk* pWalk, const MdParams* pParams, const uint8_t* pY, int32_t nCurSlot,
                  int32_t nRefSlot, uint8_t* pAvailMap, uint8_t* pDistMap) {
    RowWalk& s = *pWalk;
    const MdParams& md = *pParams;
    int32_t iYDiffSum = 0;
    for (int32_t y = 0; y < s.nBlkH; ++y) {
        const int32_t nFirst = y * s.nBlkW;
        SumHalves(pWalk, pY, y);
        MeasureRow(pWalk, y, nCurSlot, nRefSlot, s.aDist[HistorySlot(md.CurFrmId, 0)].At(0, y));
        const int32_t iSumBefore = iYDiffSum;
        for (int32_t x = 0; x < s.nBlkW; ++x) iYDiffSum += s.pYDiff[x];
        const DecisionRow row = DecisionRowAt(&s, md.CurFrmId, y, pAvailMap, pDistMap);
        switch (md.nMD_HogDist_AvgYDiffCalc_Method) {
            case kPerRow:
                DecideRow(md, row, MeanThreshold(md, iYDiffSum, nFirst + s.nBlkW));
                break;
            case kRunning:
                DecideRowRunning(md, row, iSumBefore, nFirst);
                break;
            default:
                DecideRow(md, row, nYDiffThreCarry);
                break;
        }
    }
    FinishThreshold(md, s.nBlkH, MeanThreshold(md, iYDiffSum, s.nBlkH * s.nBlkW));
}

void RowWalkExpand(const RowWalk* pWalk, int32_t nSlot, BlockFeature* pFeatures) {
    for (int32_t y = 0; y < pWalk->nBlkH; ++y) {
        ExpandRecords(RecordsAt(*pWalk, nSlot, y), pWalk->nBlkW,
                      pFeatures + static_cast<ptrdiff_t>(y) * pWalk->nBlkW);
    }
}
