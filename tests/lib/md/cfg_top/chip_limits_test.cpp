// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/cfg_top/chip_limits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "md/platform/platform.h"
#include "md/run_state.h"

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
            std::string sJoined = "cfg/" + sPath;
            std::replace(sJoined.begin(), sJoined.end(), '/', kNativePathSep);
            EXPECT_EQ(szPath, i == 0 ? sPath : sJoined);
        }
    }
    char szLong[kPathSize] = {};
    std::memset(szLong, 'x', sFits.size() + 1);
    EXPECT_DEATH(cfgCompletePath("cfg", szLong), "cfg.xxx") << "refused, not cut";
}
