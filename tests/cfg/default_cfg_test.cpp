// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The table of settings and the shipped file that lists them: each key once with its range, each
// member once with a key.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

#include "md/cfg_top/input_map.h"
#include "md/run_state.h"
#include "tests/support/files.h"
#include "tools/settings_doc.h"

namespace {

template <typename Record>
bool Within(const void* p, const Record& tRecord) {
    const auto* pStart = reinterpret_cast<const char*>(&tRecord);
    return p >= pStart && p < pStart + sizeof tRecord;
}

}  // namespace

TEST(DefaultCfg, NamesEachKeyOnceWithItsRange) {
    std::istringstream tText(ReadAll(MD_SOURCE_DIR "/cfg/default.cfg"));
    std::map<std::string, std::string> aRanges;  // by key
    for (std::string sLine; std::getline(tText, sLine);) {
        if (sLine.empty() || sLine[0] == '#') continue;
        const size_t nHash = sLine.find(" # ");
        ASSERT_NE(nHash, std::string::npos) << sLine;
        const std::string sKey = sLine.substr(0, sLine.find(' '));
        EXPECT_TRUE(aRanges.emplace(sKey, sLine.substr(nHash + 3)).second) << sKey << " twice";
    }
    EXPECT_EQ(aRanges.size(), aInputKeys.size());
    for (const InputMapEntry& t : aInputKeys) {
        EXPECT_EQ(aRanges[t.TokenName], RangeText(t)) << t.TokenName;
        EXPECT_TRUE(t.LimitKind == kLimitNone || t.Default >= t.MinLimit) << t.TokenName;
        EXPECT_TRUE(t.LimitKind != kLimitBoth || t.Default <= t.MaxLimit) << t.TokenName;
    }
    EXPECT_STREQ(aInputMap.back().TokenName, "END");
}

TEST(InputMap, EveryMemberWithAKeyIsReachedOnce) {
    std::set<const char*> aBytes, aDoubles;
    size_t nBytes = 0;
    for (const InputMapEntry& t : aInputKeys) {
        const size_t aSizes[] = {sizeof(int32_t), kPathSize, sizeof(double)};
        const size_t nSize = aSizes[t.Type];
        const bool bTaps = std::string(t.TokenName).starts_with("MD_HogGrad");
        EXPECT_TRUE(bTaps ? Within(t.Place, tGradientTexts) : Within(t.Place, tSimParams));
        for (size_t k = 0; k < nSize; ++k) aBytes.insert(static_cast<const char*>(t.Place) + k);
        nBytes += nSize;
        if (t.Type == kTypeDouble) aDoubles.insert(static_cast<const char*>(t.Place));
    }
    EXPECT_EQ(aBytes.size(), nBytes) << "two keys share a byte";
    const MdParams& md = tSimParams.tMd;
    const auto NoKey = [&](const int32_t* p, size_t nCount) {
        for (size_t k = 0; k < nCount * sizeof *p; ++k) {
            aBytes.insert(reinterpret_cast<const char*>(p) + k);
        }
    };
    NoKey(md.nMD_HogGradX, kGradientTaps);
    NoKey(md.nMD_HogGradY, kGradientTaps);
    for (const int32_t* p : {&md.nMD_MetricMagTh, &md.CurFrmId, &md.RefBufIdx}) NoKey(p, 1);
    // What is left aligns doubles: half of one, before one or at the end.
    const char* const pStart = reinterpret_cast<const char*>(&md);
    size_t nFree = 0;
    for (size_t k = 0; k <= sizeof md; ++k) {
        const bool bEnd = k == sizeof md || aBytes.count(pStart + k) != 0;
        const bool bAligns = k == sizeof md || aDoubles.count(pStart + k) != 0;
        EXPECT_TRUE(!bEnd || nFree == 0 || (nFree == 4 && bAligns))
            << "a member without a key ends before byte " << k << " of MdParams";
        nFree = bEnd ? 0 : nFree + 1;
    }
}
