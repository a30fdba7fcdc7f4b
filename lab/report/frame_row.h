// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a report says about a frame as a whole: the columns of its frame table.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "md/decision/activity_outcome.h"

namespace lab {

constexpr int kDistanceClasses = 17;

// Boxes are left, right, top, bottom in working pixels; all -1 where there is none.
struct FrameRow {
    int32_t motion;                     // 1: the box method reports motion
    int32_t reason;                     // BoxReasonCode, or kReasonFirstFrame
    int32_t values[4];                  // of the reason
    int32_t before[4];                  // box of the method
    int32_t after[4];                   // box reported, after the gate
    int32_t active;                     // blocks of the mask
    int32_t counted;                    // of these, over MD_HogDist_Th
    int32_t largest;                    // distance of the map, 0 to 255
    int32_t luma;                       // luma threshold at the end of the frame
    int32_t gate;                       // GateReasonCode
    int32_t gate_values[2];             // of the gate
    int32_t outcomes[kOutcomeCount];    // blocks of each
    int32_t classes[kDistanceClasses];  // blocks of each class of distances
};

constexpr int kFrameColumns = sizeof(FrameRow) / sizeof(int32_t);

// The first frame has nothing to be compared with, whatever the method says.
constexpr int32_t kReasonFirstFrame = 1;

inline bool Reported(const FrameRow& row) {
    return row.after[0] >= 0;
}

// The class of a distance, 0 to 16.
int DistanceClass(int distance);

// Names of the columns, in the order of the members.
std::vector<std::string> ColumnNames();

// The rows turned into columns, as bytes of the page.
std::string FrameTable(const std::vector<FrameRow>& rows);

}  // namespace lab
