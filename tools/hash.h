// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The noise of the generated clips: 32 bits that follow from three numbers and look like chance.
#pragma once

#include <cstdint>

inline uint32_t Hash(uint32_t a, uint32_t b, uint32_t c) {
    uint32_t n = a * 0x9E3779B1U ^ b * 0x85EBCA77U ^ c * 0xC2B2AE3DU;
    n = (n ^ (n >> 15)) * 0x2C1B3C6DU;
    n = (n ^ (n >> 12)) * 0x297A2D39U;
    return n ^ (n >> 15);
}
