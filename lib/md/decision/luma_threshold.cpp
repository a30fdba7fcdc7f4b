// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/decision/luma_threshold.h"

#include "md/print.h"

int32_t nYDiffThreCarry;

int32_t MeanThreshold(const MdParams& md, int32_t iYDiffSum, int32_t nBlocks) {
    return ((iYDiffSum / nBlocks) * md.nMD_HogDist_AvgYDiffThre_Scale) >> 4;
}

void FinishThreshold(const MdParams& md, int32_t nBlkH, int32_t nYDiffThre) {
    if (md.nMD_HogDist_AvgYDiffCalc_Method == kPerRow) {
        MdPrint("blockLine=%d, nYDiffThreLine = %d\n", nBlkH - 1, nYDiffThre);
    } else if (md.nMD_HogDist_AvgYDiffCalc_Method == kFromLastFrame) {
        nYDiffThreCarry = nYDiffThre;
    }
}
