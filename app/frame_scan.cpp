// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "app/frame_scan.h"

#include <cstddef>
#include <cstdlib>

#include "md/decision/block_walk.h"
#include "md/decision/row_kernels.h"
#include "md/decision/row_walk.h"
#include "md/memory.h"
#include "md/object/box_methods.h"
#include "md/output/dumps.h"
#include "md/run_state.h"

namespace {

// The row walk may read on after the luma of a frame. Its chroma, half as many bytes, is there; the
// smallest frame is one block of 16 x 16 pixels.
static_assert(16 * 16 / 2 >= kLumaSlack);

RowWalk* pRowWalk;  // null where the block walk runs
bool bKeepRecords;  // a caller of the run reads them

// The block walk works on the 200-byte records; after the row walk only those read them who say so.
bool RecordsWanted() {
    return pRowWalk == nullptr || bKeepRecords || DumpsReadRecords() ||
           BoxMethodOf(tSimParams.tMd.nMD_PostProcMethod).bReadsRecords;
}

void AllocateHistory(size_t nBlocks) {
    tMdResult.ppHistory = Allocate<BlockHistory*>(nBlocks, "the history table");
    // One allocation holds all records; entry 0 of the table is its start.
    auto* pRecords = AllocateZeroed<BlockHistory>(nBlocks, "the history records");
    for (size_t i = 0; i < nBlocks; ++i) tMdResult.ppHistory[i] = pRecords + i;
}

}  // namespace

void FrameScanKeepRecords() {
    bKeepRecords = true;
}

void FrameScanInit() {
    const MdParams& md = tSimParams.tMd;
    MdResult& res = tMdResult;
    const size_t nBlocks = static_cast<size_t>(res.nBlkW) * static_cast<size_t>(res.nBlkH);
    const RowKernels* pKernels = SelectedKernels();
    pRowWalk = nullptr;
    if (pKernels != nullptr && (md.nDbgEn & kDbgDetail) == 0) {
        pRowWalk = RowWalkCreate(*pKernels, &md, nMdWidth, nMdHeight, &res.aGaussWin[0][0]);
    }
    if (RecordsWanted()) {
        for (BlockFeature*& pSlot : res.pFeaturePool) {
            pSlot = Allocate<BlockFeature>(nBlocks, "the feature pool");
        }
    }
    res.pAvailMap = Allocate<uint8_t>(nBlocks + kMapSlack, "the avail map");
    res.pDistMap = Allocate<uint8_t>(nBlocks + kMapSlack, "the hogDist map");
    res.pAvailBits = Allocate<uint8_t>((nBlocks + 7) >> 3, "the avail bitmap");
    if (pRowWalk == nullptr) AllocateHistory(nBlocks);
}

void FrameScanRelease() {
    MdResult& res = tMdResult;
    for (BlockFeature* pSlot : res.pFeaturePool) std::free(pSlot);
    std::free(res.pAvailMap);
    std::free(res.pDistMap);
    std::free(res.pAvailBits);
    if (res.ppHistory != nullptr) std::free(res.ppHistory[0]);
    std::free(res.ppHistory);
    RowWalkRelease(pRowWalk);
    pRowWalk = nullptr;
}

void FrameScanReset() {
    pRowWalk = nullptr;
}

void FrameScanRun() {
    const MdParams& md = tSimParams.tMd;
    MdResult& res = tMdResult;
    // The first frame is compared with itself, whatever the reference mode.
    const int32_t nCurSlot = md.CurFrmId % (md.nMD_RefFrmIdx + 1);
    const int32_t nRefSlot = md.CurFrmId == 0 ? nCurSlot : md.RefBufIdx;
    if (pRowWalk == nullptr) {
        FrameBlockScan_NormalHog(&md, tFrameBuffers.pCurYuv, nMdWidth, nMdHeight,
                                 &res.aGaussWin[0][0], res.pCurFeat, res.pFeaturePool[nRefSlot],
                                 res.pAvailMap, res.pDistMap, res.ppHistory);
        return;
    }
    RowWalkFrame(pRowWalk, &md, tFrameBuffers.pCurYuv, nCurSlot, nRefSlot, res.pAvailMap,
                 res.pDistMap);
    if (RecordsWanted()) RowWalkExpand(pRowWalk, nCurSlot, res.pCurFeat);
}
