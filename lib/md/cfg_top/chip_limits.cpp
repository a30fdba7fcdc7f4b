// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/cfg_top/chip_limits.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "md/compose_path.h"
#include "md/platform/platform.h"
#include "md/print.h"
#include "md/run_state.h"

namespace {

void RefuseIf(bool bRefused, const char* szMessage) {
    if (bRefused) EndRun(stderr, kExitRefused, "%s", szMessage);
}

void RefuseReference(bool bRefused) {
    if (bRefused) {
        EndRun(stderr, kExitRefused, "ERROR: nMD_RefFrmIdx >= %d, not supported\n", kPoolSlots);
    }
}

}  // namespace

void MdCheckChipLimits() {
    MdParams& md = tSimParams.tMd;
    RefuseIf((md.nMD_MetricMode & kMetricMog2x2) != 0,
             "ERROR: MD_MetricMode & 0x8(MOG2X2) is not available for this chip\n");
    RefuseIf((md.nMD_MetricMode & kMetricHog) != 0,
             "ERROR: MD_MetricMode & 0x1(HOG) is not available for this chip\n");
    RefuseIf((md.nMD_MetricMode & kMetricCog) != 0,
             "ERROR: MD_MetricMode & 0x4(COG) is not available for this chip\n");
    RefuseIf(md.nMD_HogDistAvailCheck == kAvailCheckRefused,
             "ERROR: MD_HogDistAvailCheck==2 is not available for this chip\n");
    RefuseIf(md.nMD_Scale_Method == 1,
             "ERROR: nMD_Scale_Method==1 is not available for this chip\n");
    if (md.nMD_HogWithoutBlkDiffCheck == 1) {
        std::fprintf(stderr,
                     "WARNING: nMD_HogWithoutBlkDiffCheck is deprecated, remove and just set "
                     "MD_HogDistAvailCheck\n");
        md.nMD_HogDistAvailCheck = 0;
    }
    const bool bBeyondPool = md.nMD_RefFrmIdx >= kPoolSlots;
    RefuseReference(md.nMD_HogRefMode == kRefLoggedOnce && bBeyondPool);
    RefuseIf(md.nMD_HogMethod != 1, "ERROR: nMD_HogMethod only support 1\n");
    RefuseReference(md.nMD_HogRefMode == kRefLoggedTwice && bBeyondPool);
}

void cfgCompletePath(const char* szBase, char (&szPath)[kPathSize]) {
    const char cFirst = szPath[0];
    if (cFirst == '\0' || cFirst == '\\' || cFirst == '/' || cFirst == '~') return;
    if (std::strstr(szPath, ":\\") != nullptr) return;
    char szFull[1024];
    ComposePathOr(stderr, szFull, kExitRefused, "%s/%s", szBase, szPath);
    if (kNativePathSep != '/') {
        std::replace(szFull, szFull + std::strlen(szFull), '/', kNativePathSep);
    }
    ComposePathOr(stderr, szPath, kExitRefused, "%s", szFull);
}
