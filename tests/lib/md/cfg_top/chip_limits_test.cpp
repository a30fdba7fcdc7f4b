#include "md/cfg_top/chip_limits.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "md/run_state.h"
#include "tests/support/program.h"

// Every row but the last holds a later fault as well (the base run has none).
TEST(ChipLimits, FirstRefusalMetIsTheOneReported) {
    const std::string sMetric = "ERROR: MD_MetricMode & 0x";
    const std::string sNot = " is not available for this chip\n";
    const std::string sMethod = "ERROR: nMD_HogMethod only support 1\n";
    const std::string sReference = "ERROR: nMD_RefFrmIdx >= 15, not supported\n";
    const std::string sDeprecated =
        "WARNING: nMD_HogWithoutBlkDiffCheck is deprecated, remove and just set "
        "MD_HogDistAvailCheck\n";
    const std::pair<std::string, std::string> aRows[] = {
        {"MD_MetricMode = 15", sMetric + "8(MOG2X2)" + sNot},
        {"MD_MetricMode = 7", sMetric + "1(HOG)" + sNot},
        {"MD_MetricMode = 4 MD_HogDistAvailCheck = 2", sMetric + "4(COG)" + sNot},
        {"MD_HogDistAvailCheck = 2 MD_Scale_Method = 1 MD_HogWithoutBlkDiffCheck = 1",
         "ERROR: MD_HogDistAvailCheck==2" + sNot},
        {"MD_Scale_Method = 1 MD_HogWithoutBlkDiffCheck = 1", "ERROR: nMD_Scale_Method==1" + sNot},
        {"MD_HogWithoutBlkDiffCheck = 1 MD_HogMethod = 0", sDeprecated + sMethod},
        {"MD_RefFrmIdx = 15 MD_HogMethod = 0", sReference},
        {"MD_RefFrmIdx = 15 MD_HogMethod = 0 MD_HogRefMode = 0", sMethod},
        {"MD_RefFrmIdx = 15 MD_HogRefMode = 0", sReference},
    };
    const TempFolder tFolder;
    for (const auto& [sConfig, sError] : aRows) {
        const Outcome t = RunText(tFolder.Path(), BaseConfig(32, 32) + sConfig);
        EXPECT_EQ(t.nExit, 255) << sConfig;
        EXPECT_EQ(t.sErr, sError) << sConfig;
    }
    EXPECT_FALSE(fs::exists(tFolder / "out")) << "refused before anything is made";
}

TEST(ChipLimits, DeprecatedKeySwitchesItsCheckOffAndFourteenPasses) {
    for (const int32_t nKey : {0, 1}) {
        tSimParams = SimParams{};
        MdParams& md = tSimParams.tMd;
        md.nMD_HogMethod = 1;
        md.nMD_RefFrmIdx = 14;
        md.nMD_HogDistAvailCheck = 3;
        md.nMD_HogWithoutBlkDiffCheck = nKey;
        MdCheckChipLimits();
        EXPECT_EQ(md.nMD_HogDistAvailCheck, nKey == 1 ? 0 : 3);
    }
}

TEST(CompletePath, JoinsOnlyWhatIsRelative) {
    const std::string sFits(kPathSize - 1 - 4, 'x');
    const std::pair<std::string, std::string> aRows[] = {{"", ""},
                                                         {"/a", "/a"},
                                                         {"\\a", "\\a"},
                                                         {"~/a", "~/a"},
                                                         {"c:\\a", "c:\\a"},
                                                         {"a/x:\\b", "a/x:\\b"},
                                                         {"c:/a", "cfg/c:/a"},
                                                         {"a b", "cfg/a b"},
                                                         {"../a", "cfg/../a"},
                                                         {"a\\b", "cfg/a\\b"},
                                                         {sFits, "cfg/" + sFits}};
    for (const auto& [sPath, sFull] : aRows) {
        char szPath[kPathSize] = {};
        std::memcpy(szPath, sPath.data(), sPath.size());
        cfgCompletePath("cfg", szPath);
        EXPECT_EQ(szPath, sFull);
    }
}

TEST(CompletePath, OneByteTooLongIsRefusedNotCut) {
    const TempFolder tFolder;
    const std::string sLong(kPathSize - 2, 'x');
    for (const std::string sKey : {"InputFilePath = ", "OutputFilePath = "}) {
        const Outcome t = RunText(tFolder.Path(), BaseConfig(32, 32) + sKey + sLong);
        EXPECT_EQ(t.nExit, 255) << t;
        EXPECT_NE(t.sErr.find("./xxx"), std::string::npos) << t;
    }
}
