// The fast way to the feature records of a block row: the same sums as BlockFeature_NormalHog, over
// whole rows of cells instead of one block at a time.
//
// A block is four cells of 8 x 8 pixels, and strides are multiples of 8, so every block's corner
// lies on the grid of cells. A cell serves each block over it in another role: as its left or right
// half, as its top or bottom half. The border of a block (block_fetch.h) changes the horizontal
// gradient only in its columns 0, 1, 14, 15, hence with the left or right role alone, and the
// vertical one only in its rows 0, 1, 14, 15, with the top or bottom role alone. So a row of cells
// needs two versions of each gradient, whatever the number of blocks over it; magnitude, weight and
// moments follow per block.
//
// Why 16 bits hold what the lanes carry, with |gradient| <= 2040 by the tap limit:
//   a tap pair, and any sum of pairs, by the same limit      <= 2040
//   magnitude m = max + (min >> 1)                           <= 3060
//   weight (m * w) >> 6 as high half of (2 m) * (w << 9)     2 m <= 6120, w << 9 <= 32768
//   column sum over 8 rows                                   <= 8 * 3060 = 24480
//   y moment = S1 + ... + S7, where Sr is the sum of rows r to 7:
//     S7 to S4 together                                      <= (1 + 2 + 3 + 4) * 3060 = 30600
//     S3 to S1, kept around zero                             <= (5 + 6 + 7) * 3060 = 2 * 27540
// A cell's moment, at most 28 * 8 * 3060 = 685,440, and all sums of a block take 32 bits.
#pragma once

#include <cstdint>

#include "md/block_feature.h"
#include "md/sim_params.h"

// The taps of a filter that are not 0, two by two: a pair of pixels is multiplied and added in one
// step, and a tap of 0 costs nothing. A missing partner has the tap 0.
struct TapPairs {
    int32_t nPairs;        // 1 to 3
    uint8_t aPlace[3][2];  // 0 to 4, the filter's middle is 2
    int16_t aTaps[3];      // first tap in the low byte, second in the high one
};

// What the kernels read of the settings, brought into lane order once a run.
struct CellSetup {
    TapPairs tPairsX, tPairsY;
    // Where the pixels of each pair lie for the eight columns of a cell, in the 16 bytes from two
    // columns before it: as left cell of a block in bytes 0 to 15, as right one in 16 to 31. Zeros
    // beyond the border are at place 128. The row's first block, [1][], has nothing before its left
    // cell, whose bytes begin with it; in the last one, [][1], columns beyond the frame repeat its
    // edge.
    uint8_t aPlacesX[2][2][3][32];
    uint16_t aWeight[16][16];  // Gaussian weight << 9; 64 << 9 with weighting off
    int32_t nPadding;          // 0 neighbours, 1 zeros, 2 the block's own edge
    int32_t nStrideCells;      // block stride in cells, 1 to 8
    bool bMoments;             // metric on; else the vector stays 0
    bool bNormalise;
    int32_t nShiftMetric;   // right shift of the cell moments
    int32_t nShiftHistMag;  // 0 to 7
    bool bWeightOneSided;   // form of the distance weight
    int32_t nAccuShift;     // right shift of the squared distance, 4 or 6
    int32_t nScale;         // scale of the distance, 0 to 511
    int32_t nDistShift;     // right shift of the scaled distance, 4 or 12
};

// For frames of nWidth columns.
void CellSetupInit(const MdParams* pParams, int32_t nWidth, const uint8_t* pGaussWin,
                   CellSetup* pSetup);

// Sums of one cell in one role: magnitude, x moment and y moment within the cell, luma.
struct CellSums {
    int32_t nMag, nMomX, nMomY, nLuma;
};

// Upper or lower half of a block.
struct HalfBlock {
    CellSums tLeft, tRight;
};

// What distance and dumps need of a feature record, packed so that a row of them stays in cache.
struct alignas(16) BlockSignature {
    uint8_t v[kVectorSize];
    uint8_t nAvgY;
    uint8_t histNorm2;
    uint8_t aZero[4];
};
static_assert(sizeof(BlockSignature) == 16);

// Up to so many bytes behind a luma plane are read with it and do not count: cells are 8 pixels
// wide and read four at a time.
constexpr int32_t kLumaSlack = 32;

// Sums of the cell row whose first pixel row is `nY`, for all `nBlocks` blocks of a block row: in
// the top role into pTop, in the bottom role into pBottom, of which one may be null. `pY`: luma
// plane, row pitch nWidth, readable for kLumaSlack bytes behind its end.
using CellRowSumsFn = void(const CellSetup* pSetup, const uint8_t* pY, int32_t nWidth,
                           int32_t nHeight, int32_t nY, int32_t nBlocks, HalfBlock* pTop,
                           HalfBlock* pBottom);

// Records of a block row from its halves, its distances from the reference row and its absolute
// differences of mean luma. pCur and pRef may be one array.
using BlockRowFeaturesFn = void(const CellSetup* pSetup, const HalfBlock* pTop,
                                const HalfBlock* pBottom, int32_t nBlocks, BlockSignature* pCur,
                                const BlockSignature* pRef, uint8_t* pDist, uint8_t* pYDiff);

CellRowSumsFn CellRowSums_Ssse3, CellRowSums_Avx2;
BlockRowFeaturesFn BlockRowFeatures_Ssse3, BlockRowFeatures_Avx2;

// The 200-byte records of `nBlocks` signatures, for dumps and box method 2.
void ExpandSignatures(const BlockSignature* pSignatures, int32_t nBlocks, BlockFeature* pFeatures);
