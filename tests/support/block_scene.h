// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The maps of one frame set block by block, for a box method that is called by itself.
#pragma once

#include <algorithm>
#include <ostream>
#include <vector>

#include "md/md_result.h"

struct BlockScene {
    explicit BlockScene(int32_t nWidth, int32_t nHeight, int32_t nStride = 8) {
        tConfig.nWidth = nWidth;
        tConfig.nHeight = nHeight;
        tConfig.nStride = tResult.nStride = nStride;
        tConfig.nHogDistTh = 10;
        tConfig.nBlkCntTh = 1;
        tResult.nBlkW = (nWidth - 16) / nStride + 1;
        tResult.nBlkH = (nHeight - 16) / nStride + 1;
        const auto n = static_cast<size_t>(tResult.nBlkW * tResult.nBlkH);
        aDist.resize(n);
        aBits.resize(n / 8 + 1);
        aFeatures.resize(n);
        aReference.resize(n);
        tResult.pDistMap = aDist.data();
        tResult.pAvailBits = aBits.data();
        tResult.pCurFeat = aFeatures.data();
        tResult.pFeaturePool[0] = aReference.data();
    }
    BlockScene(const BlockScene&) = delete;
    BlockScene& operator=(const BlockScene&) = delete;

    size_t At(int32_t x, int32_t y) const { return static_cast<size_t>(y * tResult.nBlkW + x); }
    // The block at column x, row y is active, with that distance.
    void Set(int32_t x, int32_t y, int32_t nDist) {
        aDist[At(x, y)] = static_cast<uint8_t>(nDist);
        aBits[At(x, y) / 8] = static_cast<uint8_t>(aBits[At(x, y) / 8] | 1 << At(x, y) % 8);
    }
    // All blocks of columns x0 to x1 and rows y0 to y1.
    void Fill(int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t nDist) {
        for (int32_t y = y0; y <= y1; ++y) {
            for (int32_t x = x0; x <= x1; ++x) Set(x, y, nDist);
        }
    }
    // The next frame: the objects and the maps are empty again.
    void Clear() {
        std::fill(aDist.begin(), aDist.end(), uint8_t{0});
        std::fill(aBits.begin(), aBits.end(), uint8_t{0});
        tResult.bMotionDetected = tResult.nObjNum = 0;
        tResult.tObjects[0] = MdObject{};
    }

    MdPpConfig tConfig{};
    MdResult tResult{};
    std::vector<uint8_t> aDist, aBits;
    std::vector<BlockFeature> aFeatures, aReference;
};

// What a box method reports; all zero when it reports nothing.
struct Box {
    int32_t left, right, top, bottom;

    bool operator==(const Box&) const = default;
};

inline Box BoxOf(const MdResult& t) {
    const MdObject& o = t.tObjects[0];
    return t.nObjNum == 0 ? Box{} : Box{o.left, o.right, o.top, o.bottom};
}

// A valid object with those edges, and no centre.
inline MdObject ObjectAt(const Box& t) {
    MdObject o{};
    o.bValid = 1;
    o.left = static_cast<uint16_t>(t.left);
    o.right = static_cast<uint16_t>(t.right);
    o.top = static_cast<uint16_t>(t.top);
    o.bottom = static_cast<uint16_t>(t.bottom);
    return o;
}

inline std::ostream& operator<<(std::ostream& tOut, const Box& t) {
    return tOut << t.left << ',' << t.right << ',' << t.top << ',' << t.bottom;
}
