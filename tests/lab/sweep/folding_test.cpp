// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Points are folded by what a run is said not to read. MD is asked whether that is so: settings
// are drawn at random, keys that are said to be idle get other values, and every frame must come
// out the same.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "lab/settings/key_use.h"
#include "lab/settings/settings.h"
#include "lab/sweep/md_process.h"
#include "lab/sweep/plan.h"
#include "lab/tool/temp_folder.h"

namespace lab {
namespace {

// The inclusive range that a key is drawn from; a width of 0 keeps it out.
struct Span {
    int least = 0, width = 0;
};

Span SpanOf(const InputMapEntry& row, int at) {
    static const std::string fixed =
        "MD_Scale_Method MD_HogMethod MD_MetricMode MD_HogBlockSize "
        "MD_ScaledW MD_ScaledH MD_Scale_KeepAspectRatio "
        "MD_Bbox_PP_Window StartFrameIdx FramesToBeProcessed";
    const bool drawn = row.Type == kTypeInteger && row.LimitKind == kLimitBoth && !SetBySweep(at) &&
                       fixed.find(row.TokenName) == std::string::npos;
    if (!drawn) return {};
    const std::string key = row.TokenName;
    if (key == "MD_HogCellSize") return {16, 0};
    if (key == "MD_HogBlockStride") return {8, 0};
    return {static_cast<int>(row.MinLimit),
            std::min(static_cast<int>(row.MaxLimit - row.MinLimit), 20)};
}

std::string TextOf(const Settings& settings) {
    std::string text;
    for (int row = 0; row < KeyCount(); ++row) {
        text += Assignment(row, settings[static_cast<size_t>(row)]);
    }
    return text;
}

TEST(Folding, KeysThatAreSaidToBeIdleChangeNothing) {
    const TempFolder folder;
    const std::string clip = folder.Path() + "/in.yuv";
    const std::string command = std::string(MAKE_CLIP_PROGRAM) + " --scene two 96 64 24 " + clip +
                                " " + folder.Path() + "/labels.csv";
    ASSERT_EQ(std::system(command.c_str()), 0);
    Settings base = DefaultSettings();
    const auto set = [&](const char* key, const std::string& value) {
        base[static_cast<size_t>(RowOf(key))] = value;
    };
    set("InputFilePath", "in.yuv");
    set("OutputFilePath", "out");
    set("InputWidth", "96");
    set("InputHeight", "64");
    set("MD_ScaledW", "96");
    set("FramesToBeProcessed", "-1");
    set("MD_HogMethod", "1");
    set("MD_MetricMode", "2");
    set("MD_HogGradX", "-1,-2,0,2,1");
    set("MD_HogGradY", "-1,-2,0,2,1");

    std::mt19937 random(20261);
    const std::string path = folder.Path() + "/a.cfg";
    int with_motion = 0;
    for (int round = 0; round < 60; ++round) {
        Settings settings = base;
        for (int row = 0; row < KeyCount(); ++row) {
            const auto at = static_cast<size_t>(row);
            const Span span = SpanOf(aInputKeys[at], row);
            // Half of the keys stay as they are, so that motion is found often enough.
            if (span.width == 0 || random() % 2 == 0) continue;
            settings[at] = std::to_string(
                span.least + static_cast<int>(random() % static_cast<unsigned>(span.width + 1)));
        }
        WritePlain(path, TextOf(settings));
        const MdOutcome plain = RunMd(MD_PROGRAM, path, folder.Path());
        const SimParams record = Record(settings);
        std::string changed;
        for (int row = 0; row < KeyCount(); ++row) {
            const auto at = static_cast<size_t>(row);
            const Span span = SpanOf(aInputKeys[at], row);
            if (WhyIdle(aInputKeys[at].TokenName, record).empty() || span.width == 0) continue;
            settings[at] = std::to_string(
                span.least + static_cast<int>(random() % static_cast<unsigned>(span.width + 1)));
            changed += aInputKeys[at].TokenName + std::string(" ");
        }
        WritePlain(path, TextOf(settings));
        const MdOutcome folded = RunMd(MD_PROGRAM, path, folder.Path());
        ASSERT_EQ(plain.log.frames, folded.log.frames) << changed << TextOf(settings);
        ASSERT_EQ(plain.status, folded.status) << changed;
        for (const FrameReport& report : plain.log.frames) with_motion += report.box ? 1 : 0;
    }
    EXPECT_GT(with_motion, 100);
}

}  // namespace
}  // namespace lab
