// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// One benchmark of each row kernel on each path, of the whole walks, and of the text output. The
// kernels are the table that the equality test walks too. Each row counts blocks, so "time per
// item" is nanoseconds a block; for text it is nanoseconds a number.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <vector>

#include "md/block_grid.h"
#include "md/decision/block_walk.h"
#include "md/decision/row_walk.h"
#include "md/feature/gaussian_window.h"
#include "md/output/text_out.h"
#include "tests/support/kernel_cases.h"

namespace {

constexpr int32_t kWidth = 640;
constexpr int32_t kHeight = 360;
constexpr int32_t kFrames = 8;

Setting Street(int32_t nPadding) {
    Setting s;
    s.nWidth = kWidth;
    s.nHeight = kHeight;
    MdParams& md = s.md;
    md.nMD_Padding_Method = nPadding;
    md.nMD_RefFrmIdx = 3;
    md.nMD_HogBlockSize = md.nMD_HogCellSize = 16;
    md.nMD_HogBlockStride = 8;
    const int32_t aTaps[] = {-1, -2, 0, 2, 1};
    for (int k = 0; k < kGradientTaps; ++k) md.nMD_HogGradX[k] = md.nMD_HogGradY[k] = aTaps[k];
    md.nMD_HogMagnitudeWeightEn = md.nMD_HogNormalizeMode = md.nMD_NeighborCorrelation = 1;
    md.nMD_MetricMode = 2;
    md.nMD_ShiftMetric2_Th = 8;
    md.nMD_ShiftHistMag2 = 1;
    md.nMD_HogDist_Scale2 = md.nMD_ActBlk_MinMaxRatio_Scale = 16;
    md.nMD_HogDist_AvgYDiffCalc_Method = 2;  // prints nothing
    md.nMD_HogDist_AvgYDiffThre_Scale = 32;
    md.nMD_HogDist_Th = 10;
    md.nMD_HogDist_Th_nnAdj_Scale = 8;
    md.nMD_HogDist_Th_highActiveAdj_scale = 12;
    md.nMD_ActBlkRepeatFrmCntTh = 3;
    md.nMD_ActNeighborBlkCntTh = 2;
    GaussianWindowInit(3.0, 16, 64, s.aGauss);
    return s;
}

// A few frames of a ramp with noise on it and a bright square that moves.
struct Scene : Setting {
    std::vector<uint8_t> aLuma[kFrames];

    explicit Scene(int32_t nPadding) : Setting(Street(nPadding)) {
        uint32_t nNoise = 1;
        for (int32_t f = 0; f < kFrames; ++f) {
            for (int32_t i = 0; i < kWidth * kHeight; ++i) {
                nNoise = nNoise * 1664525 + 1013904223;
                const int32_t x = i % kWidth, y = i / kWidth;
                const bool bSquare = x / 48 == 4 + f && y / 80 == 2;
                aLuma[f].push_back(
                    static_cast<uint8_t>((bSquare ? 150 : 60 + x / 16) + (nNoise >> 30)));
            }
            aLuma[f].resize(aLuma[f].size() + kLumaSlack);
        }
    }
    int32_t Blocks() const { return BlockCount(kWidth, md) * BlockCount(kHeight, md); }
    void SetFrame(int32_t n) {
        md.CurFrmId = n;
        md.RefBufIdx = n < 3 ? 0 : (n + 1) % 4;
    }
};

void BM_BlockWalk(benchmark::State& tState) {
    Scene s(static_cast<int32_t>(tState.range(0)));
    const auto n = static_cast<size_t>(s.Blocks());
    std::vector<BlockFeature> aPool[4];
    for (auto& t : aPool) t.resize(n);
    std::vector<BlockHistory> aHistory(n);
    std::vector<BlockHistory*> apHistory;
    apHistory.reserve(aHistory.size());
    for (auto& t : aHistory) apHistory.push_back(&t);
    std::vector<uint8_t> aAvail(n), aDist(n);
    for (int32_t f = 0; auto _ : tState) {
        s.SetFrame(f);
        FrameBlockScan_NormalHog(&s.md, s.aLuma[f % kFrames].data(), kWidth, kHeight, s.aGauss,
                                 aPool[f % 4].data(), aPool[s.md.RefBufIdx].data(), aAvail.data(),
                                 aDist.data(), apHistory.data());
        ++f;
    }
    tState.SetItemsProcessed(tState.iterations() * s.Blocks());
}

void RowWalkBench(benchmark::State& tState, const RowKernels& tPath) {
    Scene s(static_cast<int32_t>(tState.range(0)));
    const auto n = static_cast<size_t>(s.Blocks()) + kMapSlack;
    std::vector<uint8_t> aAvail(n), aDist(n);
    RowWalk* pWalk = RowWalkCreate(tPath, &s.md, kWidth, kHeight, s.aGauss);
    for (int32_t f = 0; auto _ : tState) {
        s.SetFrame(f);
        RowWalkFrame(pWalk, &s.md, s.aLuma[f % kFrames].data(), f % 4, s.md.RefBufIdx,
                     aAvail.data(), aDist.data());
        ++f;
    }
    RowWalkRelease(pWalk);
    tState.SetItemsProcessed(tState.iterations() * s.Blocks());
}

// One row of 640 pixels, of the kind that most rows are: sums for both halves.
void KernelBench(benchmark::State& tState, const KernelRow& tKernel, const RowKernels& tPath) {
    std::mt19937 rng(1);
    const Picker Pick = [&](int32_t a, int32_t b) {
        return std::uniform_int_distribution<int32_t>(a, b)(rng);
    };
    Setting s = Street(static_cast<int32_t>(tState.range(0)));
    s.nHeight = 32;
    KernelCase tCase;
    do {
        tCase = tKernel.pMake(s, Inputs::kFullRange, Pick);
    } while (&tKernel == &kRowKernels[0] && tCase.aOutputs.size() < 2 * kHalfPlanes);
    KernelOutputs aOut = Outputs(tCase, tPath, 0);
    for (auto _ : tState) {
        tCase.Call(tPath, &aOut);
        benchmark::ClobberMemory();
    }
    tState.SetItemsProcessed(tState.iterations() * tCase.nBlocks);
}

void BM_TextPrint(benchmark::State& tState) {
    bTextPlain = tState.range(0) != 0;
    static TextOut tText;
    TextOpen(&tText, "/dev/null", "file");
    uint8_t n = 0;
    for (auto _ : tState) {
        for (int i = 0; i < 1000; ++i) TextPrint<"%d,">(&tText, ++n);
    }
    TextClose(&tText);
    bTextPlain = false;
    tState.SetItemsProcessed(tState.iterations() * 1000);
}

BENCHMARK(BM_BlockWalk)->ArgName("padding")->DenseRange(0, 2);
BENCHMARK(BM_TextPrint)->ArgName("plain")->Arg(0)->Arg(1);

void Register(const RowKernels& tPath) {
    const std::string sPath = std::string("/") + tPath.szName;
    benchmark::RegisterBenchmark(("BM_RowWalk" + sPath).c_str(), RowWalkBench, tPath)
        ->ArgName("padding")
        ->DenseRange(0, 2);
    for (const KernelRow& tKernel : kRowKernels) {
        benchmark::RegisterBenchmark(("BM_" + (tKernel.szName + sPath)).c_str(), KernelBench,
                                     tKernel, tPath)
            ->ArgName("padding")
            ->DenseRange(0, &tKernel == &kRowKernels[0] ? 2 : 0);  // the others have none
    }
}

}  // namespace

int main(int argc, char** argv) {
    for (const RowKernels& tPath : OfferedKernels()) Register(tPath);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
