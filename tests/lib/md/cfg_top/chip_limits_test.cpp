#include "md/cfg_top/chip_limits.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

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
    const std::vector<std::string> aPaths[] = {
        {"", "/a", "\\a", "~/a", "c:\\a", "a/x:\\b"},   // kept
        {"c:/a", "a b", "../a", "a\\b", "a~", sFits}};  // joined
    for (size_t i = 0; i < 2; ++i) {
        for (const std::string& sPath : aPaths[i]) {
            char szPath[kPathSize] = {};
            std::memcpy(szPath, sPath.data(), sPath.size());
            cfgCompletePath("cfg", szPath);
            EXPECT_EQ(szPath, (i == 0 ? "" : "cfg/") + sPath);
        }
    }
    char szLong[kPathSize] = {};
    std::memset(szLong, 'x', sFits.size() + 1);
    EXPECT_EXIT(cfgCompletePath("cfg", szLong), testing::ExitedWithCode(255), "cfg/xxx")
        << "refused, not cut";
}
