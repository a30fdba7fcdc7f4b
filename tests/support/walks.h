// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A few frames walked by the block scan: a setting, the walk, and all that it leaves.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "md/block_feature.h"
#include "md/decision/row_kernels.h"
#include "md/sim_params.h"

using Plane = std::vector<uint8_t>;

// Gives a number from low to high, both included.
using Picker = std::function<int32_t(int32_t, int32_t)>;

struct Setting {
    MdParams md{};
    int32_t nWidth = 0, nHeight = 0, nFrames = 0, nPicture = 0;
    uint8_t aGauss[32 * 32] = {};

    std::string Text() const;
};

// A setting that the checks of a run let pass, for frames of that size.
Setting PickSetting(const Picker& Pick, int32_t nWidth, int32_t nHeight);

// All that a walk leaves, frame by frame.
struct Walked {
    Plane aAvail, aDist;
    std::vector<BlockFeature> aFeatures;
    std::vector<int32_t> aCarry;
};

// The block walk for a null path, else the row walk with these kernels.
Walked Walk(Setting s, const std::vector<Plane>& aFrames, const RowKernels* pPath);

// First difference between two walks, in words; empty when there is none.
std::string Difference(const Walked& a, const Walked& b);
