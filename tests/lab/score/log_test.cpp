// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/score/log.h"

#include <gtest/gtest.h>

namespace lab {
namespace {

const std::string kLog =
    "INFO: exec: /bin/ffmpeg -y -f rawvideo -pix_fmt yuv420p -s:v 768x576 -i a_1x2.yuv "
    "-vf scale=\"320:240\" -c:v rawvideo -pix_fmt yuv420p out.yuv\n"
    "*****frame 7\n"
    "blockLine=20, nYDiffThreLine = 0\n"
    "MotionDetected=0, objNum=0, (0, 0, 0, 0, 0)\n"
    "PP_V2: l,r,t,b = 0,0,0,0\n"
    "*****frame 8\n"
    "MotionDetected=1, objNum=1, (1, 0, 16, 3, 21)\n"
    "PP_V2: l,r,t,b = 0,16,3,21\n"
    "*****frame 9\r\n"
    "MotionDetected=1, objNum=1, (1, 5, 16, 3, 21)\r\n"
    "bbox_area[0]=1  bbox_area[1]=2  bbox_area[2]=3  sum=6\r\n"
    "PP_V2: l,r,t,b = 0,0,0,0\r\n"
    "*****frame 10\n"
    "MotionDetected=1, objNum=1, (1, 5, 16, 3, 21)\n"
    "finish.\n"
    "finish.";

// Cut into two pieces at every place: what comes out must not depend on how it arrives.
TEST(Log, ArrivesInAnyPieces) {
    const std::vector<FrameReport> expected = {
        {7, std::nullopt}, {8, Box{0, 3, 16, 21}}, {9, std::nullopt}};
    for (size_t cut = 0; cut <= kLog.size(); ++cut) {
        LogReader reader;
        reader.Add(std::string_view(kLog).substr(0, cut));
        reader.Add(std::string_view(kLog).substr(cut));
        reader.Finish();
        ASSERT_EQ(reader.frames, expected) << cut;
        ASSERT_TRUE(reader.Complete()) << cut;
        ASSERT_TRUE(reader.scaling.has_value()) << cut;
        ASSERT_EQ(reader.scaling->input, (FrameSize{768, 576})) << cut;
        ASSERT_EQ(reader.scaling->working, (FrameSize{320, 240})) << cut;
    }
}

TEST(Log, ARunThatStopsIsNotComplete) {
    LogReader reader;
    reader.Add("*****frame 0\nMotionDetected=0, objNum=0, (0, 0, 0, 0, 0)\nPP_V2: l,r,t,b = ");
    reader.Finish();
    EXPECT_TRUE(reader.frames.empty());
    EXPECT_FALSE(reader.Complete());
    reader.Add("ERROR: nMD_HogMethod only support 1\n");
    EXPECT_EQ(reader.complaint, "ERROR: nMD_HogMethod only support 1");
}

}  // namespace
}  // namespace lab
