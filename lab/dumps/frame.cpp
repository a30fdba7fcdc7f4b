// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/dumps/frame.h"

namespace lab {

namespace {

constexpr std::array<const char*, kStageCount> kStageNames = {
    "luma", "vector", "length", "reference", "distance", "active", "box"};

constexpr std::array<FieldInfo, kFieldCount> kFields = {{
    {kStageLuma, 1, "mean luma"},
    {kStageVector, 10, ""},
    {kStageVector, 8, ", CellData"},
    {kStageLength, 1, "histNorm"},
    {kStageLength, 1, "length class"},
    {kStageReference, 1, "mean luma of the reference"},
    {kStageReference, 10, " of the reference"},
    {kStageReference, 8, " of the reference, CellData"},
    {kStageReference, 1, "histNorm of the reference"},
    {kStageDistance, 1, "distance"},
    {kStageDistance, 1, "distance, repeated under Ref"},
    {kStageActive, 1, "active flag"},
    {kStageActive, 1, "active flag, repeated under Ref"},
}};

}  // namespace

const char* StageName(Stage stage) {
    return kStageNames[stage];
}

const FieldInfo& Info(Field field) {
    return kFields[field];
}

std::string ValueName(Field field, int element) {
    const FieldInfo& info = kFields[field];
    if (info.per_block == 1) return info.name;
    const std::string where =
        element < 8 ? "cell " + std::to_string(element % 4) : std::string("the block");
    const bool x = element < 4 || element == 8;
    return (x ? "x moment of " : "y moment of ") + where + info.name;
}

bool Frame::Has(Stage stage) const {
    if (stage == kStageBox) return report.has_value();
    for (int field = 0; field < kFieldCount; ++field) {
        if (kFields[field].stage == stage && !values[field].empty()) return true;
    }
    return false;
}

}  // namespace lab
