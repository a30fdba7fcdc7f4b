// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/feature/block_records.h"

#include <cstring>

namespace {

// The numbers of block i out of its four cells, 0 and 1 of the upper half, 2 and 3 of the lower.
MogSums SumsOf(const HalfRow& tTop, const HalfRow& tBottom, int32_t i) {
    MogSums t{};
    for (int32_t c = 0; c < 4; ++c) {
        const HalfRow& tHalf = c < 2 ? tTop : tBottom;
        const int32_t nMag = tHalf.apPlane[kMag + c % 2][i];
        t.mag_x_cell[c] = tHalf.apPlane[kMomX + c % 2][i];
        t.mag_y_cell[c] = tHalf.apPlane[kMomY + c % 2][i];
        // A cell's own moments count from its corner; the block's from the block's.
        t.nBlkMomX += t.mag_x_cell[c] + 8 * (c % 2) * nMag;
        t.nBlkMomY += t.mag_y_cell[c] + 8 * (c / 2) * nMag;
    }
    t.nSumY = tTop.apPlane[kLuma][i] + tBottom.apPlane[kLuma][i];
    return t;
}

}  // namespace

BlockRecord LoadRecord(const RecordRow& tRow, int32_t i) {
    BlockRecord t;
    for (int32_t e = 0; e < kRecordElements; ++e) {
        t.a[e] = tRow.apPlane[e / 4][RecordPlace(e, i)];
    }
    return t;
}

void BlockRowRecords_Scalar(const RecordSetup& t, const HalfRow& tTop, const HalfRow& tBottom,
                            int32_t nBlocks, const RecordRow& tOut) {
    for (int32_t i = 0; i < nBlocks; ++i) {
        BlockFeature f;
        BlockFeatureRecord(t, SumsOf(tTop, tBottom, i), &f);
        for (int32_t e = 0; e < kRecordElements; ++e) {
            const uint8_t n = e == kRecordAvgY        ? f.nAvgY
                              : e == kRecordHistNorm2 ? f.histNorm2
                                                      : f.v[e];
            tOut.apPlane[e / 4][RecordPlace(e, i)] = n;
        }
    }
}

void ExpandRecords(const RecordRow& tRow, int32_t nBlocks, BlockFeature* pFeatures) {
    for (int32_t i = 0; i < nBlocks; ++i) {
        const BlockRecord t = LoadRecord(tRow, i);
        BlockFeature& f = pFeatures[i];
        std::memcpy(f.v, t.a, sizeof f.v);
        std::memset(f.aCog, 0, sizeof f.aCog);
        f.histNorm0 = 1;
        f.nAvgY = t.a[kRecordAvgY];
        f.histNorm2 = t.a[kRecordHistNorm2];
    }
}
