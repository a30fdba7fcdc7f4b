// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/object/post_proc.h"

#include <algorithm>
#include <cstring>

#include "md/object/bbox_gate.h"
#include "md/object/box_methods.h"
#include "md/print.h"
#include "md/run_state.h"

void MdPackAvailBits() {
    const int32_t n = tMdResult.nBlkW * tMdResult.nBlkH;
    for (int32_t i = 0; i < n; i += 8) {
        const uint8_t* pAvail = tMdResult.pAvailMap + i;
        int32_t nBits = 0;
        for (int32_t k = 0; k < std::min(n - i, 8); ++k) nBits |= pAvail[k] << k;
        tMdResult.pAvailBits[i >> 3] = static_cast<uint8_t>(nBits);
    }
}

void MdPostProc(const MdPpConfig* pConfig, MdResult* pResult) {
    MdClearObjects(pResult);
    BoxMethodOf(pConfig->nPostProcMethod).pRun(pConfig, pResult);
    const MdObject& tObject = pResult->tObjects[0];
    MdPrint("MotionDetected=%d, objNum=%d, (%d, %d, %d, %d, %d)\n", pResult->bMotionDetected,
            pResult->nObjNum, tObject.bValid, tObject.left, tObject.right, tObject.top,
            tObject.bottom);
    pResult->tMethodObject = tObject;
    pResult->tMethodObject.bValid = pResult->nObjNum;
    if (pConfig->bBboxPpEnable != 0) PpBboxGate(pConfig, pResult);
    MdPrint("PP_V2: l,r,t,b = %d,%d,%d,%d\n", tObject.left, tObject.right, tObject.top,
            tObject.bottom);
}

void MdClearObjects(MdResult* pResult) {
    pResult->bMotionDetected = 0;
    std::memset(pResult->tObjects, 0, sizeof pResult->tObjects);
    pResult->nObjNum = 0;
    pResult->tMethodObject = MdObject{};
    pResult->tBoxReason = BoxReason{};
    pResult->tGateReason = BoxReason{};
}
