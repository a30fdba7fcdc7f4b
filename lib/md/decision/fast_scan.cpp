#include "md/decision/fast_scan.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "md/block_history.h"
#include "md/decision/activity_rules.h"
#include "md/decision/frame_block_scan.h"

namespace {

constexpr int32_t kGroup = 16;  // blocks settled at once
using Bytes = uint8_t __attribute__((vector_size(kGroup)));

// A plane of one byte a block with a border of zeros: a row above and below, kGroup columns before
// each row and at least one behind.
struct BytePlane {
    uint8_t* pBytes;
    ptrdiff_t nPitch;

    uint8_t* At(int32_t x, int32_t y) const { return pBytes + (y + 1) * nPitch + kGroup + x; }
};

}  // namespace

struct FastScan {
    KernelPath tKernels;
    CellSetup tSetup;
    int32_t nWidth, nHeight, nBlkW, nBlkH;
    BlockSignature* apSignatures[kPoolSlots];  // nMD_RefFrmIdx + 1 of them, the others null
    HalfBlock* pHalves[3];                     // tops of this row, bottoms of it, tops of the next
    BytePlane aDist[3];                        // ring: the distances of frame f are in f % 3
    BytePlane tState;                          // nState of each block
    uint8_t* pYDiff;                           // absolute differences of mean luma, one row
};

namespace {

template <typename T>
bool AllocateZero(T** pp, size_t nCount) {
    *pp = static_cast<T*>(std::calloc(nCount, sizeof(T)));
    return *pp != nullptr;
}

bool AllocatePlane(BytePlane* pPlane, int32_t nBlkW, int32_t nBlkH) {
    pPlane->nPitch = (nBlkW + 2 * kGroup) / kGroup * kGroup;
    return AllocateZero(&pPlane->pBytes,
                        static_cast<size_t>(pPlane->nPitch * (nBlkH + 2) + kGroup));
}

bool AllocateAll(FastScan* p, int32_t nSlots) {
    const size_t nRow = static_cast<size_t>(p->nBlkW);
    const size_t nAll = nRow * static_cast<size_t>(p->nBlkH);
    bool bDone = AllocateZero(&p->pYDiff, nRow + kGroup);
    for (HalfBlock*& pHalf : p->pHalves) bDone = bDone && AllocateZero(&pHalf, nRow);
    for (BytePlane& t : p->aDist) bDone = bDone && AllocatePlane(&t, p->nBlkW, p->nBlkH);
    bDone = bDone && AllocatePlane(&p->tState, p->nBlkW, p->nBlkH);
    for (int32_t i = 0; i < nSlots; ++i) bDone = bDone && AllocateZero(&p->apSignatures[i], nAll);
    return bDone;
}

Bytes LoadBytes(const uint8_t* p) {
    Bytes v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

void StoreBytes(uint8_t* p, Bytes v) {
    std::memcpy(p, &v, sizeof v);
}

bool AnySet(Bytes v) {
    uint64_t n[2];
    std::memcpy(n, &v, sizeof v);
    return (n[0] | n[1]) != 0;
}

// What the decisions of one row work on.
struct RowView {
    const MdParams& md;
    const FastScan& scan;
    int32_t y;
    uint8_t* pAvail;  // this row of the maps
    uint8_t* pDist;
    bool bFrameNotAvail;  // the reference is the frame itself
};

// Lanes (255 or 0) of the blocks whose distance does not count.
Bytes NotAvailable(const RowView& row, int32_t x, int32_t nYDiffThre) {
    const uint8_t nNone = row.bFrameNotAvail ? 255 : 0;
    Bytes v = Bytes{} + nNone;
    if (row.md.nMD_HogDistAvailCheck == 1) {
        const Bytes nThre = Bytes{} + static_cast<uint8_t>(std::min(nYDiffThre, 255));
        v |= LoadBytes(row.scan.pYDiff + x) <= nThre;
    }
    return v;
}

constexpr uint8_t kFlags = kStateActive | kStateHighActive;

// Neighbour counts of the blocks x to x + 15, each without its left neighbour: that one is decided
// just before its right one, all others stand when the group's turn comes.
struct GroupCounts {
    Bytes nAct, nActLater, nHighAct;
    Bytes bFlags;  // any flag on the block or a neighbour, the left one as it stands now included
};

GroupCounts CountGroup(const BytePlane& tState, int32_t x, int32_t y) {
    GroupCounts c{};
    for (int32_t dy = -1; dy <= 1; ++dy) {
        for (int32_t dx = -1; dx <= 1; ++dx) {
            const Bytes nState = LoadBytes(tState.At(x + dx, y + dy));
            c.bFlags |= nState & kFlags;
            if (dy == 0 && dx == -1) continue;
            const Bytes nActive = (nState >> 4) & 1;
            c.nAct += nActive;
            // Later are the row below, the right neighbour and the block itself.
            if (dy >= 0) c.nActLater += nActive;
            c.nHighAct += (nState >> 5) & 1;
        }
    }
    return c;
}

NeighbourCounts CountsOf(const GroupCounts& c, int32_t i, uint8_t nLeftState) {
    return {
        .nActBlkCnt = c.nAct[i] + ((nLeftState >> 4) & 1),
        .nActBlkCntLater = c.nActLater[i],
        .nHighActBlkCnt = c.nHighAct[i] + ((nLeftState >> 5) & 1),
    };
}

// Decides block x by the rules. `tGroup` counts for x - i and the fifteen behind it.
void DecideBlock(const RowView& row, const Thresholds& th, const GroupCounts& tGroup, int32_t i,
                 int32_t x, bool bNotAvail) {
    const FastScan& scan = row.scan;
    const int32_t f = row.md.CurFrmId;
    const int32_t y = row.y;
    uint8_t* pState = scan.tState.At(x, y);
    if (bNotAvail) {
        row.pAvail[x] = 0;
        row.pDist[x] = 0;
        *pState &= kStateRepeatMask;
        return;
    }
    const uint8_t* pNow = scan.aDist[f % 3].At(x, y);
    const uint8_t* pAbove = scan.aDist[f % 3].At(x, y - 1);
    const BlockView v{
        .tCounts = CountsOf(tGroup, i, pState[-1]),
        .dUp = pAbove[0],
        .dLeft = pNow[-1],
        .dUpLeft = pAbove[-1],
        .dUpRight = pAbove[1],
        .bAllNeighborsAvail = 0 < x && x < scan.nBlkW - 1 && 0 < y && y < scan.nBlkH - 1,
        .d = {*pNow, *scan.aDist[(f + 2) % 3].At(x, y), *scan.aDist[(f + 1) % 3].At(x, y)},
        .nState = *pState,
    };
    const Activity a = DecideActivity(row.md, th, v);
    row.pAvail[x] = a.nAvail;
    row.pDist[x] = *pNow;
    *pState = static_cast<uint8_t>(a.nState);
}

// A quiet block, without flags around it and with no distance over the limit, ends with avail 0 and
// one repeat less. The limit keeps below 170, where the rules on saturated distances begin. Sixteen
// quiet blocks are settled at once; else one by one, since a block may set a flag beside the next.
void DecideGroup(const RowView& row, const Thresholds& th, int32_t nYDiffThre, int32_t x) {
    const FastScan& scan = row.scan;
    uint8_t* pState = scan.tState.At(x, row.y);
    const Bytes nDist = LoadBytes(scan.aDist[row.md.CurFrmId % 3].At(x, row.y));
    const Bytes nState = LoadBytes(pState);
    const Bytes bNotAvail = NotAvailable(row, x, nYDiffThre);
    const Bytes nLimit = Bytes{} + static_cast<uint8_t>(std::min(th.nBlkDistThNn, 169));
    const GroupCounts tGroup = CountGroup(scan.tState, x, row.y);
    const Bytes bLoud = (Bytes)((nDist > nLimit) & ~bNotAvail) | tGroup.bFlags;
    const Bytes nQuietState = nState - ((Bytes)((nState > 0) & ~bNotAvail) & 1);
    StoreBytes(row.pAvail + x, Bytes{});
    StoreBytes(row.pDist + x, nDist & ~bNotAvail);
    if (!AnySet(bLoud)) {
        StoreBytes(pState, nQuietState);
        return;
    }
    const int32_t nCount = std::min(kGroup, scan.nBlkW - x);
    for (int32_t i = 0; i < nCount; ++i) {
        if (bLoud[i] == 0 && (pState[i - 1] & kFlags) == 0) {
            pState[i] = nQuietState[i];
        } else {
            DecideBlock(row, th, tGroup, i, x + i, bNotAvail[i] != 0);
        }
    }
}

// Without correlation a block is active unless its distance does not count.
void DecideGroupAlone(const RowView& row, int32_t nYDiffThre, int32_t x) {
    const Bytes bNotAvail = NotAvailable(row, x, nYDiffThre);
    const Bytes nDist = LoadBytes(row.scan.aDist[row.md.CurFrmId % 3].At(x, row.y));
    StoreBytes(row.pAvail + x, ~bNotAvail & 1);
    StoreBytes(row.pDist + x, nDist & ~bNotAvail);
}

// The whole row under one threshold.
void DecideRow(const RowView& row, int32_t nYDiffThre) {
    const Thresholds th = BlockThresholds(row.md, nYDiffThre);
    for (int32_t x = 0; x < row.scan.nBlkW; x += kGroup) {
        if (row.md.nMD_NeighborCorrelation != 0) {
            DecideGroup(row, th, nYDiffThre, x);
        } else {
            DecideGroupAlone(row, nYDiffThre, x);
        }
    }
}

// Threshold method 1: every block has its own threshold.
void DecideRowRunning(const RowView& row, int32_t iYDiffSum) {
    for (int32_t x = 0; x < row.scan.nBlkW; ++x) {
        iYDiffSum += row.scan.pYDiff[x];
        const int32_t n = row.y * row.scan.nBlkW + x + 1;
        const int32_t nYDiffThre = MeanThreshold(row.md, iYDiffSum, n);
        const bool bNotAvail = NotAvailable(row, x, nYDiffThre)[0] != 0;
        if (row.md.nMD_NeighborCorrelation != 0) {
            DecideBlock(row, BlockThresholds(row.md, nYDiffThre),
                        CountGroup(row.scan.tState, x, row.y), 0, x, bNotAvail);
        } else {
            row.pAvail[x] = bNotAvail ? 0 : 1;
            row.pDist[x] =
                bNotAvail ? uint8_t{0} : *row.scan.aDist[row.md.CurFrmId % 3].At(x, row.y);
        }
    }
}

// Halves of block row y. At stride 8 the cell row below a block row is the upper half of the next,
// so each cell row is read once and gives both.
void RowHalves(FastScan* pScan, const uint8_t* pY, int32_t y) {
    FastScan& s = *pScan;
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

}  // namespace

FastScan* FastScanCreate(const KernelPath& tKernels, const MdParams* pParams, int32_t nWidth,
                         int32_t nHeight, const uint8_t* pGaussWin) {
    FastScan* p = nullptr;
    if (!AllocateZero(&p, 1)) return nullptr;
    p->tKernels = tKernels;
    p->nWidth = nWidth;
    p->nHeight = nHeight;
    p->nBlkW = BlockCount(nWidth, *pParams);
    p->nBlkH = BlockCount(nHeight, *pParams);
    CellSetupInit(pParams, nWidth, pGaussWin, &p->tSetup);
    if (AllocateAll(p, pParams->nMD_RefFrmIdx + 1)) return p;
    FastScanRelease(p);
    return nullptr;
}

void FastScanRelease(FastScan* pScan) {
    if (pScan == nullptr) return;
    for (BlockSignature* p : pScan->apSignatures) std::free(p);
    for (HalfBlock* p : pScan->pHalves) std::free(p);
    for (const BytePlane& t : pScan->aDist) std::free(t.pBytes);
    std::free(pScan->tState.pBytes);
    std::free(pScan->pYDiff);
    std::free(pScan);
}

void FrameBlockScan_Fast(FastScan* pScan, const MdParams* pParams, const uint8_t* pY,
                         int32_t nCurSlot, int32_t nRefSlot, uint8_t* pAvailMap,
                         uint8_t* pDistMap) {
    FastScan& s = *pScan;
    const MdParams& md = *pParams;
    const bool bFrameNotAvail = md.CurFrmId == md.RefBufIdx;
    int32_t iYDiffSum = 0;
    for (int32_t y = 0; y < s.nBlkH; ++y) {
        const int32_t nFirst = y * s.nBlkW;
        RowHalves(pScan, pY, y);
        s.tKernels.pBlockRowFeatures(
            &s.tSetup, s.pHalves[0], s.pHalves[1], s.nBlkW, s.apSignatures[nCurSlot] + nFirst,
            s.apSignatures[nRefSlot] + nFirst, s.aDist[md.CurFrmId % 3].At(0, y), s.pYDiff);
        const int32_t iSumBefore = iYDiffSum;
        for (int32_t x = 0; x < s.nBlkW; ++x) iYDiffSum += s.pYDiff[x];
        const RowView row{md, s, y, pAvailMap + nFirst, pDistMap + nFirst, bFrameNotAvail};
        switch (md.nMD_HogDist_AvgYDiffCalc_Method) {
            case kPerRow:
                DecideRow(row, MeanThreshold(md, iYDiffSum, nFirst + s.nBlkW));
                break;
            case kRunning:
                DecideRowRunning(row, iSumBefore);
                break;
            default:
                DecideRow(row, nYDiffThreCarry);
                break;
        }
    }
    FinishThreshold(md, s.nBlkH, MeanThreshold(md, iYDiffSum, s.nBlkH * s.nBlkW));
}

void FastScanExpand(const FastScan* pScan, int32_t nSlot, BlockFeature* pFeatures) {
    ExpandSignatures(pScan->apSignatures[nSlot], pScan->nBlkW * pScan->nBlkH, pFeatures);
}
