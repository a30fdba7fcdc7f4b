#include "md/object/post_proc.h"

#include <cstring>

#include "md/object/bbox_gate.h"
#include "md/object/bisection.h"
#include "md/object/grid_cluster.h"
#include "md/object/projection_box.h"
#include "md/object/weighted_centroid.h"
#include "md/print.h"
#include "md/run_state.h"

void MdPackAvailBits() {
    const int32_t n = tMdResult.nBlkW * tMdResult.nBlkH;
    uint8_t* pBits = tMdResult.pAvailBits;
    std::memset(pBits, 0, static_cast<size_t>((n + 7) >> 3));
    for (int32_t i = 0; i < n; ++i) {
        if (tMdResult.pAvailMap[i] == 0) continue;  // most blocks
        pBits[i >> 3] = static_cast<uint8_t>(pBits[i >> 3] | tMdResult.pAvailMap[i] << (i & 7));
    }
}

void MdPostProc(const MdPpConfig* pConfig, MdResult* pResult) {
    MdClearObjects(pResult);
    switch (pConfig->nPostProcMethod) {
        case 0:
            PpWeightedCentroid(pConfig, pResult);
            break;
        case 1:
            PpGridCluster(pConfig, pResult);
            break;
        case 2:
            PpProjectionBox(pConfig, pResult);
            break;
        case 3:
            PpBisection(pConfig, pResult);
            break;
        default:
            break;
    }
    const MdObject& tObject = pResult->tObjects[0];
    MdPrint("MotionDetected=%d, objNum=%d, (%d, %d, %d, %d, %d)\n", pResult->bMotionDetected,
            pResult->nObjNum, tObject.bValid, tObject.left, tObject.right, tObject.top,
            tObject.bottom);
    if (pConfig->bBboxPpEnable != 0) PpBboxGate(pConfig, pResult);
    MdPrint("PP_V2: l,r,t,b = %d,%d,%d,%d\n", tObject.left, tObject.right, tObject.top,
            tObject.bottom);
}

void MdClearObjects(MdResult* pResult) {
    pResult->bMotionDetected = 0;
    std::memset(pResult->tObjects, 0, sizeof pResult->tObjects);
    pResult->nObjNum = 0;
}
