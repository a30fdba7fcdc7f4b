#include "md/cfg_top/input_map.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "md/run_state.h"

namespace {

template <typename Record>
bool Within(const void* p, const Record& tRecord) {
    const auto* pStart = reinterpret_cast<const char*>(&tRecord);
    return p >= pStart && p < pStart + sizeof tRecord;
}

}  // namespace

TEST(InputMap, DefaultsAndBoundsAgreeAndNoNameStandsTwice) {
    std::set<std::string> aNames;
    for (const InputMapEntry& t : aInputMap) {
        aNames.insert(t.TokenName);
        EXPECT_TRUE(t.LimitKind == kLimitNone || t.Default >= t.MinLimit) << t.TokenName;
        EXPECT_TRUE(t.LimitKind != kLimitBoth || t.Default <= t.MaxLimit) << t.TokenName;
        EXPECT_TRUE(t.Type != kTypeString || t.LimitKind == kLimitNone) << t.TokenName;
    }
    EXPECT_EQ(aNames.size(), 77u);
    EXPECT_STREQ(aInputMap[76].TokenName, "END");
}

TEST(InputMap, EveryMemberWithAKeyIsReachedOnce) {
    std::set<const char*> aBytes;
    size_t nBytes = 0;
    size_t nSection = 0;
    for (int i = 0; i < kKeyCount; ++i) {
        const InputMapEntry& t = aInputMap[i];
        const size_t aSizes[] = {sizeof(int32_t), kPathSize, sizeof(double)};
        const bool bTaps = std::string(t.TokenName).starts_with("MD_HogGrad");
        EXPECT_TRUE(bTaps ? Within(t.Place, tGradientTexts) : Within(t.Place, tSimParams));
        for (size_t k = 0; k < aSizes[t.Type]; ++k) {
            aBytes.insert(static_cast<const char*>(t.Place) + k);
        }
        nBytes += aSizes[t.Type];
        nSection += Within(t.Place, tSimParams.tMd) ? aSizes[t.Type] : 0;
    }
    EXPECT_EQ(aBytes.size(), nBytes) << "two keys share a byte";
    // No key: ten taps, the magnitude bound, two run-time indexes; the rest is padding.
    EXPECT_LT(sizeof(MdParams) - nSection - 13 * sizeof(int32_t), 4 * alignof(double));
}
