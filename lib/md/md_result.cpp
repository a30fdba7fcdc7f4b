// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/md_result.h"

#include <cstdio>
#include <cstdlib>

namespace {

const BlockFeature* Required(const BlockFeature* pRecords) {
    if (pRecords != nullptr) return pRecords;
    std::fputs("a fault of this program: feature records are read that nobody asked for\n", stderr);
    std::abort();
}

}  // namespace

const BlockFeature* CurrentRecords(const MdResult& res) {
    return Required(res.pCurFeat);
}

const BlockFeature* SlotRecords(const MdResult& res, int32_t nSlot) {
    return Required(res.pFeaturePool[nSlot]);
}
