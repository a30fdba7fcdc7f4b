// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// All memory of a run: allocated once at start, released once at its end. In between the pointers
// never change.
#pragma once

#include <cstdint>

// Refuses block geometries, frame sizes and gradient filters that the hardware arithmetic or the
// selected method cannot carry (status -1), allocates the buffers (status 1 when there is no
// memory), makes the Gaussian window, opens the running dumps and takes the snapshot MdPpConfig.
// The working size must be fixed. Returns 1.
int32_t MdInit();

// The last step of MdInit.
int32_t MdFillPpConfig();

// Releases everything in a fixed order, closes the running dumps, zeroes the records. Returns 1.
int32_t MdDeinit();
