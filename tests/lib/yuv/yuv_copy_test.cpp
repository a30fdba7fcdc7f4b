#include "yuv/yuv_copy.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "tests/support/picture.h"

namespace {

constexpr size_t kGuard = 64;  // bytes before and behind the destination

struct Row {
    int nSrcW, nSrcH;
    YuvRect s;
    int nDstW, nDstH;
    YuvRect d;
};

void Copy(const Row& r, const std::string& sSrc, char* pDst) {
    YuvCpyRoi(reinterpret_cast<const uint8_t*>(sSrc.data()), r.nSrcW, r.nSrcH, &r.s,
              reinterpret_cast<uint8_t*>(pDst), r.nDstW, r.nDstH, &r.d);
}

// Standard output goes where the message is looked for, standard error nowhere.
void CopyInChild(const Row& r, const std::string& sSrc, char* pDst) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
    Copy(r, sSrc, pDst);
}

}  // namespace

TEST(YuvCpyRoi, RegionLandsInAllPlanesAndNowhereElse) {
    const Row aRows[] = {
        {16, 12, {0, 0, 16, 12}, 48, 12, {0, 0, 16, 12}},
        {16, 12, {0, 0, 16, 12}, 48, 12, {16, 0, 16, 12}},
        {16, 12, {0, 0, 16, 12}, 48, 12, {32, 0, 16, 12}},  // ends with the canvas
        {16, 12, {4, 2, 12, 10}, 20, 14, {8, 4, 12, 10}},   // both end with their frames
        {16, 12, {3, 2, 8, 6}, 20, 14, {11, 4, 8, 6}},      // odd columns: chroma from x >> 1
        {16, 12, {0, 0, 7, 5}, 16, 12, {2, 4, 7, 5}},       // odd size
        {48, 12, {32, 0, 16, 12}, 16, 12, {0, 0, 16, 12}},
        {16, 12, {16, 0, 0, 12}, 16, 12, {0, 0, 0, 12}},  // nothing to copy
        {16, 12, {0, 12, 16, 0}, 16, 12, {0, 0, 16, 0}},
        {15, 13, {0, 0, 15, 13}, 45, 13, {30, 0, 15, 13}},
    };
    const std::string sGuard(kGuard, '\x5A');
    for (const Row& r : aRows) {
        Picture tSrc(r.nSrcW, r.nSrcH, Junk(static_cast<size_t>(r.nSrcW * r.nSrcH * 3 / 2)));
        Picture tTwin(r.nDstW, r.nDstH,
                      std::string(static_cast<size_t>(r.nDstW * r.nDstH * 3 / 2), '\x5A'));
        std::string sGot = sGuard + tTwin.s + sGuard;
        for (int nPlane = 0; nPlane < 3; ++nPlane) {
            const int d = nPlane == 0 ? 1 : 2;
            for (int i = 0; i < (r.d.h / d) * (r.d.w / d); ++i) {
                const int x = i % (r.d.w / d);
                const int y = i / (r.d.w / d);
                tTwin.At(nPlane, r.d.x / d + x, r.d.y / d + y) =
                    tSrc.At(nPlane, r.s.x / d + x, r.s.y / d + y);
            }
        }
        Copy(r, tSrc.s, sGot.data() + kGuard);
        EXPECT_TRUE(sGot == sGuard + tTwin.s + sGuard) << "row " << &r - aRows;
    }
}

TEST(YuvCpyRoi, RegionThatDoesNotFitIsRefusedUntouched) {
    const Row aRows[] = {
        {16, 12, {0, 0, 17, 12}, 32, 24, {0, 0, 17, 12}},
        {16, 12, {0, 2, 16, 11}, 32, 24, {0, 0, 16, 11}},
        {16, 12, {0, 0, 16, 12}, 32, 24, {18, 0, 16, 12}},
        {16, 12, {0, 0, 16, 12}, 32, 24, {0, 13, 16, 12}},
        {16, 12, {0, 0, 16, 12}, 32, 24, {0, 0, 14, 12}},
        {16, 12, {0, 0, 16, 12}, 32, 24, {0, 0, 16, 10}},
    };
    const std::string sSrc = Junk(16 * 12 * 3 / 2);
    const std::string sBefore(32 * 24 * 3 / 2, '\x5A');
    // The child that ends writes into memory that we share with it.
    char* pDst = static_cast<char*>(
        mmap(nullptr, sBefore.size(), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    sBefore.copy(pDst, sBefore.size());
    for (const Row& r : aRows) {
        EXPECT_EXIT(CopyInChild(r, sSrc, pDst), testing::ExitedWithCode(255),
                    "^YuvCpyRoi: pSrcRc or pDstRc error\\.\n$")
            << "row " << &r - aRows;
        EXPECT_TRUE(sBefore == std::string(pDst, sBefore.size())) << "row " << &r - aRows;
    }
    munmap(pDst, sBefore.size());
}
