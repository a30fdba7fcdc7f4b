// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Single functions, by the two programs of Google's benchmark library.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "bench/numbers/bench.h"
#include "md/decision/row_kernels.h"

namespace bench {

namespace {

// Rounds of a benchmark program: `member` of each of its rows, by the row's name.
std::vector<Round> Rounds(const Bench& bench, const std::string& program,
                          const std::string& member) {
    const Command command{{program, "--benchmark_format=json",
                           "--benchmark_min_time=" + std::string(bench.quick ? "0.01" : "0.05")}};
    std::vector<Round> rounds;
    for (int i = 0; i < bench.rounds; ++i) {
        const auto output = nlohmann::json::parse(OutputOf(command));
        Round round;
        for (const auto& row : output["benchmarks"]) {
            if (row.contains(member)) round.time[row["name"]] = row[member].get<double>();
        }
        rounds.push_back(round);
    }
    return rounds;
}

}  // namespace

Section KernelsSection(const Bench& bench) {
    Section section;
    section.text =
        R"(`md_bench`, nanoseconds a block, padding 2: the row kernels, and the whole walk of a frame
with them. The block walk is the definition, built -O3 here.)";
    section.rounds = Rounds(bench, MD_BENCH_PROGRAM, "items_per_second");
    const auto nanoseconds = [](const std::string& id) {
        return [=](const Round& round) { return 1e9 / round.Time(id); };
    };
    const std::pair<const char*, const char*> rows[] = {
        {"sums of a cell row, for current and reference", "BM_CellRowSums/%/padding:2"},
        {"records of a block row", "BM_BlockRowRecords/%/padding:0"},
        {"distances of a row", "BM_RowDistances/%/padding:0"},
        {"row walk", "BM_RowWalk/%/padding:2"}};
    Table table{"kernel"};
    for (const auto& [row, pattern] : rows) {
        for (const RowKernels& path : OfferedKernels()) {
            std::string id = pattern;
            id.replace(id.find('%'), 1, path.szName);
            table.figures.push_back({row, path.szName, nanoseconds(id), 1});
        }
    }
    table.figures.push_back({"block walk", "plain", nanoseconds("BM_BlockWalk/padding:2"), 1});
    section.tables = {table};
    return section;
}

Section ReadersSection(const Bench& bench) {
    Section section;
    section.text =
        R"(`lab_bench`, GiB a second of processor time, on 163 MB of `hogmd_golden.txt` in the system's
cache. The plain reader takes every form that simulators write, the fast one what MD writes.)";
    section.rounds = Rounds(bench, LAB_BENCH_PROGRAM, "bytes_per_second");
    const auto gib = [](const std::string& id) {
        return [=](const Round& round) { return round.Time(id) / (1 << 30); };
    };
    section.tables = {
        {"",
         {{"reading `hogmd_golden.txt`", "", gib("ReadGolden"), 2, AtLeast(0.4)},
          {"the same by the plain reader", "", gib("ReadGoldenPlain"), 2},
          {"reading `hogmd_dist.txt`", "", gib("ReadDist"), 2},
          {"comparing two equal files, as `mdlab compare` does first", "", gib("EqualBytes"), 1}}}};
    return section;
}

}  // namespace bench
