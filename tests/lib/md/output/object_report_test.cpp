// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/output/object_report.h"

#include <gtest/gtest.h>

#include "md/run_state.h"
#include "tests/support/files.h"

// The box methods report one object at most, the record has room for four.
TEST(ObjectReport, HasCommasBetweenObjects) {
    const TempFolder tFolder;
    const std::string sPath = (tFolder / "report").string();
    static TextOut tText;
    tMdResult.nObjNum = 2;
    TextOpen(&tText, sPath.c_str(), "report");
    ObjectReport(&tText);
    TextClose(&tText);
    const std::string sObject =
        "    {\n      \"left\": 0,\n      \"top\": 0,\n      \"right\": 0,\n      \"bottom\": 0\n  "
        "  }";
    EXPECT_EQ(ReadAll(sPath), "{\n  \"bMotionDetected\": 0,\n  \"count\": 2,\n  \"objs\" : [\n" +
                                  sObject + ",\n" + sObject + "\n  ]\n}\n");
    tMdResult = {};
}
