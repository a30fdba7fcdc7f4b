// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/output/object_report.h"

#include <cstdio>

#include "md/compose_path.h"
#include "md/print.h"
#include "md/run_state.h"

void ObjectReport(TextOut* pText) {
    TextPrint<"{\n">(pText);
    TextPrint<"  \"bMotionDetected\": %d,\n">(pText, tMdResult.bMotionDetected);
    TextPrint<"  \"count\": %d,\n">(pText, tMdResult.nObjNum);
    TextPrint<"  \"objs\" : [\n">(pText);
    for (int32_t i = 0; i < tMdResult.nObjNum; ++i) {
        const MdObject& tObject = tMdResult.tObjects[i];
        TextPrint<"    {\n">(pText);
        TextPrint<"      \"left\": %d,\n">(pText, tObject.left);
        TextPrint<"      \"top\": %d,\n">(pText, tObject.top);
        TextPrint<"      \"right\": %d,\n">(pText, tObject.right);
        TextPrint<"      \"bottom\": %d\n">(pText, tObject.bottom);
        if (i < tMdResult.nObjNum - 1) {
            TextPrint<"    },\n">(pText);
        } else {
            TextPrint<"    }\n">(pText);
        }
    }
    TextPrint<"  ]\n">(pText);
    TextPrint<"}\n">(pText);
}

void CountLogStart() {
    char logfilePath_HOGCount[kDumpPathSize];
    ComposePath(logfilePath_HOGCount, kExitRefused, "%s/HOGCount.txt", tSimParams.szFeaturePath);
    OutFile tLog;
    if (!OutFileOpen(&tLog, logfilePath_HOGCount, "ab")) {
        EndRun(stdout, kExitRefused, "Can't open count log: %s\n", logfilePath_HOGCount);
    }
    if (std::fprintf(tLog.pFile, "\n\n%s_HOG,th:%d\n", tSimParams.InputFilePath,
                     tSimParams.tMd.nMD_HogDist_Th) < 0) {
        tLog.bShort = true;
    }
    OutFileClose(&tLog);
}
