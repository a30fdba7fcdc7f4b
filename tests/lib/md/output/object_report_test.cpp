#include "md/output/object_report.h"

#include <gtest/gtest.h>

#include "md/run_state.h"
#include "tests/support/files.h"

// The box methods report one object at most, the record has room for four.
TEST(ObjectReport, CommasStandBetweenObjects) {
    const TempFolder tFolder;
    std::snprintf(tSimParams.szFeaturePath, kPathSize, "%s", tFolder.Path().string().c_str());
    tMdResult.nObjNum = 2;
    ObjectReportWrite();
    const std::string sObject =
        "    {\n      \"left\": 0,\n      \"top\": 0,\n      \"right\": 0,\n      \"bottom\": 0\n  "
        "  }";
    EXPECT_EQ(ReadAll(tFolder / "0001_ObjOut.txt"),
              "{\n  \"bMotionDetected\": 0,\n  \"count\": 2,\n  \"objs\" : [\n" + sObject + ",\n" +
                  sObject + "\n  ]\n}\n");
    tSimParams = {};
    tMdResult = {};
}
