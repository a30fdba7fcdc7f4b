// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/export/export.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lab/dumps/frame_range.h"
#include "lab/dumps/run.h"
#include "lab/export/difference_map.h"
#include "lab/export/frame_items.h"
#include "lab/export/frame_source.h"
#include "lab/export/playlist.h"
#include "lab/export/statistics_file.h"
#include "lab/tool/error.h"
#include "lab/tool/result_file.h"
#include "lab/tool/terminal.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

struct ExportOptions {
    std::string run;
    std::string name;
    std::string frames;
    std::string map;
    std::string video;
    bool quiet = false;
};

struct Video {
    fs::path path;
    VideoSize size;
};

Video FindVideo(const Run& run, const ExportOptions& options) {
    fs::path path = options.video;
    for (const std::string& name : run.videos) {
        if (path.empty() && name.starts_with("ScaledInput_")) path = fs::path(run.output) / name;
    }
    if (path.empty()) {
        throw Error(options.run +
                    ": no ScaledInput video there; MD leaves one when it scales the input or when "
                    "MD_DbgEn has 8192 in it. --video names another");
    }
    if (!fs::exists(path)) throw Error(path.string() + ": cannot be read: No such file");
    const std::optional<VideoSize> size = SizeInName(path.filename().string());
    if (!size) throw Error(path.string() + ": the name has no size, as in NAME_320x180_P420.yuv");
    return {path, *size};
}

int StrideOrThrow(const Video& video, const Frame& frame) {
    if (frame.columns == 0) return 0;  // only the box is known
    const std::optional<int> stride = StrideOf(video.size, frame.columns, frame.rows);
    if (stride) return *stride;
    throw Error(video.path.string() + ": " + std::to_string(frame.columns) + " x " +
                std::to_string(frame.rows) + " blocks do not fit on its " +
                std::to_string(video.size.width) + " x " + std::to_string(video.size.height) +
                " pixels");
}

class Exporter {
  public:
    Exporter(const ExportOptions& options, const Run& run)
        : options_(options), video_(FindVideo(run, options)), file_(options.name + ".csv") {
        if (!options.map.empty()) differences_ = ReadDifferenceMap(options.map);
        header_ = {video_.size.width, video_.size.height, FrameTypes(!options.map.empty())};
        file_.Write(HeaderText(header_));
    }

    void Add(const Frame& frame) {
        std::vector<uint16_t> differences;
        if (const auto blocks = differences_.find(frame.index); blocks != differences_.end()) {
            differences = DifferenceValues(options_.map, frame, blocks->second);
        }
        const std::vector<StatisticsItem> items =
            FrameItems(frame, differences, StrideOrThrow(video_, frame), video_.size.width,
                       video_.size.height);
        for (const StatisticsItem& item : items) file_.Write(ItemText(item));
        items_ += static_cast<int64_t>(items.size());
        frames_ += items.empty() ? 0 : 1;
    }

    void Finish() {
        if (items_ == 0) {
            throw Error(options_.run + ": nothing to show: no distance, active block or box");
        }
        ResultFile playlist(options_.name + ".yuvplaylist");
        const fs::path statistics = options_.name + ".csv";
        playlist.Write(PlaylistText(fs::absolute(statistics).parent_path(), video_.path,
                                    video_.size, statistics, header_));
        file_.Commit();
        playlist.Commit();
        std::printf("%s.csv          %lld items in %lld frames\n%s.yuvplaylist  shows them on %s\n",
                    options_.name.c_str(), static_cast<long long>(items_),
                    static_cast<long long>(frames_), options_.name.c_str(),
                    video_.path.string().c_str());
    }

  private:
    const ExportOptions& options_;
    Video video_;
    ResultFile file_;
    DifferenceMap differences_;
    StatisticsHeader header_{};
    int64_t items_ = 0, frames_ = 0;
};

void Export(const ExportOptions& options) {
    const FrameRange range = ParseFrames(options.frames);
    const Run run = OpenRun(options.run);
    Exporter exporter(options, run);
    Progress progress("frames", 0, options.quiet);
    int64_t done = 0;
    EachFrame(run, range, [&](const Frame& frame) {
        exporter.Add(frame);
        progress.Show(++done);
    });
    exporter.Finish();
}

}  // namespace

void AddExport(CLI::App* app, int* status) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* command = app->add_subcommand(
        "export", "Writes a run's distances, active blocks and boxes for a viewer");
    BeginHelpWith(
        "  mdlab export out --yuview walker && YUView walker.yuvplaylist\n"
        "  mdlab compare golden rtl --map wrong.csv; mdlab export golden --yuview wrong --map "
        "wrong.csv\n",
        command);
    command->add_option("RUN", options->run, "Output folder of a run")->required();
    command
        ->add_option("--yuview", options->name,
                     "Write NAME.csv, statistics, and NAME.yuvplaylist, the video with them")
        ->required()
        ->option_text("NAME");
    command->add_option("--frames", options->frames, "Only frames A to B, counted from 0")
        ->option_text("A:B");
    command->add_option("--map", options->map, "Differing blocks, as compare --map left them")
        ->option_text("FILE");
    command->add_option("--video", options->video, "Show this raw video, NAME_WxH_P420.yuv")
        ->option_text("FILE");
    command->add_flag("--quiet", options->quiet, "No progress");
    command->callback([options, status] {
        Export(*options);
        *status = kSame;
    });
}

}  // namespace lab
