// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Row kernel 2: the feature records of a block row, from the sums of its two halves.
#pragma once

#include <cstdint>

#include "md/block_feature.h"
#include "md/feature/cell_sums.h"
#include "md/feature/mog_feature.h"

// What distances and dumps need of a record: twelve bytes. Elements 0 to 9 are those of the vector.
enum RecordElement : int32_t { kRecordAvgY = 10, kRecordHistNorm2 = 11, kRecordElements = 12 };

constexpr int32_t kRecordPlanes = 3;

// The records of a block row: three planes of four elements each, with room for RoundToRowStep
// blocks. In a plane 16 bytes hold four blocks: the first two elements of each, then the other two.
// That is what packing makes of vectors with a block per 32 bits, whatever their width. Owns
// nothing.
struct RecordRow {
    uint8_t* apPlane[kRecordPlanes];
};

// Where element e of block i is in plane e / 4.
constexpr int32_t RecordPlace(int32_t e, int32_t i) {
    return i / 4 * 16 + e % 4 / 2 * 8 + i % 4 * 2 + e % 2;
}

// The record of block i in the order of its elements.
struct BlockRecord {
    uint8_t a[kRecordElements];
};
BlockRecord LoadRecord(const RecordRow& tRow, int32_t i);

// The sums are those of cell_sums.h; planes of both may hold anything after the last block.
using BlockRowRecordsFn = void(const RecordSetup& t, const HalfRow& tTop, const HalfRow& tBottom,
                               int32_t nBlocks, const RecordRow& tOut);

// The definition; block_records.inc holds the vector text.
BlockRowRecordsFn BlockRowRecords_Scalar;

// The 200-byte records of a row, for dumps and box method 2.
void ExpandRecords(const RecordRow& tRow, int32_t nBlocks, BlockFeature* pFeatures);
