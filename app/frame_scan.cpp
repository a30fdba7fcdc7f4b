#include "app/frame_scan.h"

#include <cstddef>
#include <cstdlib>

#include "md/decision/block_walk.h"
#include "md/decision/row_walk.h"
#include "md/feature/kernel_path.h"
#include "md/print.h"
#include "md/run_state.h"

namespace {

RowWalk* pRowWalk;  // null on the plain path

template <typename T>
void Allocate(T** ppMemory, size_t nCount, const char* szWhat) {
    *ppMemory = static_cast<T*>(std::malloc(nCount * sizeof(T)));
    RequireMemory(*ppMemory != nullptr, szWhat);
}

// On the fast path only dumps and box method 2 read the 200-byte records.
bool RecordsWanted() {
    const MdParams& md = tSimParams.tMd;
    return pRowWalk == nullptr || (md.nDbgEn & kDbgFeatures) != 0 || md.nMD_PostProcMethod == 2;
}

void AllocateHistory(size_t nBlocks) {
    Allocate(&tMdResult.ppHistory, nBlocks, "the history table");
    // One allocation holds all records; entry 0 of the table is its start.
    auto* pRecords = static_cast<BlockHistory*>(std::calloc(nBlocks, sizeof(BlockHistory)));
    RequireMemory(pRecords != nullptr, "the history records");
    for (size_t i = 0; i < nBlocks; ++i) tMdResult.ppHistory[i] = pRecords + i;
}

}  // namespace

void FrameScanInit() {
    const MdParams& md = tSimParams.tMd;
    MdResult& res = tMdResult;
    const size_t nBlocks = static_cast<size_t>(res.nBlkW) * static_cast<size_t>(res.nBlkH);
    const KernelPath& tKernels = SelectedKernels();
    pRowWalk = nullptr;
    if (tKernels.pCellRowSums != nullptr && (md.nDbgEn & kDbgDetail) == 0) {
        pRowWalk = RowWalkCreate(tKernels, &md, nMdWidth, nMdHeight, &res.aGaussWin[0][0]);
        RequireMemory(pRowWalk != nullptr, "the block scan");
    }
    if (RecordsWanted()) {
        for (BlockFeature*& pSlot : res.pFeaturePool) Allocate(&pSlot, nBlocks, "the feature pool");
    }
    Allocate(&res.pAvailMap, nBlocks + kMapSlack, "the avail map");
    Allocate(&res.pDistMap, nBlocks + kMapSlack, "the hogDist map");
    Allocate(&res.pAvailBits, (nBlocks + 7) >> 3, "the avail bitmap");
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
