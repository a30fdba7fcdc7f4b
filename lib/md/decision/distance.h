// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The distance of a block from its reference, 0 to 255: how far apart their vectors are, weighed by
// their length classes. Both walks compute it with these functions; the vector kernels
// (row_distances.inc) are held to them byte by byte.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "md/block_feature.h"
#include "md/sim_params.h"

// What the distance reads of the settings.
struct DistanceSetup {
    bool bMoments;         // metric on; else every distance is 0
    bool bWeightOneSided;  // only a length above the reference's adds to the weight
    int32_t nAccuShift;    // right shift of the sum of squares, 4 or 6
    int32_t nScale;        // 0 to 511
    int32_t nDistShift;    // right shift of the scaled product, 4 or 12
};

inline DistanceSetup DistanceSetupOf(const MdParams& md) {
    return {
        .bMoments = (md.nMD_MetricMode & kMetricMog) != 0,
        .bWeightOneSided = md.nMD_HogDist_WeightMethod != 0,
        .nAccuShift = md.nMD_HogBlockSize != md.nMD_HogCellSize ? 6 : 4,
        .nScale = md.nMD_HogDist_Scale2,
        .nDistShift = md.nMD_HogNormalizeMode == 0 ? 4 : 12,
    };
}

// The distance and the two numbers it comes from, which detail lines print.
struct Distance {
    int32_t iAccuDist;    // squared distance of the vectors, 0 to 40640 after its shift
    int32_t DistWeight2;  // 1 to 509
    int32_t iHOGDist;     // at most 255
};

// The length class hc of the block and hr of its reference, each 1 to 255, as a weight.
inline int32_t DistanceWeight(const DistanceSetup& t, int32_t hc, int32_t hr) {
    return hc + (t.bWeightOneSided ? std::max(hc - hr, 0) : std::abs(hc - hr));
}

// The product stays below 2^31 for the records that the feature stage makes: without normalisation
// the weight is 1; with it a vector is shorter than 256, so iAccuDist is below 2 * 2^16 >> 4, and
// 8192 * 509 * 511 < 2^31. For any others it wraps in 32 bits and counts as signed.
inline int32_t ScaledDistance(const DistanceSetup& t, int32_t iAccuDist, int32_t DistWeight2) {
    const uint32_t nProduct = static_cast<uint32_t>(iAccuDist) *
                              static_cast<uint32_t>(DistWeight2) * static_cast<uint32_t>(t.nScale);
    return std::min(static_cast<int32_t>(nProduct) >> t.nDistShift, 255);
}

// pCur and pRef: the kVectorSize elements of the block and of its reference.
inline Distance DistanceOf(const DistanceSetup& t, const uint8_t* pCur, int32_t hc,
                           const uint8_t* pRef, int32_t hr) {
    Distance d{0, DistanceWeight(t, hc, hr), 0};
    if (!t.bMoments) return d;
    for (int32_t i = 0; i < kVectorSize; ++i) {
        const int32_t nDiff = pCur[i] - pRef[i];
        d.iAccuDist += nDiff * nDiff;
    }
    d.iAccuDist >>= t.nAccuShift;
    d.iHOGDist = ScaledDistance(t, d.iAccuDist, d.DistWeight2);
    return d;
}

// Whether the frame is its own reference: no distance of it counts then.
inline bool IsOwnReference(const MdParams& md) {
    return md.CurFrmId == md.RefBufIdx;
}

// Whether a block's mean luma, nYDiff away from its reference's, has moved too little for its
// distance to count.
inline bool IsLumaStill(const MdParams& md, int32_t nYDiff, int32_t nYDiffThre) {
    return md.nMD_HogDistAvailCheck == kAvailCheckLuma && nYDiff <= nYDiffThre;
}
