// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What all sections measure with: the programs, the clips and the sizes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bench/numbers/section.h"

namespace bench {

struct Bench {
    std::string work;  // folder of the clips
    std::string
        made;  // a folder in it for what the sections make; removed when the page is written
    std::string md_o2;  // MD built with -O2
    int rounds = 1;
    bool quick = false;  // less of what takes long
};

// clip_WxH_P420.yuv and clip_WxH.mp4 in the work folder have so many frames. bench.sh makes them.
struct Size {
    int32_t width, height, frames;
    [[nodiscard]] std::string Name() const;  // "640x360"
    [[nodiscard]] int32_t Blocks() const;    // of 16x16 at stride 8
    [[nodiscard]] std::string Raw() const;   // name of the raw clip
};

constexpr Size kSmall{320, 180, 1500}, kMiddle{640, 360, 600}, kLarge{1920, 1080, 60};

// A run of MD over the first frames of a raw clip, into a new folder, with the default thresholds,
// MD_RefFrmIdx 3, normalisation and weighting on. `settings` are KEY=VALUE on top; `kernels` is a
// value of MD_KERNELS, empty for the fastest that the processor offers.
Command Md(const Bench& bench, const Size& size, int32_t frames,
           const std::vector<std::string>& settings = {}, const std::string& kernels = "");

// The programs built beside this one.
std::string MdProgram();
std::string MdlabProgram();

// Paths in the source tree.
std::string SourcePath(const std::string& name);

// The sections of the page; write_numbers.cpp has their order. Each makes the files it needs. One
// that gives rounds has measured already.
Section SpeedSection(const Bench& bench);
Section GrowthSection(const Bench& bench);
Section FilesSection(const Bench& bench);
Section CompareSection(const Bench& bench);
Section ReportSection(const Bench& bench);
Section BrowserSection(const Bench& bench);  // of the pages that ReportSection made
Section SweepSection(const Bench& bench);
Section KernelsSection(const Bench& bench);
Section ReadersSection(const Bench& bench);

}  // namespace bench
