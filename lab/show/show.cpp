// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/show/show.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "lab/dumps/readers.h"
#include "lab/dumps/run.h"
#include "lab/show/block_map.h"
#include "lab/show/block_table.h"
#include "lab/tool/error.h"
#include "lab/tool/terminal.h"

namespace lab {

namespace {

constexpr int kLastFrame = 999999999;
constexpr int kUsualStride = 8;  // where neither the videos nor the user say
constexpr int kLeastWidth = 20;
constexpr int kLinesAround = 5;  // heading, column numbers, scale, prompt

struct ShowOptions {
    std::string run;
    int64_t frame = 0;
    std::string values = "distance";
    std::vector<int> block;  // column and row, or nothing
    int before = 4;
    int width = 0;
    int stride = 0;
};

Field FieldNamed(const std::string& name) {
    if (name == "active") return kActive;
    return name == "luma" ? kLuma : kDistance;
}

// The bit of MD_DbgEn whose files hold the field.
int DumpBit(Field field) {
    return field == kDistance || field == kActive ? 64 : 32;
}

Frame LoadOrThrow(const Run& run, int64_t number) {
    std::optional<Frame> frame = LoadFrame(run, number);
    if (frame) return *std::move(frame);
    std::string message = run.path + ": no frame " + std::to_string(number);
    if (const std::optional<FrameRange> there = FramesOf(run)) {
        message +=
            ", there are " + std::to_string(there->first) + " to " + std::to_string(there->last);
    }
    throw Error(message);
}

// What the user says, or the size in a video's name shows; 0: not known.
int KnownStride(const Run& run, const ShowOptions& options, const Frame& frame) {
    if (options.stride != 0) return options.stride;
    const std::optional<VideoSize> size = WorkingSize(run);
    return size ? StrideOf(*size, frame.columns, frame.rows).value_or(0) : 0;
}

// The block edges around a box of pixels; blocks at stride steps reach to the next block.
BlockEdges EdgesAround(const Box& box, int stride, const Frame& frame) {
    const auto before = [&](int pixel, int blocks) {
        return std::clamp(pixel / stride, 0, blocks - 1);
    };
    const auto after = [&](int pixel, int blocks, int first) {
        return std::clamp((pixel + stride - 1) / stride, first + 1, blocks);
    };
    BlockEdges edges{before(box.left, frame.columns), before(box.top, frame.rows), 0, 0};
    edges.right = after(box.right, frame.columns, edges.left);
    edges.bottom = after(box.bottom, frame.rows, edges.top);
    return edges;
}

std::string FrameName(int64_t frame) {
    char text[64];
    std::snprintf(text, sizeof text, "frame %lld (files %04lld_*)", static_cast<long long>(frame),
                  static_cast<long long>(frame) + 1);
    return text;
}

std::string Range(int from, int to) {
    return std::to_string(from) + ".." + std::to_string(to);
}

// "frame 17 (files 0018_*)   39 x 29 blocks   active 43   box 96..111, 40..55" and, on a line of
// its own, what the map shows.
std::string Heading(const Frame& frame, Field field) {
    std::string text = FrameName(frame.index) + "   " + std::to_string(frame.columns) + " x " +
                       std::to_string(frame.rows) + " blocks";
    if (frame.Has(kActive)) {
        const std::vector<uint16_t>& active = frame.values[kActive];
        const auto count =
            std::count_if(active.begin(), active.end(), [](int v) { return v != 0; });
        text += "   active " + std::to_string(count);
    }
    if (frame.report) {
        for (const Box& box : frame.report->boxes) {
            text += "   box " + Range(box.left, box.right) + ", " + Range(box.top, box.bottom);
        }
        if (frame.report->boxes.empty()) text += "   no box";
    }
    const std::vector<uint16_t>& values = frame.values[field];
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    const auto place = static_cast<int>(high - values.begin());
    text += "\n" + ValueName(field, 0) + " " + Range(*low, *high);
    if (*high > *low && field != kActive) {
        text += ", largest at x " + std::to_string(place % frame.columns) + ", y " +
                std::to_string(place / frame.columns);
    }
    return text + "\n";
}

void ShowMap(const Run& run, const ShowOptions& options) {
    const Frame frame = LoadOrThrow(run, options.frame);
    const Field field = FieldNamed(options.values);
    if (!frame.Has(field)) {
        throw Error(options.run + ": no " + ValueName(field, 0) + " of frame " +
                    std::to_string(options.frame) + ": MD_DbgEn with " +
                    std::to_string(DumpBit(field)) + " in it dumps it");
    }
    BlockMap map{frame.columns,
                 frame.rows,
                 frame.values[field],
                 field == kActive ? 1 : 255,
                 field == kLuma ? Ramp::kGrey : Ramp::kHeat,
                 {}};
    if (frame.report && !frame.report->boxes.empty()) {
        const int known = KnownStride(run, options, frame);
        map.box =
            EdgesAround(frame.report->boxes.front(), known != 0 ? known : kUsualStride, frame);
    }
    const int width = std::max(options.width != 0 ? options.width : TerminalWidth(), kLeastWidth);
    std::string text = Heading(frame, field);
    text += ColourWanted() ? DrawColours(map, width, TerminalHeight() - kLinesAround, TrueColour())
                           : DrawDigits(map, width);
    std::fputs(text.c_str(), stdout);
}

void ShowBlock(const Run& run, const ShowOptions& options) {
    const int x = options.block[0];
    const int y = options.block[1];
    std::vector<Frame> frames;
    frames.push_back(LoadOrThrow(run, options.frame));
    for (int64_t number = options.frame - 1;
         number >= std::max<int64_t>(options.frame - options.before, 0); --number) {
        std::optional<Frame> frame = LoadFrame(run, number);
        if (frame) frames.push_back(*std::move(frame));
    }
    for (const Frame& frame : frames) {
        if (x >= 0 && x < frame.columns && y >= 0 && y < frame.rows) continue;
        throw Error(options.run + ": block " + std::to_string(x) + "," + std::to_string(y) +
                    " is outside: frame " + std::to_string(frame.index) + " has " +
                    std::to_string(frame.columns) + " x " + std::to_string(frame.rows) + " blocks");
    }
    const int known = KnownStride(run, options, frames.front());
    const int stride = known != 0 ? known : kUsualStride;
    const std::string text = FrameName(options.frame) + "   block x " + std::to_string(x) + ", y " +
                             std::to_string(y) + "   pixels " + Range(x * stride, x * stride + 15) +
                             ", " + Range(y * stride, y * stride + 15) +
                             (known != 0 ? "\n" : " at stride 8\n") + BlockTable(frames, x, y);
    std::fputs(text.c_str(), stdout);
}

}  // namespace

void AddShow(CLI::App* app, int* status) {
    auto options = std::make_shared<ShowOptions>();
    CLI::App* show = app->add_subcommand(
        "show", "Draws a frame's distances, active blocks or luma, or lists one block's record");
    BeginHelpWith(
        "  mdlab show out 17                 the distances of frame 17 as a map\n"
        "  mdlab show out 17 --block 12,5    the record of one block, and of the frames before\n",
        show);
    show->add_option("RUN", options->run, "Output folder, its HOG_feature, or one file")
        ->required();
    show->add_option("FRAME", options->frame,
                     "Counted from 0, as Frame_idx; file names say one more")
        ->required()
        ->check(CLI::Range(0, kLastFrame))
        ->option_text("N REQUIRED");
    show->add_option("--values", options->values, "distance (default), active or luma")
        ->check(CLI::IsMember({"distance", "active", "luma"}))
        ->option_text("WHAT");
    show->add_option("--block", options->block, "Column and row, from 0")
        ->delimiter(',')
        ->expected(2)
        ->option_text("X,Y");
    show->add_option("--before", options->before, "Frames before it in the block's record (4)")
        ->check(CLI::Range(0, 1000))
        ->option_text("N");
    show->add_option("--width", options->width, "Columns to fit, instead of the terminal's")
        ->check(CLI::Range(kLeastWidth, 10000))
        ->option_text("N");
    show->add_option("--stride", options->stride,
                     "MD_HogBlockStride, where no video in RUN shows it by its size (8)")
        ->check(CLI::Range(8, 64))
        ->option_text("N");
    show->callback([options, status] {
        const Run run = OpenRun(options->run);
        if (options->block.empty()) {
            ShowMap(run, *options);
        } else {
            ShowBlock(run, *options);
        }
        *status = kSame;
    });
}

}  // namespace lab
