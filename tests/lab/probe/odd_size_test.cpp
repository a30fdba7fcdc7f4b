// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/probe/odd_size.h"

#include <gtest/gtest.h>

#include <string>

#include "lab/tool/error.h"
#include "tests/support/files.h"

namespace lab {
namespace {

bool Refused(int64_t bytes, int64_t width, int64_t height, bool scaled) {
    const TempFolder folder;
    const std::string raw = folder / "raw.yuv";
    WriteAll(raw, std::string(static_cast<size_t>(bytes), 'x'));
    try {
        RefuseOtherLayout("clip", raw, width, height, scaled);
    } catch (const Error& error) {
        const std::string text = error.what();
        EXPECT_TRUE(text.starts_with("clip: ")) << text;
        EXPECT_NE(text.find("crop=20:10:0:0"), std::string::npos) << text;
        return true;
    }
    return false;
}

TEST(OddSize, TheOtherLayoutIsRefused) {
    EXPECT_EQ(FrameBytesOfTool(21, 11), 21 * 11 + 2 * 11 * 6);
    EXPECT_EQ(FrameBytesOfMd(21, 11), 346);
    EXPECT_EQ(FrameBytesOfTool(20, 10), FrameBytesOfMd(20, 10));
    for (const bool scaled : {false, true}) {
        const int64_t read = scaled ? FrameBytesOfTool(21, 11) : FrameBytesOfMd(21, 11);
        const int64_t other = scaled ? FrameBytesOfMd(21, 11) : FrameBytesOfTool(21, 11);
        EXPECT_FALSE(Refused(3 * read, 21, 11, scaled));
        EXPECT_TRUE(Refused(3 * other, 21, 11, scaled));
        // Cut off in the middle of a frame: no layout fits, and MD has its own words for that.
        EXPECT_FALSE(Refused(3 * other - 5, 21, 11, scaled));
        EXPECT_FALSE(Refused(7, 20, 10, scaled));
    }
    EXPECT_NO_THROW(RefuseOtherLayout("clip", "no such file", 21, 11, true));
}

}  // namespace
}  // namespace lab
