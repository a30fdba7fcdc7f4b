// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Reading running files and comparing equal ones, in bytes a second. The files are some hundred
// megabytes in the temporary folder and stay in the system's cache.
#include <benchmark/benchmark.h>

#include <fstream>

#include "lab/compare/bytes.h"
#include "lab/dumps/readers.h"
#include "tests/lab/support/dump_writer.h"
#include "tests/support/files.h"

namespace {

// A grid of 640x360 with blocks every 8 pixels.
constexpr int kColumns = 79, kRows = 44;

struct Files {
    TempFolder folder;
    std::string golden = folder / "hogmd_golden.txt", copy = folder / "copy",
                dist = folder / "hogmd_dist.txt";
    int64_t golden_bytes = 0, dist_bytes = 0;

    Files() {
        lab::Frame frame = SomeFrame(0, kColumns, kRows, 1);
        std::ofstream a(golden, std::ios::binary), b(copy, std::ios::binary),
            c(dist, std::ios::binary);
        for (int i = 0; i < 600; ++i) {
            frame.index = i;
            const std::string features = DumpText(frame, lab::kGoldenFile);
            const std::string distances = DumpText(frame, lab::kDistFile);
            a << features;
            b << features;
            c << distances;
            golden_bytes += static_cast<int64_t>(features.size());
            dist_bytes += static_cast<int64_t>(distances.size());
        }
    }
};

const Files& TheFiles() {
    static const Files files;
    return files;
}

void Read(benchmark::State& state, const std::string& path, lab::FileKind kind, bool plain,
          int64_t bytes) {
    lab::Frame frame;
    for (auto _ : state) {
        lab::RunningFile file(path, kind);
        if (plain) file.UsePlainReader();
        while (file.Next(&frame)) benchmark::DoNotOptimize(frame.values[lab::kVector].data());
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}

void ReadGolden(benchmark::State& state) {
    Read(state, TheFiles().golden, lab::kGoldenFile, false, TheFiles().golden_bytes);
}
void ReadGoldenPlain(benchmark::State& state) {
    Read(state, TheFiles().golden, lab::kGoldenFile, true, TheFiles().golden_bytes);
}
void ReadDist(benchmark::State& state) {
    Read(state, TheFiles().dist, lab::kDistFile, false, TheFiles().dist_bytes);
}

void EqualBytes(benchmark::State& state) {
    lab::ByteCompare compare;
    for (auto _ : state) {
        const lab::RawFile a(TheFiles().golden), b(TheFiles().copy);
        if (!compare.Equal(a, b)) state.SkipWithError("the files differ");
    }
    state.SetBytesProcessed(state.iterations() * TheFiles().golden_bytes);
}

BENCHMARK(ReadGolden);
BENCHMARK(ReadGoldenPlain);
BENCHMARK(ReadDist);
BENCHMARK(EqualBytes);

}  // namespace

BENCHMARK_MAIN();
