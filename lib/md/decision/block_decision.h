// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Distance of a block from its reference, and whether the block counts as active. The decision
// weighs the distance, the block's last three distances and the state of its neighbours.
#pragma once

#include <cstdint>

#include "md/block_feature.h"
#include "md/block_history.h"
#include "md/sim_params.h"

// Decides one block. Writes *pAvail (0 or 1), *pDist (0 to 255) and the centre record; with
// nMD_NeighborCorrelation 0 the history is not used. Neighbour records are null outside the grid.
//
// The raster order of the calls is part of the result: up, left, up-left and up-right have been
// decided in this frame, the others still show the last. `nYDiffThre` is the luma threshold in
// force, 0 to 8144. `bAllNeighborsAvail` is 1 for a block that is not on the grid's border.
void BlockHogDistance_NormalHog(const MdParams* pParams, const BlockFeature* pCur,
                                const BlockFeature* pRef, int32_t nYDiffThre, uint8_t* pAvail,
                                uint8_t* pDist, BlockHistory* pCentre, const BlockHistory* pUp,
                                const BlockHistory* pLeft, const BlockHistory* pUpLeft,
                                const BlockHistory* pUpRight, const BlockHistory* pDown,
                                const BlockHistory* pRight, const BlockHistory* pDownRight,
                                const BlockHistory* pDownLeft, int32_t bAllNeighborsAvail);
