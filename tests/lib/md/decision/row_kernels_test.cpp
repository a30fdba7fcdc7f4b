// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Every row kernel of every path against its scalar definition, in the manner of the table in
// kernel_cases.h: sizes from one block up, every padding, stride and tap pattern, inputs from all
// parts of their range, outputs full of junk before and guarded around.
#include "md/decision/row_kernels.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "tests/support/kernel_cases.h"

namespace {

RowKernels Scalar() {
    return OfferedKernels().back();
}

Setting PickCase(std::mt19937& rng, int32_t nBlocks, int32_t nStride) {
    const Picker Pick = [&](int32_t a, int32_t b) {
        return std::uniform_int_distribution<int32_t>(a, b)(rng);
    };
    const int32_t nWidth = 16 + nStride * (nBlocks - 1) + Pick(0, nStride - 1);
    Setting s = PickSetting(Pick, nWidth, 16 + Pick(0, 24));
    s.md.nMD_HogBlockStride = nStride;
    return s;
}

uint32_t Seed(std::mt19937& rng) {
    return static_cast<uint32_t>(rng());
}

// All paths on one case, drawn from its seed.
void ExpectEqualKernels(const KernelRow& tKernel, Setting s, Inputs inputs, uint32_t nSeed) {
    std::mt19937 rng(nSeed);
    const Picker Pick = [&](int32_t a, int32_t b) {
        return std::uniform_int_distribution<int32_t>(a, b)(rng);
    };
    const KernelCase tCase = tKernel.pMake(s, inputs, Pick);
    const KernelOutputs aExpected = Outputs(tCase, Scalar(), 0x55);
    for (const RowKernels& tPath : OfferedKernels()) {
        EXPECT_EQ(Difference(tCase, aExpected, Outputs(tCase, tPath, 0xAA), 0xAA), "")
            << tKernel.szName << " " << tPath.szName << ", seed " << nSeed << ", inputs "
            << static_cast<int>(inputs) << ", " << tCase.nBlocks << " blocks, " << tCase.sText;
    }
}

class RowKernelsTest : public testing::TestWithParam<KernelRow> {};

}  // namespace

TEST_P(RowKernelsTest, EqualScalarDefinitionAtEverySize) {
    std::mt19937 rng(20261123);
    for (int32_t nBlocks = 1; nBlocks <= 150 && !HasFailure(); ++nBlocks) {
        for (const Inputs inputs : kAllInputs) {
            ExpectEqualKernels(GetParam(), PickCase(rng, nBlocks, 8), inputs, Seed(rng));
        }
    }
}

TEST_P(RowKernelsTest, EqualScalarDefinitionInEverySetting) {
    std::mt19937 rng(5);
    for (int32_t n = 0; n < 3 * 8 * 4 * 16 && !HasFailure(); ++n) {
        const int32_t nPadding = n % 3, nStride = n / 3 % 8 + 1, nMiddle = n / 24 % 4;
        Setting s = PickCase(rng, 1 + static_cast<int32_t>(rng() % 24), 8 * nStride);
        s.md.nMD_Padding_Method = nPadding;
        // Both forms of each filter, with a middle tap and without.
        if ((nMiddle & 1) != 0) s.md.nMD_HogGradX[2] = 0;
        if ((nMiddle & 2) != 0) s.md.nMD_HogGradY[2] = 0;
        s.md.nMD_ShiftMetric2_Th = n % 16;
        s.md.nMD_ShiftHistMag2 = n / 16 % 8;
        ExpectEqualKernels(GetParam(), s, kAllInputs[n / 96 % 4], Seed(rng));
    }
}

INSTANTIATE_TEST_SUITE_P(Kernels, RowKernelsTest, testing::ValuesIn(kRowKernels),
                         [](const auto& tCase) { return tCase.param.szName; });

namespace {

// Both halves of three blocks over 32 x 32 pixels, cell row 1.
struct Sums {
    int32_t a[2][kHalfPlanes][kRowStep];
};

Sums SumsOfRow(const Setting& s, const Plane& aLuma, const RowKernels& tPath) {
    CellSetup t;
    CellSetupInit(&s.md, s.aGauss, &t);
    Sums tSums;
    HalfRow aHalf[2];
    for (int32_t n = 0; n < kHalfPlanes; ++n) {
        for (int32_t nHalf = 0; nHalf < 2; ++nHalf) aHalf[nHalf].apPlane[n] = tSums.a[nHalf][n];
    }
    tPath.pCellRowSums(t, {aLuma.data(), 32, 32}, 8, 3, &aHalf[0], &aHalf[1]);
    return tSums;
}

}  // namespace

// The ends of what 16 bits must hold. With one tap of 8 in the middle of both filters a white pixel
// has both gradients at 2040 and the magnitude 3060, a black one 0. A weight of 64 leaves them so.
TEST(RowKernels, ColumnsHoldTheirExtremes) {
    const struct {
        const char* szWhat;
        int32_t nFirst, nLast;  // white rows of each cell
        int32_t nMomY;          // in 3060ths: sum of the white rows' numbers
    } aRows[] = {{"white: column sum 24480", 0, 7, 28},
                 {"white above: y moment -30600", 0, 3, 6},
                 {"white below: y moment 18360", 5, 7, 18},
                 {"black", 8, 8, 0}};
    Setting s;
    MdParams& md = s.md;
    md.nMD_HogGradX[2] = md.nMD_HogGradY[2] = 8;
    md.nMD_HogBlockSize = 16;
    md.nMD_HogBlockStride = 8;
    for (const auto& row : aRows) {
        const int32_t nWhite = row.nLast < 8 ? row.nLast - row.nFirst + 1 : 0;
        Plane aLuma;
        for (int32_t i = 0; i < 32 * 32; ++i) {
            const int32_t r = i / 32 % 8;
            aLuma.push_back(row.nFirst <= r && r <= row.nLast ? 255 : 0);
        }
        aLuma.resize(aLuma.size() + kLumaSlack);
        for (int32_t nCase = 0; nCase < 3 * 2; ++nCase) {
            md.nMD_Padding_Method = nCase % 3;
            md.nMD_HogMagnitudeWeightEn = nCase / 3;
            // Without weighting the window is not read.
            std::memset(s.aGauss, nCase / 3 != 0 ? 64 : 7, sizeof s.aGauss);
            for (const RowKernels& tPath : OfferedKernels()) {
                const std::string sWhere =
                    std::string(row.szWhat) + " " + tPath.szName + " case " + std::to_string(nCase);
                const Sums tSums = SumsOfRow(s, aLuma, tPath);
                for (int32_t n = 0; n < 2 * 2 * 3; ++n) {
                    const auto& aHalf = tSums.a[n % 2];
                    const int32_t nSide = n / 2 % 2, i = n / 4;
                    EXPECT_EQ(aHalf[kMag + nSide][i], nWhite * 8 * 3060) << sWhere;
                    EXPECT_EQ(aHalf[kMomX + nSide][i], nWhite * 28 * 3060) << sWhere;
                    EXPECT_EQ(aHalf[kMomY + nSide][i], row.nMomY * 8 * 3060) << sWhere;
                    EXPECT_EQ(aHalf[kLuma][i], nWhite * 16 * 255) << sWhere;
                }
            }
        }
    }
}

// The comparison must notice a wrong byte of the last block and one written after the room.
TEST(RowKernels, ComparisonReportsPlantedFaults) {
    std::mt19937 rng(1);
    const Picker Pick = [&](int32_t a, int32_t b) {
        return a + static_cast<int32_t>(rng() % 7) % (b - a + 1);
    };
    const KernelCase t = kRowKernels[2].pMake(PickCase(rng, 11, 8), Inputs::kFullRange, Pick);
    const KernelOutputs aGood = Outputs(t, Scalar(), 1);
    EXPECT_EQ(Difference(t, aGood, aGood, 1), "");
    KernelOutputs aWrong = aGood;
    aWrong[1].At<uint8_t>()[10] ^= 4;
    EXPECT_NE(Difference(t, aGood, aWrong, 1).find("luma difference, block 10"), std::string::npos);
    aWrong = aGood;
    aWrong[0].At<uint8_t>()[16] = 0;
    EXPECT_NE(Difference(t, aGood, aWrong, 1).find("distance, guard"), std::string::npos);
}
