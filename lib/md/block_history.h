// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a block remembers from frame to frame: its last three distances and its decision state.
#pragma once

#include <cstdint>

constexpr uint32_t kStateRepeatMask = 15;  // bits 0-3, nRepeatCnt: saturates at 15, stops at 0
constexpr uint32_t kStateActive = 16;      // bit 4, bActive
constexpr uint32_t kStateHighActive = 32;  // bit 5, bHighActive

constexpr int kHistoryDepth = 3;  // frames whose distances are kept

// Where the distance of the frame nBack frames before frame nFrame is kept; nBack is 0 to 2.
constexpr int32_t HistorySlot(int32_t nFrame, int32_t nBack) {
    return (nFrame + kHistoryDepth - nBack) % kHistoryDepth;
}

struct BlockHistory {
    uint32_t aDist[kHistoryDepth];  // 0 to 255 each, by HistorySlot
    uint32_t nState;                // repeat counter and the two flags; other bits are 0
};

static_assert(sizeof(BlockHistory) == 16);
