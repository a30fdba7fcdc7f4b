#include <gtest/gtest.h>

#include "tests/support/program.h"

TEST(FrameLoop, NoFrameAskedForReadsNothing) {
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", std::string(32 * 32 * 3 / 2, '\x40'));
    WriteAll(tFolder / "a.cfg", BaseConfig(32, 32) + "FramesToBeProcessed = 0\n");
    const Outcome t = RunMd(tFolder.Path(), {"-d", "a.cfg"});
    EXPECT_EQ(t.nExit, 0);
    EXPECT_EQ(t.sOut.find("frame"), std::string::npos) << t.sOut;
    EXPECT_NE(t.sOut.find("finish.\nfinish.\n"), std::string::npos);
}
