// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/object/box_methods.h"

#include <cstddef>
#include <iterator>

#include "md/object/bbox_gate.h"
#include "md/object/bisection.h"
#include "md/object/grid_cluster.h"
#include "md/object/projection_box.h"
#include "md/object/weighted_centroid.h"

namespace {

constexpr BoxMethod aBoxMethods[] = {
    // clang-format off
    {kWeightedCentroid, PpWeightedCentroid, nullptr,            INT32_MAX,            false},
    {kGridCluster,      PpGridCluster,      GridClusterReset,   INT32_MAX,            false},
    {kProjectionBox,    PpProjectionBox,    ProjectionBoxReset, kProjectionMaxBlocks, true},
    {kBisection,        PpBisection,        nullptr,            INT32_MAX,            false},
    // clang-format on
};

constexpr bool EveryMethodAtItsPlace() {
    for (std::size_t i = 0; i < std::size(aBoxMethods); ++i) {
        if (aBoxMethods[i].nMethod != static_cast<PostProcMethod>(i)) return false;
    }
    return std::size(aBoxMethods) == kPostProcMethods;
}
static_assert(EveryMethodAtItsPlace());

}  // namespace

const BoxMethod& BoxMethodOf(int32_t nMethod) {
    return aBoxMethods[nMethod];
}

void BoxMethodsReset() {
    for (const BoxMethod& t : aBoxMethods) {
        if (t.pReset != nullptr) t.pReset();
    }
    BboxGateReset();
}
