// A frame size beyond memory, also beyond what the system at hand can count in bytes.
#include <gtest/gtest.h>

#include <climits>

#include "md/input/raw_files.h"

// On a 32-bit system the product of the first row wraps to one byte a frame, that of the second to
// none, and the loop over frames never ended.
TEST(RawFilesSize, FrameBeyondMemoryEndsTheRun) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer refuses such an allocation itself";
#endif
    EXPECT_EXIT(YuvI400ToI420("none", INT_MAX, INT_MAX, "."), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(YuvI400ToI420("none", 1 << 30, 1 << 30, "."), testing::ExitedWithCode(1), "");
}
