#include "md/output/object_report.h"

#include <gtest/gtest.h>

#include "md/run_state.h"
#include "tests/support/program.h"

TEST(ObjectReport, CommasAndFieldOrderWhole) {
    const std::string s1 =
        "    {\n      \"left\": 1,\n      \"top\": 3,\n      \"right\": 65535,\n"
        "      \"bottom\": 40\n    }";
    const struct {
        int nMotion, nCount;
        std::string sWant;
    } aRows[] = {
        {0, 0, "  \"objs\" : [\n  ]\n"},
        {0, 1, "  \"objs\" : [\n" + s1 + "\n  ]\n"},
        {1, 4, "  \"objs\" : [\n" + s1 + ",\n" + s1 + ",\n" + s1 + ",\n" + s1 + "\n  ]\n"},
    };
    const TempFolder tFolder;
    std::snprintf(tSimParams.szFeaturePath, kPathSize, "%s", tFolder.Path().c_str());
    tSimParams.nStartFrameIdx = 98;
    tSimParams.tMd.CurFrmId = 2;
    for (MdObject& t : tMdResult.tObjects) t = {1, 1, 65535, 3, 40, 5, 6, 7, 8};
    for (const auto& r : aRows) {
        tMdResult.bMotionDetected = r.nMotion;
        tMdResult.nObjNum = static_cast<uint8_t>(r.nCount);
        ObjectReportWrite();
        EXPECT_EQ(ReadAll(tFolder / "0101_ObjOut.txt"),
                  "{\n  \"bMotionDetected\": " + std::to_string(r.nMotion) +
                      ",\n  \"count\": " + std::to_string(r.nCount) + ",\n" + r.sWant + "}\n");
        const std::string sPath = tFolder / "0101_ObjOut.txt";
        EXPECT_EQ(RunProgram(tFolder.Path(), {"jq", "-e", ".objs[3].top // .count", sPath}).nExit,
                  0);
    }
    tSimParams = {};
    tMdResult = {};
}

TEST(CountLog, GrowsByAHeaderARun) {
    const TempFolder tFolder;
    std::snprintf(tSimParams.szFeaturePath, kPathSize, "%s", tFolder.Path().c_str());
    std::snprintf(tSimParams.InputFilePath, kPathSize, "a %%d b.yuv");
    for (const int nTh : {10, 255}) {
        tSimParams.tMd.nMD_HogDist_Th = nTh;
        CountLogStart();
    }
    EXPECT_EQ(ReadAll(tFolder / "HOGCount.txt"),
              "\n\na %d b.yuv_HOG,th:10\n\n\na %d b.yuv_HOG,th:255\n");
    tSimParams = {};
}
