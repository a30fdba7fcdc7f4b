// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Copies and conversions of raw video files that need no outside tool.
#pragma once

#include <cstdint>

// Luma-only frames to 4:2:0 with grey chroma. A last, partial frame is dropped; a file that cannot
// be opened gives a message and no output; an output that is the input ends the run with status 1.
// Always returns 1.
int32_t YuvI400ToI420(const char* szInput, int32_t nWidth, int32_t nHeight, const char* szOutput);

// Byte copy; a file that cannot be opened, or a destination that is the source, ends the run with
// status 1.
void copyfile(const char* szDestination, const char* szSource);
