// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "yuv/yuv_copy.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/picture.h"

namespace {

constexpr size_t kGuard = 64;  // bytes before and after the destination

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

std::string Blank(int nWidth, int nHeight) {
    return std::string(static_cast<size_t>(nWidth * nHeight * 3 / 2), '\x5A');
}

}  // namespace

TEST(YuvCpyRoi, RegionLandsInAllPlanesAndNowhereElse) {
    const Row aRows[] = {
        {16, 12, {0, 0, 16, 12}, 48, 12, {32, 0, 16, 12}},  // ends with the canvas
        {16, 12, {4, 2, 12, 10}, 20, 14, {8, 4, 12, 10}},   // both end with their frames
        {16, 12, {3, 2, 8, 6}, 20, 14, {11, 4, 8, 6}},      // odd columns: chroma from x >> 1
        {16, 12, {0, 0, 7, 5}, 16, 12, {2, 4, 7, 5}},       // odd size
        {16, 12, {16, 0, 0, 12}, 16, 12, {0, 0, 0, 12}},    // nothing to copy
        {15, 13, {0, 0, 15, 13}, 45, 13, {30, 0, 15, 13}},
    };
    const std::string sGuard(kGuard, '\x5A');
    for (const Row& r : aRows) {
        Picture tSrc(r.nSrcW, r.nSrcH, Junk(Blank(r.nSrcW, r.nSrcH).size()));
        Picture tTwin(r.nDstW, r.nDstH, Blank(r.nDstW, r.nDstH));
        std::string sGot = sGuard + tTwin.s + sGuard;
        for (int nPlane = 0; nPlane < 3; ++nPlane) {
            const int d = nPlane == 0 ? 1 : 2, w = r.d.w / d;
            for (int i = 0; i < (r.d.h / d) * w; ++i) {
                tTwin.At(nPlane, r.d.x / d + i % w, r.d.y / d + i / w) =
                    tSrc.At(nPlane, r.s.x / d + i % w, r.s.y / d + i / w);
            }
        }
        Copy(r, tSrc.s, sGot.data() + kGuard);
        EXPECT_TRUE(sGot == sGuard + tTwin.s + sGuard) << "row " << &r - aRows;
    }
}

TEST(YuvCpyRoi, RegionThatDoesNotFitIsRefused) {
    const Row aRows[] = {
        {16, 12, {0, 0, 17, 12}, 32, 24, {0, 0, 17, 12}},
        {16, 12, {0, 2, 16, 11}, 32, 24, {0, 0, 16, 11}},
        {16, 12, {0, 0, 16, 12}, 32, 24, {18, 0, 16, 12}},
        {16, 12, {0, 0, 16, 12}, 32, 24, {0, 13, 16, 12}},
        {16, 12, {0, 0, 16, 12}, 32, 24, {0, 0, 14, 12}},
        {16, 12, {0, 0, 16, 12}, 32, 24, {0, 0, 16, 10}},
    };
    for (const Row& r : aRows) {
        std::string sDst = Blank(32, 24);
        // Its message goes to standard output, where the check does not look.
        EXPECT_EXIT((dup2(STDERR_FILENO, STDOUT_FILENO), Copy(r, Junk(288), sDst.data())),
                    testing::ExitedWithCode(255), "^YuvCpyRoi: pSrcRc or pDstRc error\\.\n$")
            << "row " << &r - aRows;
    }
}
