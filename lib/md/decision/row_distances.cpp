// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/decision/row_distances.h"

#include <cstdlib>

void RowDistances_Scalar(const DistanceSetup& t, const RecordRow& tCur, const RecordRow& tRef,
                         int32_t nBlocks, uint8_t* pDist, uint8_t* pYDiff) {
    for (int32_t i = 0; i < nBlocks; ++i) {
        const BlockRecord cur = LoadRecord(tCur, i), ref = LoadRecord(tRef, i);
        const Distance d =
            DistanceOf(t, cur.a, cur.a[kRecordHistNorm2], ref.a, ref.a[kRecordHistNorm2]);
        pDist[i] = static_cast<uint8_t>(d.iHOGDist);
        pYDiff[i] = static_cast<uint8_t>(std::abs(cur.a[kRecordAvgY] - ref.a[kRecordAvgY]));
    }
}
