// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Speed of MD's block work on each path, and of programs beside it.
#include <algorithm>

#include "bench/numbers/bench.h"
#include "md/decision/row_kernels.h"

namespace bench {

namespace {

constexpr Size kSizes[] = {kSmall, kMiddle, kLarge};

// Slow ones run over a share of the frames, those with a long start over more.
struct Path {
    std::string name;
    double share;
};

std::vector<Path> Paths() {
    std::vector<Path> paths;
    for (const RowKernels& kernels : OfferedKernels()) {
        const std::string name = kernels.szName;
        paths.push_back({name, name == "scalar" ? 0.15 : 1});
    }
    return paths;
}

// Each as a command over so many frames of a clip.
struct Peer {
    std::string name;
    std::string title;
    Command (*command)(const Bench& bench, const Size& size, int32_t frames);
    double share;
};

template <const char* kWhat>
Command OpenCv(const Bench& bench, const Size& size, int32_t frames) {
    return {{OPENCV_PEERS_PROGRAM, kWhat, std::to_string(size.width), std::to_string(size.height),
             std::to_string(frames), bench.work + "/" + size.Raw()}};
}

Command Decode(const Bench& bench, const Size& size, int32_t frames) {
    return {{"ffmpeg", "-v", "error", "-threads", "1", "-i",
             bench.work + "/clip_" + size.Name() + ".mp4", "-frames:v", std::to_string(frames),
             "-f", "null", "-"}};
}

constexpr char kAbsdiff[] = "absdiff", kSpots[] = "spots", kMog2[] = "mog2", kHog[] = "hog";

std::vector<Peer> Peers() {
    std::vector<Peer> peers = {{"decode", "ffmpeg, decoding H.264", Decode, 1}};
    if (std::string(OPENCV_PEERS_PROGRAM).empty()) return peers;
    peers.push_back({"spots", "OpenCV absdiff, box of spots", OpenCv<kSpots>, 3});
    peers.push_back({"absdiff", "the same, box of pixels", OpenCv<kAbsdiff>, 4});
    peers.push_back({"mog2", "OpenCV MOG2", OpenCv<kMog2>, 0.25});
    peers.push_back({"hog", "OpenCV HOGDescriptor", OpenCv<kHog>, 0.1});
    return peers;
}

std::string Id(const std::string& name, const Size& size, int padding = -1) {
    return name + " " + size.Name() + (padding < 0 ? "" : " " + std::to_string(padding));
}

// `command` over some frames without its start: a run over one frame is subtracted.
template <typename MakeCommand>
Subject PerFrame(const std::string& id, double about, const MakeCommand& make) {
    const int32_t frames = std::max(static_cast<int32_t>(about), 5);
    return {id, make(frames), static_cast<double>(frames - 1), make(1)};
}

void AddSubjects(const Bench& bench, const Size& size, Section* section) {
    const double all = bench.quick ? size.frames / 6 : size.frames;
    for (const Peer& peer : Peers()) {
        section->subjects.push_back(PerFrame(Id(peer.name, size), all * peer.share, [&](int32_t n) {
            return peer.command(bench, size, n);
        }));
    }
    for (int padding = 0; padding < 3; ++padding) {
        const std::vector<std::string> settings = {"MD_Padding_Method=" + std::to_string(padding)};
        for (const Path& path : Paths()) {
            section->subjects.push_back(
                PerFrame(Id(path.name, size, padding), all * path.share,
                         [&](int32_t n) { return Md(bench, size, n, settings, path.name); }));
        }
        section->subjects.push_back(
            PerFrame(Id("plain", size, padding), all * 0.025, [&](int32_t n) {
                Command command = Md(bench, size, n, settings, "plain");
                command.words[0] = bench.md_o2;
                return command;
            }));
    }
}

std::string Row(const Size& size, int padding) {
    return size.Name() + ", padding " + std::to_string(padding);
}

// Nanoseconds a block.
Figure PerBlock(const std::string& row, const std::string& column, const std::string& id,
                const Size& size) {
    return {row, column, [=](const Round& round) { return round.Time(id) * 1e9 / size.Blocks(); },
            1};
}

void AddPaths(const Size& size, int padding, Table* times, Table* ratios) {
    const std::string row = Row(size, padding);
    const auto id = [&](const std::string& name) { return Id(name, size, padding); };
    const std::vector<Path> paths = Paths();
    for (const Path& path : paths) {
        times->figures.push_back(PerBlock(row, path.name, id(path.name), size));
    }
    times->figures.push_back(PerBlock(row, "plain, -O2", id("plain"), size));
    const std::string fastest = paths.front().name;
    ratios->figures.push_back(
        {row, "plain -O2 / fastest", Ratio(id("plain"), id(fastest)), 1, AtLeast(40)});
    ratios->figures.push_back(
        {row, "plain -O2 / scalar", Ratio(id("plain"), id("scalar")), 1, AtLeast(4)});
    const auto offered = [&](const std::string& name) {
        return std::any_of(paths.begin(), paths.end(), [&](auto& p) { return p.name == name; });
    };
    if (offered("avx2") && offered("ssse3")) {
        ratios->figures.push_back(
            {row, "SSSE3 / AVX2", Ratio(id("ssse3"), id("avx2")), 2, AtMost(1.7)});
    }
}

// MD's goals against others: a small frame has none.
Goal GoalAgainst(const std::string& peer, const Size& size) {
    if (size.width == kSmall.width) return {};
    if (peer == "decode") return AtLeast(3, "from 640x360");
    if (peer != "spots") return {};
    return size.width == kMiddle.width ? AtLeast(1.25, "at 640x360") : AtLeast(1, "at 1920x1080");
}

void AddPeers(const Size& size, int padding, Table* others) {
    const std::string fastest = Paths().front().name;
    for (const Peer& peer : Peers()) {
        others->figures.push_back({Row(size, padding), peer.title,
                                   Ratio(Id(peer.name, size), Id(fastest, size, padding)), 2,
                                   GoalAgainst(peer.name, size)});
    }
}

}  // namespace

Section SpeedSection(const Bench& bench) {
    Section section;
    section.text =
        R"(Raw 4:2:0 at working size, the default thresholds, no debug bits, `MD_RefFrmIdx` 3,
normalisation and weighting on, one core. Without the start: a run over one frame is
subtracted from each. First nanoseconds a block for each set of kernels that this processor
offers (`MD_KERNELS`), and for the plain definitions built -O2; then how many times as long
others take for the same frames as MD does with its fastest kernels.)";
    Table times{"ns a block"}, ratios{"ratio of times"}, others{"time / MD's time"};
    for (const Size& size : kSizes) {
        AddSubjects(bench, size, &section);
        for (int padding = 0; padding < 3; ++padding) {
            AddPaths(size, padding, &times, &ratios);
            AddPeers(size, padding, &others);
        }
    }
    section.tables = {times, ratios, others};
    section.after =
        R"(All take a frame at a time on one thread. `ffmpeg -threads 1` decodes the same clip as H.264 encoded
by libx264 with default settings. OpenCV's absdiff is the difference to the frame
three back, over a threshold, and a box: around all spots of at least 16 pixels, or around
every pixel, which noise makes as large as the picture. MOG2 is its background model with a box
around spots. HOGDescriptor makes histograms of the same blocks and decides nothing.)";
    if (std::string(OPENCV_PEERS_PROGRAM).empty()) {
        section.after = "OpenCV was not installed, so nothing is compared with it.";
    }
    return section;
}

}  // namespace bench
