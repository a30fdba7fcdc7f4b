#include "app/ref_schedule.h"

#include <gtest/gtest.h>

#include <vector>

#include "md/run_state.h"

namespace {

constexpr size_t kFrame = 16 * 16 * 3 / 2;
constexpr uint8_t kUnwritten = 255;

// Both pools with R + 1 slots each, no more; frames and feature records are stamped with the
// number of their frame.
struct Pools {
    Pools(int R, int nMode, int nDbgEn = 0) {
        tSimParams.tMd.nMD_RefFrmIdx = R;
        tSimParams.tMd.nMD_HogRefMode = nMode;
        tSimParams.tMd.nDbgEn = nDbgEn;
        nMdWidth = nMdHeight = 16;
        for (size_t i = 0; i <= static_cast<size_t>(R); ++i) {
            aFrames[i].assign(kFrame, kUnwritten);
            tFrameBuffers.ppPrevYBuffer[i] = aFrames[i].data();
            tMdResult.pFeaturePool[i] = &aFeatures[i];
        }
    }
    ~Pools() {
        tSimParams = {};
        tFrameBuffers = {};
        tMdResult = {};
        nMdWidth = nMdHeight = 0;
    }
    void Schedule(int n) {
        aCur.assign(kFrame, static_cast<uint8_t>(n));
        tFrameBuffers.pCurYuv = aCur.data();
        tSimParams.tMd.CurFrmId = n;
        MdRefSchedule();
        tMdResult.pCurFeat->v[0] = static_cast<uint8_t>(n);
    }
    std::vector<uint8_t> aCur, aFrames[kPoolSlots];
    BlockFeature aFeatures[kPoolSlots];
};

}  // namespace

TEST(RefSchedule, ReferenceIsRFramesBackAndThePoolHoldsTheFrameRead) {
    constexpr int aSlotOf3[] = {0, 1, 2, 3, 0, 1, 2, 3, 0};
    constexpr int aReferenceOf3[] = {0, 0, 0, 0, 1, 2, 3, 0, 1};
    for (int i = 0; i < 30; ++i) {
        const int R = i / 2;
        Pools t(R, i % 2, kDbgComp);  // the pool is filled for that video alone
        for (int n = 0; n < 3 * R + 5; ++n) {
            t.Schedule(n);
            const int nReference = tSimParams.tMd.RefBufIdx;
            EXPECT_EQ(t.aFeatures[nReference].v[0], n < R ? 0 : n - R) << R << ", " << n;
            const std::vector<uint8_t> aHeld(
                kFrame, n == 0 || R == 0 ? kUnwritten : static_cast<uint8_t>(n));
            EXPECT_EQ(t.aFrames[nReference], aHeld) << R << ", " << n;
            if (R != 3 || n > 8) continue;
            EXPECT_EQ(tMdResult.pCurFeat - t.aFeatures, aSlotOf3[n]) << n;
            EXPECT_EQ(nReference, aReferenceOf3[n]) << n;
        }
    }
}

TEST(RefSchedule, DetailLinesDifferByMode) {
    const char* const aText[] = {
        "CurFrmId=0, RefBufIdx=0\nCurFrmId=0, RefBufIdx=0\nCurFrmId=2, RefBufIdx=1\n"
        "Copy Y of frame(1) to ppPrevYBuffer(1).\nCurFrmId=2, RefBufIdx=1\n",
        "CurFrmId=0, RefBufIdx=0\n"
        "Copy Y of frame(1) to ppPrevYBuffer(1).\nCurFrmId=2, RefBufIdx=1\n"};
    for (const int i : {0, 1, 2, 3}) {
        Pools t(1, i % 2, i < 2 ? 1 : ~1);
        testing::internal::CaptureStdout();
        t.Schedule(0);
        t.Schedule(2);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), i < 2 ? aText[i] : "") << i;
    }
}
