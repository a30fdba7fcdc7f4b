// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The shipped settings on the demo's clip.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "tests/support/program.h"
#include "tools/walker.h"

// The walker's middle goes from a tenth of the width to nine tenths, its body is within 16 pixels
// of it and in rows 72 to 153.
TEST(ShippedSettings, KeepTheBoxOnTheWalker) {
    const TempFolder tFolder;
    const WalkerClip tClip = {.nWidth = 320, .nHeight = 180, .nFrames = 120};
    std::string sClip;
    for (int n = 0; n < tClip.nFrames; ++n) sClip += WalkerFrame(tClip, n);
    WriteAll(tFolder / "walker.yuv", sClip);
    WriteAll(tFolder / "default.cfg", ReadAll(MD_SOURCE_DIR "/cfg/default.cfg"));
    for (const char* szMethod : {"MD_PostProcMethod=0", "MD_PostProcMethod=1"}) {
        const Outcome t =
            RunMd(tFolder.Path(),
                  {"-d", "default.cfg", "-p", "InputFileType=0", "-p", "InputFilePath=walker.yuv",
                   "-p", "InputWidth=320", "-p", "InputHeight=180", "-p", "OutputFilePath=out",
                   "-p", "EnableBatch=1", "-p", szMethod});
        ASSERT_EQ(t.nExit, 0) << t;
        int nFrames = 0, nOn = 0, l = 0, r = 0, u = 0, d = 0;
        std::string sLine;
        for (std::istringstream tLog(t.sOut); std::getline(tLog, sLine);) {
            if (std::sscanf(sLine.c_str(), "PP_V2: l,r,t,b = %d,%d,%d,%d", &l, &r, &u, &d) != 4)
                continue;
            const int nMiddle = 32 + 256 * nFrames++ / 120;
            const bool bAcross =
                l > nMiddle - 40 && l < nMiddle && r > nMiddle - 16 && r < nMiddle + 40;
            nOn += bAcross && u >= 48 && d > 100 && d <= 160 ? 1 : 0;
        }
        EXPECT_EQ(nFrames, 120) << szMethod;
        EXPECT_GE(nOn, 108) << szMethod;
    }
}
