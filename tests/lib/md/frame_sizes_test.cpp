// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A frame size beyond memory, also beyond what the system at hand can count in bytes.
#include <gtest/gtest.h>

#include <climits>

#include "md/decision/row_walk.h"
#include "md/input/raw_files.h"
#include "tests/support/walks.h"

#ifndef __SANITIZE_ADDRESS__  // it refuses such an allocation itself
// On a 32-bit system the product of the first row wraps to one byte a frame, that of the second to
// none, and the loop over frames never ended.
TEST(FrameSizes, LumaFrameBeyondMemoryEndsTheRun) {
    EXPECT_EXIT(YuvI400ToI420("none", INT_MAX, INT_MAX, "."), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(YuvI400ToI420("none", 1 << 30, 1 << 30, "."), testing::ExitedWithCode(1), "");
}

TEST(FrameSizes, ScanBeyondMemoryEndsTheRun) {
    Setting s;
    s.md.nMD_HogBlockSize = 16;
    s.md.nMD_HogBlockStride = 8;
    for (const RowKernels& tPath : OfferedKernels()) {
        EXPECT_EXIT((void)RowWalkCreate(tPath, &s.md, INT_MAX, INT_MAX, s.aGauss),
                    testing::ExitedWithCode(1), "");
    }
}
#endif
