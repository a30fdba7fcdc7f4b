// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// How MD's time and memory grow with frames, sizes and the reference.
#include <algorithm>

#include "bench/numbers/bench.h"

namespace bench {

namespace {

constexpr int32_t kShort = 10;  // frames of a short run

// Nanoseconds a block, start included.
double PerBlock(const Round& round, const std::string& name, const Size& size, int32_t frames) {
    return round.Time(name) * 1e9 / frames / size.Blocks();
}

}  // namespace

Section GrowthSection(const Bench& bench) {
    Section section;
    section.text = "Whole runs of MD, start included. Memory is the peak that is resident.";
    section.subjects = {
        {"small", Md(bench, kSmall, kSmall.frames)},
        {"half", Md(bench, kMiddle, kMiddle.frames / 2)},
        {"middle", Md(bench, kMiddle, kMiddle.frames)},
        {"large", Md(bench, kLarge, kLarge.frames)},
        {"short", Md(bench, kMiddle, kShort)},
        {"R3", Md(bench, kLarge, kLarge.frames, {"MD_RefFrmIdx=3"})},
        {"R14", Md(bench, kLarge, kLarge.frames, {"MD_RefFrmIdx=14"})},
    };
    const auto between_sizes = [](const Round& round) {
        const std::initializer_list<double> all = {
            PerBlock(round, "small", kSmall, kSmall.frames),
            PerBlock(round, "middle", kMiddle, kMiddle.frames),
            PerBlock(round, "large", kLarge, kLarge.frames)};
        return std::max(all) / std::min(all);
    };
    const auto memory_growth = [](const Round& round) {
        return round.Whole("middle").peak_mib / round.Whole("short").peak_mib;
    };
    section.tables = {
        {"",
         {{"ns a block: the slowest of 320x180, 640x360, 1920x1080 / the fastest", "",
           between_sizes, 2, AtMost(1.5)},
          {"640x360: time of twice the frames / once", "", Ratio("middle", "half"), 2, AtMost(2)},
          {"640x360: MiB over " + std::to_string(kShort) + " frames", "", PeakMib("short"), 1},
          {"640x360: MiB over " + std::to_string(kMiddle.frames) + " frames / that", "",
           memory_growth, 2, AtMost(1.05)},
          {"1920x1080: MiB with `MD_RefFrmIdx` 3, which keeps 4 frames' records", "", PeakMib("R3"),
           1},
          {"1920x1080: MiB with `MD_RefFrmIdx` 14, which keeps 15", "", PeakMib("R14"), 1}}}};
    return section;
}

}  // namespace bench
