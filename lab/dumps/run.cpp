// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/dumps/run.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "lab/dumps/readers.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, kFileKindCount> kNames = {
    "hogmd_golden.txt", "hogmd_dist.txt", "_HOGCur.txt", "_HOGRef.txt",  "_Full.json", "_Full.csv",
    "_HOGDist.txt",     "_HOGDist.json",  "_ObjOut.txt", "HOGCount.txt", ".yuv"};

// The frame of NNNN_HOGCur.txt, counted from 0.
struct FrameName {
    FileKind kind;
    int64_t frame;
};
std::optional<FrameName> ParseFrameName(std::string_view name) {
    const std::size_t digits = name.find_first_not_of("0123456789");
    if (digits == std::string_view::npos || digits < 4 || digits > 10) return std::nullopt;
    int64_t number = 0;
    std::from_chars(name.data(), name.data() + digits, number);
    for (int kind = kHogCurFile; kind <= kObjectFile; ++kind) {
        if (name.substr(digits) != kNames[static_cast<std::size_t>(kind)]) continue;
        // 00017_ is no name that MD gives, and 0000_ no frame.
        if (number < 1 || (digits > 4 && name[0] == '0')) return std::nullopt;
        return FrameName{static_cast<FileKind>(kind), number - 1};
    }
    return std::nullopt;
}

std::optional<FileKind> KindOfName(const std::string& name) {
    for (const FileKind kind : {kGoldenFile, kDistFile, kCountFile}) {
        if (name == KindName(kind)) return kind;
    }
    if (const auto frame = ParseFrameName(name)) return frame->kind;
    if (name.ends_with(".yuv")) return kVideoFile;
    return std::nullopt;
}

// The kind shows in the text before the first block; where two kinds begin alike, in what follows.
std::optional<FileKind> KindOfText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string head(512, '\0');
    in.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
    const auto holds = [&head](const char* text) { return head.find(text) != std::string::npos; };
    if (head.starts_with("****")) return holds("hogDistAvail") ? kDistFile : kGoldenFile;
    if (head.starts_with("Cur Frame Features")) return kHogCurFile;
    if (head.starts_with("Block Y ID")) return kFullCsvFile;
    if (head.starts_with("Output BlkHogDist")) return kHogDistTextFile;
    if (holds("\"bMotionDetected\"")) return kObjectFile;
    if (holds("\"MOG\"")) return kFullJsonFile;
    if (holds("\"BlkW\"")) return kHogDistJsonFile;
    if (holds("_HOG,th:")) return kCountFile;
    return std::nullopt;
}

bool AnyDump(const Run& run) {
    for (int kind = 0; kind < kFileKindCount; ++kind) {
        const auto k = static_cast<std::size_t>(kind);
        if (run.has[k] || !run.frames[k].empty()) return true;
    }
    return false;
}

void ListDumps(const fs::path& folder, Run* run) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (const auto frame = ParseFrameName(name)) {
            run->frames[frame->kind].insert(frame->frame);
        } else if (const auto kind = KindOfName(name); kind && *kind != kVideoFile) {
            run->has[*kind] = true;
        }
    }
    if (AnyDump(*run)) run->feature = folder.string();
}

void ListVideos(const fs::path& folder, Run* run) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".yuv") && SizeInName(name)) run->videos.push_back(name);
    }
    std::sort(run->videos.begin(), run->videos.end());
    if (!run->videos.empty()) run->output = folder.string();
}

}  // namespace

const char* KindName(FileKind kind) {
    return kNames[static_cast<std::size_t>(kind)];
}

std::optional<FileKind> KindOf(const std::string& path) {
    const std::string name = fs::path(path).filename().string();
    if (const auto kind = KindOfName(name)) return kind;
    for (int kind = kHogCurFile; kind <= kObjectFile; ++kind) {
        if (name.ends_with(kNames[static_cast<std::size_t>(kind)])) {
            return static_cast<FileKind>(kind);
        }
    }
    return KindOfText(path);
}

std::string Run::PathOf(FileKind kind, int64_t frame) const {
    if (!single.empty()) return single;
    if (!IsFrameFile(kind)) return (fs::path(feature) / KindName(kind)).string();
    char number[24];
    std::snprintf(number, sizeof number, "%04lld", static_cast<long long>(frame) + 1);
    return (fs::path(feature) / (std::string(number) + KindName(kind))).string();
}

Run OpenRun(const std::string& path) {
    Run run;
    run.path = path;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) throw Error(path + ": cannot be read: No such file or directory");
    if (!fs::is_directory(status)) {
        // Its beginning is read, for which a pipe would wait.
        if (!fs::is_regular_file(status)) throw Error(path + ": is no regular file");
        const auto kind = KindOf(path);
        if (!kind) throw Error(path + ": is none of the files that MD leaves in HOG_feature");
        run.single = path;
        run.single_kind = *kind;
        if (const auto name = ParseFrameName(fs::path(path).filename().string())) {
            run.frames[*kind].insert(name->frame);
        } else if (IsFrameFile(*kind)) {
            run.frames[*kind].insert(0);
        } else {
            run.has[*kind] = true;
        }
        return run;
    }
    try {
        const fs::path inner = fs::path(path) / "HOG_feature";
        ListDumps(fs::is_directory(inner) ? inner : fs::path(path), &run);
        const fs::path normal = fs::weakly_canonical(path);
        ListVideos(normal.filename() == "HOG_feature" ? normal.parent_path() : fs::path(path),
                   &run);
    } catch (const fs::filesystem_error& failure) {
        throw Error(path + ": cannot be read: " + failure.code().message());
    }
    if (run.feature.empty() && run.videos.empty()) {
        throw Error(path + ": holds none of the files that MD leaves");
    }
    return run;
}

std::optional<VideoSize> SizeInName(const std::string& name) {
    // The last word of the form 320x180 between underscores or dots.
    std::optional<VideoSize> found;
    for (std::size_t at = name.find('_'); at != std::string::npos; at = name.find('_', at + 1)) {
        int width = 0, height = 0, end = 0;
        if (std::sscanf(name.c_str() + at, "_%5dx%5d%n", &width, &height, &end) != 2) continue;
        const char after = name[at + static_cast<std::size_t>(end)];
        if (width > 0 && height > 0 && (after == '_' || after == '.')) found = {width, height};
    }
    return found;
}

std::optional<int> StrideOf(VideoSize size, int columns, int rows) {
    constexpr int kBlockSize = 16;
    for (int stride = 8; stride <= 64; stride += 8) {
        const bool fits = (size.width - kBlockSize) / stride + 1 == columns &&
                          (size.height - kBlockSize) / stride + 1 == rows;
        if (fits) return stride;
    }
    return std::nullopt;
}

std::optional<VideoSize> WorkingSize(const Run& run) {
    // Of the working size are these; comp is three frames wide, PreInput may be of any size.
    for (const char* begin : {"ScaledInput_", "hogDist_", "motionArea_", "comp_"}) {
        for (const std::string& name : run.videos) {
            if (!name.starts_with(begin)) continue;
            VideoSize size = *SizeInName(name);
            if (begin[0] == 'c') size.width /= 3;
            return size;
        }
    }
    return std::nullopt;
}

std::optional<FrameRange> FramesOf(const Run& run) {
    std::optional<FrameRange> range;
    const auto add = [&range](int64_t first, int64_t last) {
        if (!range) range = {first, last};
        range->first = std::min(range->first, first);
        range->last = std::max(range->last, last);
    };
    for (const FileKind kind : {kGoldenFile, kDistFile}) {
        if (!run.has[static_cast<std::size_t>(kind)]) continue;
        if (const auto in_file = RunningRange(run.PathOf(kind))) add(in_file->first, in_file->last);
    }
    for (const auto& frames : run.frames) {
        if (!frames.empty()) add(*frames.begin(), *frames.rbegin());
    }
    return range;
}

namespace {

// Adds the fields of `part` that `whole` lacks.
void Merge(Frame&& part, const std::string& path, Frame* whole) {
    if (part.columns > 0) {
        const bool unlike =
            whole->columns > 0 && (whole->columns != part.columns || whole->rows != part.rows);
        if (unlike) {
            throw Error(path + ": holds " + std::to_string(part.columns) + " x " +
                        std::to_string(part.rows) + " blocks, other files of the frame " +
                        std::to_string(whole->columns) + " x " + std::to_string(whole->rows));
        }
        whole->columns = part.columns;
        whole->rows = part.rows;
    }
    for (std::size_t field = 0; field < part.values.size(); ++field) {
        if (whole->values[field].empty()) whole->values[field] = std::move(part.values[field]);
    }
    if (!whole->report) whole->report = std::move(part.report);
}

}  // namespace

std::optional<Frame> LoadFrame(const Run& run, int64_t frame) {
    Frame whole;
    whole.index = frame;
    bool any = false;
    for (int k = 0; k <= kObjectFile; ++k) {
        const auto kind = static_cast<FileKind>(k);
        const std::string path = run.PathOf(kind, frame);
        Frame part;
        if (IsRunning(kind)) {
            if (!run.has[static_cast<std::size_t>(kind)]) continue;
            const int64_t offset = FindFrame(path, frame);
            if (offset < 0) continue;
            RunningFile(path, kind, offset).Next(&part);
        } else {
            if (!run.frames[static_cast<std::size_t>(kind)].contains(frame)) continue;
            ReadFrameFile(kind, path, &part);
        }
        Merge(std::move(part), path, &whole);
        any = true;
    }
    if (!any) return std::nullopt;
    return whole;
}

}  // namespace lab
