// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "bench/numbers/bench.h"

namespace bench {

std::string Size::Name() const {
    return std::to_string(width) + "x" + std::to_string(height);
}

int32_t Size::Blocks() const {
    return ((width - 16) / 8 + 1) * ((height - 16) / 8 + 1);
}

std::string Size::Raw() const {
    return "clip_" + Name() + "_P420.yuv";
}

Command Md(const Bench& bench, const Size& size, int32_t frames,
           const std::vector<std::string>& settings, const std::string& kernels) {
    const std::string w = std::to_string(size.width), h = std::to_string(size.height);
    Command command;
    command.words = {MdProgram(), "-d", SourcePath("cfg/raw.cfg")};
    std::vector<std::string> all = {"InputFilePath=" + bench.work + "/" + size.Raw(),
                                    "InputWidth=" + w,
                                    "InputHeight=" + h,
                                    "MD_ScaledW=" + w,
                                    "MD_ScaledH=" + h,
                                    "MD_ShiftMetric2_Th=8",
                                    "FramesToBeProcessed=" + std::to_string(frames),
                                    "OutputFilePath={new}"};
    all.insert(all.end(), settings.begin(), settings.end());
    for (const std::string& setting : all) {
        command.words.emplace_back("-p");
        command.words.push_back(setting);
    }
    if (!kernels.empty()) command.environment = {"MD_KERNELS=" + kernels};
    return command;
}

std::string MdProgram() {
    return MD_PROGRAM;
}

std::string MdlabProgram() {
    return MDLAB_PROGRAM;
}

std::string SourcePath(const std::string& name) {
    return std::string(MD_SOURCE_DIR "/") + name;
}

}  // namespace bench
