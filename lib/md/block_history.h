// What a block remembers from frame to frame: its last three distances and its decision state.
#pragma once

#include <cstdint>

constexpr uint32_t kStateRepeatMask = 15;  // bits 0-3, nRepeatCnt: saturates at 15, stops at 0
constexpr uint32_t kStateActive = 16;      // bit 4, bActive
constexpr uint32_t kStateHighActive = 32;  // bit 5, bHighActive

struct BlockHistory {
    uint32_t aDist[3];  // 0 to 255 each; the distance of frame f is aDist[(f + 3) % 3]
    uint32_t nState;    // repeat counter and the two flags; other bits are 0
};

static_assert(sizeof(BlockHistory) == 16);
