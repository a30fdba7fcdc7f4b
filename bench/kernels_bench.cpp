// One benchmark per fast kernel and per plain definition beside it. Each row counts blocks, so
// "time per item" is nanoseconds a block; for text it is nanoseconds a number.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

#include "md/block_grid.h"
#include "md/decision/block_walk.h"
#include "md/decision/row_walk.h"
#include "md/feature/gaussian_window.h"
#include "md/output/text_out.h"

namespace {

constexpr int32_t kWidth = 640;
constexpr int32_t kHeight = 360;
constexpr int32_t kFrames = 8;

struct Scene {
    MdParams md{};
    uint8_t aGauss[32 * 32] = {};
    std::vector<uint8_t> aLuma[kFrames];  // noise on a ramp, with a bright square that moves

    explicit Scene(int32_t nPadding) {
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
        GaussianWindowInit(3.0, 16, 64, aGauss);
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

void BM_FrameBlockScan_Plain(benchmark::State& tState) {
    Scene s(static_cast<int32_t>(tState.range(0)));
    const auto n = static_cast<size_t>(s.Blocks());
    std::vector<BlockFeature> aPool[4];
    for (auto& t : aPool) t.resize(n);
    std::vector<BlockHistory> aHistory(n);
    std::vector<BlockHistory*> apHistory;
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

void Fast(benchmark::State& tState, const KernelPath& tPath) {
    Scene s(static_cast<int32_t>(tState.range(0)));
    const auto n = static_cast<size_t>(s.Blocks() + kMapSlack);
    std::vector<uint8_t> aAvail(n), aDist(n);
    RowWalk* pScan = RowWalkCreate(tPath, &s.md, kWidth, kHeight, s.aGauss);
    for (int32_t f = 0; auto _ : tState) {
        s.SetFrame(f);
        RowWalkFrame(pScan, &s.md, s.aLuma[f % kFrames].data(), f % 4, s.md.RefBufIdx,
                            aAvail.data(), aDist.data());
        ++f;
    }
    RowWalkRelease(pScan);
    tState.SetItemsProcessed(tState.iterations() * s.Blocks());
}

void CellRows(benchmark::State& tState, CellRowSumsFn* pCellRowSums) {
    Scene s(static_cast<int32_t>(tState.range(0)));
    CellSetup t{};
    CellSetupInit(&s.md, kWidth, s.aGauss, &t);
    const int32_t nBlocks = BlockCount(kWidth, s.md);
    std::vector<HalfBlock> aTop(static_cast<size_t>(nBlocks)), aBottom(aTop.size());
    for (auto _ : tState) {
        pCellRowSums(&t, s.aLuma[0].data(), kWidth, kHeight, 80, nBlocks, aTop.data(),
                     aBottom.data());
        benchmark::ClobberMemory();
    }
    tState.SetItemsProcessed(tState.iterations() * nBlocks);
}

void BlockRow(benchmark::State& tState, const KernelPath& tPath) {
    Scene s(2);
    CellSetup t{};
    CellSetupInit(&s.md, kWidth, s.aGauss, &t);
    const int32_t nBlocks = BlockCount(kWidth, s.md);
    const auto n = static_cast<size_t>(nBlocks);
    std::vector<HalfBlock> aTop(n), aBottom(n);
    tPath.pCellRowSums(&t, s.aLuma[0].data(), kWidth, kHeight, 80, nBlocks, aTop.data(),
                       aBottom.data());
    std::vector<BlockSignature> aCur(n), aRef(n);
    std::vector<uint8_t> aDist(n), aYDiff(n);
    for (auto _ : tState) {
        tPath.pBlockRowFeatures(&t, aTop.data(), aBottom.data(), nBlocks, aCur.data(), aRef.data(),
                                aDist.data(), aYDiff.data());
        benchmark::ClobberMemory();
    }
    tState.SetItemsProcessed(tState.iterations() * nBlocks);
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

BENCHMARK(BM_FrameBlockScan_Plain)->ArgName("padding")->DenseRange(0, 2);
BENCHMARK(BM_TextPrint)->ArgName("plain")->Arg(0)->Arg(1);

void Register(const KernelPath& t) {
    const std::string sName = t.szName;
    benchmark::RegisterBenchmark(("BM_RowWalkFrame/" + sName).c_str(), Fast, t)
        ->ArgName("padding")
        ->DenseRange(0, 2);
    benchmark::RegisterBenchmark(("BM_CellRowSums/" + sName).c_str(), CellRows, t.pCellRowSums)
        ->ArgName("padding")
        ->DenseRange(0, 2);
    benchmark::RegisterBenchmark(("BM_BlockRowFeatures/" + sName).c_str(), BlockRow, t);
}

}  // namespace

int main(int argc, char** argv) {
    for (const KernelPath& t : OfferedKernels()) {
        if (t.pCellRowSums != nullptr) Register(t);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
