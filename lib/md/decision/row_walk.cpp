#include "md/decision/row_walk.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "md/block_grid.h"
#include "md/decision/luma_threshold.h"
#include "md/decision/row_decision.h"
#include "md/memory.h"

struct RowWalk {
    KernelPath tKernels;
    CellSetup tSetup;
    int32_t nWidth, nHeight, nBlkW, nBlkH;
    BlockSignature* apSignatures[kPoolSlots];  // nMD_RefFrmIdx + 1 of them, the others null
    HalfBlock* pHalves[3];                     // tops of this row, bottoms of it, tops of the next
    BytePlane aDist[kHistoryDepth];            // distances, by HistorySlot
    BytePlane tState;                          // nState of each block
    uint8_t* pYDiff;                           // absolute differences of mean luma, one row
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
    const size_t nRow = static_cast<size_t>(p->nBlkW);
    const size_t nAll = nRow * static_cast<size_t>(p->nBlkH);
    Zeroed(&p->pYDiff, nRow + kGroup);
    for (HalfBlock*& pHalf : p->pHalves) Zeroed(&pHalf, nRow);
    for (BytePlane& t : p->aDist) AllocatePlane(&t, p->nBlkW, p->nBlkH);
    AllocatePlane(&p->tState, p->nBlkW, p->nBlkH);
    for (int32_t i = 0; i < nSlots; ++i) Zeroed(&p->apSignatures[i], nAll);
}

// Halves of block row y. At stride 8 the cell row below a block row is the upper half of the next,
// so each cell row is read once and gives both.
void RowHalves(RowWalk* pScan, const uint8_t* pY, int32_t y) {
    RowWalk& s = *pScan;
    const auto Sums = [&](int32_t nCellRow, HalfBlock* pTop, HalfBlock* pBottom) {
        s.tKernels.pCellRowSums(&s.tSetup, pY, s.nWidth, s.nHeight, 8 * nCellRow, s.nBlkW, pTop,
                                pBottom);
    };
    const int32_t nCellRow = y * s.tSetup.nStrideCells;
    if (y == 0 || s.tSetup.nStrideCells > 1) {
        Sums(nCellRow, s.pHalves[0], nullptr);
    } else {
        std::swap(s.pHalves[0], s.pHalves[2]);
    }
    const bool bNext = s.tSetup.nStrideCells == 1 && y + 1 < s.nBlkH;
    Sums(nCellRow + 1, bNext ? s.pHalves[2] : nullptr, s.pHalves[1]);
}

DecisionRow DecisionRowAt(RowWalk* pScan, int32_t nFrame, int32_t y, uint8_t* pAvailMap,
                          uint8_t* pDistMap) {
    RowWalk& s = *pScan;
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

RowWalk* RowWalkCreate(const KernelPath& tKernels, const MdParams* pParams, int32_t nWidth,
                       int32_t nHeight, const uint8_t* pGaussWin) {
    RowWalk* p = nullptr;
    Zeroed(&p, 1);
    p->tKernels = tKernels;
    p->nWidth = nWidth;
    p->nHeight = nHeight;
    p->nBlkW = BlockCount(nWidth, *pParams);
    p->nBlkH = BlockCount(nHeight, *pParams);
    CellSetupInit(pParams, nWidth, pGaussWin, &p->tSetup);
    AllocateAll(p, pParams->nMD_RefFrmIdx + 1);
    return p;
}

void RowWalkRelease(RowWalk* pScan) {
    if (pScan == nullptr) return;
    for (BlockSignature* p : pScan->apSignatures) std::free(p);
    for (HalfBlock* p : pScan->pHalves) std::free(p);
    for (const BytePlane& t : pScan->aDist) std::free(t.pBytes);
    std::free(pScan->tState.pBytes);
    std::free(pScan->pYDiff);
    std::free(pScan);
}

void RowWalkFrame(RowWalk* pScan, const MdParams* pParams, const uint8_t* pY, int32_t nCurSlot,
                  int32_t nRefSlot, uint8_t* pAvailMap, uint8_t* pDistMap) {
    RowWalk& s = *pScan;
    const MdParams& md = *pParams;
    int32_t iYDiffSum = 0;
    for (int32_t y = 0; y < s.nBlkH; ++y) {
        const int32_t nFirst = y * s.nBlkW;
        BytePlane& tDist = s.aDist[HistorySlot(md.CurFrmId, 0)];
        RowHalves(pScan, pY, y);
        s.tKernels.pBlockRowFeatures(&s.tSetup, s.pHalves[0], s.pHalves[1], s.nBlkW,
                                     s.apSignatures[nCurSlot] + nFirst,
                                     s.apSignatures[nRefSlot] + nFirst, tDist.At(0, y), s.pYDiff);
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

void RowWalkExpand(const RowWalk* pScan, int32_t nSlot, BlockFeature* pFeatures) {
    ExpandSignatures(pScan->apSignatures[nSlot], pScan->nBlkW * pScan->nBlkH, pFeatures);
}
