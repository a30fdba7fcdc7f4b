// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Row kernel 3: the distances of a block row from its reference row, and how far their mean luma
// has moved.
#pragma once

#include <cstdint>

#include "md/decision/distance.h"
#include "md/feature/block_records.h"

// pDist: 0 to 255 a block; pYDiff: absolute differences of mean luma. Both with room for
// RoundToRowStep blocks. tCur and tRef may be one row.
using RowDistancesFn = void(const DistanceSetup& t, const RecordRow& tCur, const RecordRow& tRef,
                            int32_t nBlocks, uint8_t* pDist, uint8_t* pYDiff);

// The definition; row_distances.inc holds the vector text.
RowDistancesFn RowDistances_Scalar;
