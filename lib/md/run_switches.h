// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Switches of the environment, for tests and timings: they choose how a run computes and writes,
// and never change a byte of its results.
#pragma once

struct RunSwitches {
    const char* szKernels;  // MD_KERNELS, the path of kernels to take; null: the fastest
    bool bPlainText;        // all text through fprintf: MD_TEXT=plain or MD_KERNELS=plain
};

// Read from the environment on the first call. Any other value of MD_TEXT ends the run with status
// -1; the value of MD_KERNELS is checked where its paths are listed.
const RunSwitches& Switches();
