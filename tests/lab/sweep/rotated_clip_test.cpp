// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "lab/sweep/sweep.h"
#include "lab/tool/error.h"
#include "lab/tool/temp_folder.h"

namespace lab {
namespace {

TEST(RotatedClip, IsRefusedBeforeAnythingRuns) {
    const TempFolder folder;
    const std::string& path = folder.Path();
    const std::string upright = path + "/upright.mp4";
    const std::string turned = path + "/turned.mp4";
    // The flag on the stream, as a phone writes it. ffmpeg has an option for it from 6 on; before,
    // a tag did it.
    const std::string make = "ffmpeg -v error -f lavfi -i testsrc=s=64x32:d=0.2 " + upright +
                             " && ffmpeg -v error -display_rotation 90 -i " + upright +
                             " -c copy " + turned;
    if (std::system(make.c_str()) != 0) {
        const std::string older =
            "ffmpeg -v error -y -i " + upright + " -c copy -metadata:s:v rotate=90 " + turned;
        ASSERT_EQ(std::system(older.c_str()), 0);
    }
    std::ofstream(path + "/plan.yaml") << "settings: " MD_SOURCE_DIR "/cfg/default.cfg\nclips:\n"
                                       << "  - {file: turned.mp4, type: 1}\n";
    SweepOptions options;
    options.plan = path + "/plan.yaml";
    options.into = path + "/into";
    options.md = MD_PROGRAM;
    try {
        RunSweep(options);
        FAIL() << "a turned clip is swept";
    } catch (const Error& error) {
        EXPECT_NE(std::string(error.what()).find(turned), std::string::npos) << error.what();
    }
    EXPECT_FALSE(std::filesystem::exists(options.into));
}

}  // namespace
}  // namespace lab
