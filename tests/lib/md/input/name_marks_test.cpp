// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/input/name_marks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(NameMarks, OnlyRawNamesWithAMarkChangeTheType) {
    const std::vector<const char*> aNames[] = {
        {"clip_P420.yuv", "clip_p420.yuv", "clip_P420.yuvx", "a_P400_P422_P420.yuv", "a.yuv_P420"},
        {"clip.yuv", "clip_P420.mp4", "clip_P420.YUV", "clip_P420.yu", "clip_P420.y.uv",
         "clip_P420yuv", "a.yuv/b_P420.mp4", "clip_P420", "", ".yuv"},
        {"clip_P400.yuv", "clip_p400.yuv"},
        {"clip_P422.yuv", "clip_p422.yuv", "run_P422/clip.yuv", "a_P400_P422.yuv"}};
    for (int32_t nType = 0; nType < 4; ++nType) {
        for (const char* sz : aNames[nType]) EXPECT_EQ(InputTypeFromName(sz), nType) << sz;
    }
}

TEST(NameMarks, SizesFillTheTextBetweenTwoUnderscores) {
    const std::pair<const char*, const char*> aRows[] = {
        {"clip_1920x1080_P420.yuv", "1920x1080 "},
        {"clip_1920x1080.yuv", ""},
        {"1920x1080_P420.yuv", ""},
        {"a_64x48_b_32x16_.mp4", "64x48 32x16 "},
        {"a_64x48_32x16_", "64x48 32x16 "},
        {"a_64x48_/c_d.mp4", "64x48 "},
        {"a_0x48_1x0_x5_5x_x__1x1_", "1x1 "},
        {"a_64X48_ 64x48_64x48 _+6x4_6x-4_6x4p_", ""},
        {"_007x0010_", "7x10 "},
        {"_99999999999999999999x2147483648_", "2147483647x2147483647 "},
        {"", ""}};
    for (const auto& [szPath, szFound] : aRows) {
        std::string sFound;
        ForEachNameSize(szPath, [&](int32_t w, int32_t h) {
            sFound += std::to_string(w) + "x" + std::to_string(h) + " ";
        });
        EXPECT_EQ(sFound, szFound) << szPath;
    }
}
