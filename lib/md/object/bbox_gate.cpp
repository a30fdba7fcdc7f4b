// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/object/bbox_gate.h"

#include <algorithm>
#include <cstddef>

#include "md/print.h"

GateState tGateState;

namespace {

// Enters this frame's box in the rings; a frame without an object clears them all.
void UpdateRings(const MdResult& res, size_t nSlot) {
    GateState& st = tGateState;
    const MdObject& o = res.tObjects[0];
    st.nBboxAreaSum -= st.aBboxArea[nSlot];
    st.nBboxAspectSum -= st.aBboxAspect[nSlot];
    if (res.nObjNum > 0) {
        ++st.nBboxRun;
        st.aBboxArea[nSlot] = (o.right - o.left) * (o.bottom - o.top);
        if (o.yDim > 0 && o.xDim > 0) st.aBboxAspect[nSlot] = o.yDim * 100 / o.xDim;
    } else {
        st.nBboxRun = 0;
        std::fill_n(st.aBboxArea, kGateMaxWindow, 0);
        std::fill_n(st.aBboxAspect, kGateMaxWindow, 0);
        st.nBboxAreaSum = 0;
        st.nBboxAspectSum = 0;
    }
    st.nBboxAreaSum += st.aBboxArea[nSlot];
    st.nBboxAspectSum += st.aBboxAspect[nSlot];
}

void LogRings() {
    const GateState& st = tGateState;
    MdPrint("bbox_area[0]=%d  bbox_area[1]=%d  bbox_area[2]=%d  sum=%d\n", st.aBboxArea[0],
            st.aBboxArea[1], st.aBboxArea[2], st.nBboxAreaSum);
    MdPrint("bbox_aspect[0]=%d  bbox_aspect[1]=%d  bbox_aspect[2]=%d  sum=%d\n", st.aBboxAspect[0],
            st.aBboxAspect[1], st.aBboxAspect[2], st.nBboxAspectSum);
}

// A fifth of the half size on each side, at least 8 pixels across and 16 down.
void GrowBox(const MdResult& res, MdObject* pObject) {
    MdObject& o = *pObject;
    const int32_t nGrowX = std::max(static_cast<int32_t>(o.xDim * 0.2), 8);
    const int32_t nGrowY = std::max(static_cast<int32_t>(o.yDim * 0.2), 16);
    o.left = static_cast<uint16_t>(std::max(o.left - nGrowX, 0));
    o.top = static_cast<uint16_t>(std::max(o.top - nGrowY, 0));
    o.right = static_cast<uint16_t>(std::min(o.right + nGrowX, res.nBlkW * 8 + 7));
    o.bottom = static_cast<uint16_t>(std::min(o.bottom + nGrowY, res.nBlkH * 8 + 7));
}

// Whether a waiting gate opens (kGateOpens), else the first test that holds it.
BoxReason TestBox(const MdPpConfig& cfg, int32_t nPrevArea, int32_t nPrevAspect) {
    const GateState& st = tGateState;
    const int32_t w = cfg.nBboxPpWindow;
    if (st.nBboxRun == 0) return {kGateClosed, {}};
    if (st.nBboxRun < w) return {kGateHoldsNew, {st.nBboxRun, w}};
    if (st.nBboxAreaSum < 2 * w) return {kGateHoldsSmall, {st.nBboxAreaSum, 2 * w}};
    if (!(nPrevArea * cfg.dAreaConvergeThresh >= st.nBboxAreaSum)) {
        return {kGateHoldsArea, {nPrevArea, st.nBboxAreaSum}};
    }
    if (!(nPrevAspect * cfg.dAspectConvergeThresh >= st.nBboxAspectSum)) {
        return {kGateHoldsAspect, {nPrevAspect, st.nBboxAspectSum}};
    }
    return {kGateOpens, {}};
}

// The gate while it waits: opens with this frame's box, or suppresses it.
void WaitForBox(const MdPpConfig& cfg, MdResult* pResult) {
    GateState& st = tGateState;
    const int32_t w = cfg.nBboxPpWindow;
    const int32_t nPrevArea = st.nBboxAreaSum;
    const int32_t nPrevAspect = st.nBboxAspectSum;
    UpdateRings(*pResult, static_cast<size_t>((st.nBboxFrame + w) % w));
    LogRings();
    MdObject& o = pResult->tObjects[0];
    pResult->tGateReason = TestBox(cfg, nPrevArea, nPrevAspect);
    if (pResult->tGateReason.nCode == kGateOpens) {
        st.bBboxLatch = 1;
        GrowBox(*pResult, &o);
        MdPrint("bbox triggered\n");
    } else {
        pResult->nObjNum = 0;
        o.left = o.right = o.top = o.bottom = 0;
        o.xCenter = o.xDim = o.yCenter = o.yDim = 0;
    }
}

}  // namespace

void PpBboxGate(const MdPpConfig* pConfig, MdResult* pResult) {
    GateState& st = tGateState;
    if (st.bBboxLatch != 0) {
        if (pResult->bMotionDetected == 0) st.bBboxLatch = 0;
        pResult->tGateReason = {st.bBboxLatch != 0 ? kGateOpen : kGateCloses, {}};
    } else {
        WaitForBox(*pConfig, pResult);
    }
    ++st.nBboxFrame;
}

void BboxGateReset() {
    tGateState = GateState{};
}
