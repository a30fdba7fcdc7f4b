#include "md/output/object_report.h"

#include <cstdio>

#include "md/compose_path.h"
#include "md/output/text_out.h"
#include "md/print.h"
#include "md/run_state.h"

void ObjectReportWrite() {
    static TextOut tText;
    char logfilePath_objOut[640];
    ComposePath(logfilePath_objOut, kExitRefused, "%s/%04d_ObjOut.txt", tSimParams.szFeaturePath,
                tSimParams.tMd.CurFrmId + tSimParams.nStartFrameIdx + 1);
    TextOpen(&tText, logfilePath_objOut, "object report");
    TextPrint<"{\n">(&tText);
    TextPrint<"  \"bMotionDetected\": %d,\n">(&tText, tMdResult.bMotionDetected);
    TextPrint<"  \"count\": %d,\n">(&tText, tMdResult.nObjNum);
    TextPrint<"  \"objs\" : [\n">(&tText);
    for (int32_t i = 0; i < tMdResult.nObjNum; ++i) {
        const MdObject& tObject = tMdResult.tObjects[i];
        TextPrint<"    {\n">(&tText);
        TextPrint<"      \"left\": %d,\n">(&tText, tObject.left);
        TextPrint<"      \"top\": %d,\n">(&tText, tObject.top);
        TextPrint<"      \"right\": %d,\n">(&tText, tObject.right);
        TextPrint<"      \"bottom\": %d\n">(&tText, tObject.bottom);
        if (i < tMdResult.nObjNum - 1) {
            TextPrint<"    },\n">(&tText);
        } else {
            TextPrint<"    }\n">(&tText);
        }
    }
    TextPrint<"  ]\n">(&tText);
    TextPrint<"}\n">(&tText);
    TextClose(&tText);
}

void CountLogStart() {
    char logfilePath_HOGCount[544];
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
