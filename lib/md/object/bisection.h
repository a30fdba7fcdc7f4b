// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Box method 3: the distance map is a mass distribution on each axis by itself. The weighted centre
// of a slab splits it in two, each half is split again, and on the way back the reaches of the
// halves join into one effective dimension. An object exists when both axes keep their node.
#pragma once

#include <cstdint>

#include "md/md_result.h"

enum Axis : int32_t { kAxisY = 0, kAxisX = 1 };

// The result of one axis, each value cut to 16 bits.
struct SlabNode {
    uint8_t bValid;
    uint16_t Area;    // sum of distances
    uint16_t Center;  // pixels
    uint16_t Dim;     // pixels
};

void PpBisection(const MdPpConfig* pConfig, MdResult* pResult);

// Sets centre and dimension of the object and nObjNum.
void BisectAxes(const MdPpConfig* pConfig, MdResult* pResult);

// Splits the slab of pixels nLo to nHi, both included, and stores its centre and dimension; writes
// the node at nNode when nDepth is within the limit. Each half is shorter than its slab. May be
// called with nHi < nLo after a moment wrapped; it then sees no blocks.
void BisectSlab(int32_t nThreshold, uint32_t nLo, uint32_t nHi, uint32_t* pCenter, uint32_t* pDim,
                int32_t nStride, int32_t nBlkW, int32_t nBlkH, const uint8_t* pDistMap,
                const uint8_t* pAvailBits, SlabNode* pNodes, uint32_t nNode, int32_t nDepthLimit,
                Axis nAxis, int32_t nDepth);

// Distance sum and weighted centre of a slab; the centre of one without weight is nLo.
void SlabCenter(int32_t nThreshold, uint32_t nLo, uint32_t nHi, uint32_t* pArea, uint32_t* pCenter,
                int32_t nStride, int32_t nBlkW, int32_t nBlkH, const uint8_t* pDistMap,
                const uint8_t* pAvailBits, Axis nAxis);

// Clears the valid flag of a node that is too thin or too light for its size, and logs which. Gives
// that reason, or kBisectionMotion.
BoxReason NodeDesense(SlabNode* pNode, Axis nAxis);
