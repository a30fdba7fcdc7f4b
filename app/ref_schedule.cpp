// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "app/ref_schedule.h"

#include <cstring>

#include "md/print.h"
#include "md/run_state.h"

namespace {

// Until R frames have passed the reference is slot 0; from then on it is the slot that the next
// frame will overwrite, which holds frame n - R.
int32_t ReferenceSlot(int32_t n, int32_t R) {
    return n < R ? 0 : (n + 1) % (R + 1);
}

void CopyToPool(int32_t nSlot) {
    const size_t nPixels = static_cast<size_t>(nMdWidth) * static_cast<size_t>(nMdHeight);
    std::memcpy(tFrameBuffers.ppPrevYBuffer[nSlot], tFrameBuffers.pCurYuv, (nPixels * 3) >> 1);
}

}  // namespace

void MdUpdateRefBufIdx(MdParams* pParams) {
    pParams->RefBufIdx = ReferenceSlot(pParams->CurFrmId, pParams->nMD_RefFrmIdx);
}

void MdRefSchedule() {
    MdParams& md = tSimParams.tMd;
    const int32_t n = md.CurFrmId;
    const int32_t R = md.nMD_RefFrmIdx;
    const bool bDetail = (md.nDbgEn & kDbgDetail) != 0;
    if (md.nMD_HogRefMode == kRefLoggedTwice) {
        md.RefBufIdx = ReferenceSlot(n, R);
        if (bDetail) MdPrint("CurFrmId=%d, RefBufIdx=%d\n", n, md.RefBufIdx);
    } else {
        MdUpdateRefBufIdx(&md);
    }
    if (n > 0) {
        // The line names the frame before; the buffer holds the frame just read.
        if (bDetail) {
            MdPrint("Copy Y of frame(%d) to ppPrevYBuffer(%d).\n", n - 1, md.RefBufIdx);
        }
        // The left panel of comp is the pool's one reader; without it the copy is left out.
        if ((md.nDbgEn & kDbgComp) != 0 && R != 0) CopyToPool(md.RefBufIdx);
    }
    tMdResult.pCurFeat = tMdResult.pFeaturePool[n % (R + 1)];
    if (bDetail) MdPrint("CurFrmId=%d, RefBufIdx=%d\n", n, md.RefBufIdx);
}
