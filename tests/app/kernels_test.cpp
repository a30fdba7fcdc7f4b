// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The choice of a kernel path. That all paths leave the same bytes, golden rows and vectors show.
#include <gtest/gtest.h>

#include "tests/support/program.h"
#include "tools/squares.h"

TEST(KernelPaths, AnUnknownOneIsRefused) {
    const TempFolder tFolder;
    WriteAll(tFolder / "a.cfg", BaseConfig(32, 32));
    WriteAll(tFolder / "in.yuv", SquaresBytes({.nFrames = 1}, 32, 32));
    const Outcome t =
        RunProgram(tFolder.Path(), {"env", "MD_KERNELS=fastest", MD_PROGRAM, "-d", "a.cfg"});
    EXPECT_EQ(t.nExit, 255);
    EXPECT_NE(t.sOut.find("ERROR: MD_KERNELS=fastest: expected plain"), std::string::npos);
    EXPECT_NE(t.sOut.find(", scalar\n"), std::string::npos);
}
