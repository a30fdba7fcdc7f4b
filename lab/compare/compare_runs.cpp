// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/compare_runs.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>

#include "lab/compare/bytes.h"
#include "lab/compare/file_lists.h"
#include "lab/compare/frame_delta.h"
#include "lab/compare/hints.h"
#include "lab/compare/running_pair.h"
#include "lab/compare/videos.h"
#include "lab/dumps/readers.h"
#include "lab/tool/error.h"
#include "lab/tool/terminal.h"

namespace lab {

namespace {

Sources Bit(FileKind kind) {
    return static_cast<Sources>(1 << kind);
}

std::string GridText(int columns, int rows) {
    return std::to_string(columns) + " x " + std::to_string(rows);
}

class Walk {
  public:
    Walk(const CompareOptions& options, const BlockSink& sink)
        : options_(options),
          sink_(sink),
          golden_(OpenRun(options.golden)),
          other_(OpenRun(options.other)) {
        result_.golden = options.golden;
        result_.other = options.other;
    }

    Comparison Run();

  private:
    // A pair of running files and the frame at which it waits.
    struct Stream {
        FileKind kind{};
        std::unique_ptr<RunningPair> pair;
        FrameRange common{};  // frames that both may hold
        int64_t frame = INT64_MAX;
    };

    void OpenStreams();
    void Advance(Stream* stream);
    void WalkFrames();
    void CompareFrame(int64_t frame, Sources kinds);
    void AddFrameFiles(FileKind kind, int64_t frame);
    void AddParts(FileKind kind, const Frame& golden, const Frame& other);
    void Record(const std::vector<Difference>& differences);
    void RecordBlocks(const std::vector<Difference>& differences);
    void RecordThere(const std::vector<Difference>& differences);
    void Trouble(const std::string& label, const std::string& text);
    void Unreadable(const Error& error);
    void DescribeGrid();
    void DescribeGrids();
    void DescribeTextOnly();
    void CompareCountLogs();
    void CompareAllVideos();
    void RequireWanted();

    const CompareOptions& options_;
    const BlockSink& sink_;
    ::lab::Run golden_, other_;
    Comparison result_;
    FileLists lists_;
    std::vector<Stream> streams_;
    ByteCompare compare_;
    FrameDelta delta_;
    Frame golden_part_, other_part_;
    ValueHints value_hints_;
    std::vector<int64_t> lead_frames_;  // the first frames in which the leading field differs
    struct Unlike {
        int64_t frame, count;
        FileKind kind;
        int columns[2], rows[2];
    };
    std::optional<Unlike> unlike_;
    int64_t text_only_ = 0;  // frames whose bytes differ and whose values do not
    int64_t hidden_trouble_ = 0;
};

void Walk::Trouble(const std::string& label, const std::string& text) {
    constexpr std::size_t kMost = 10;
    if (result_.trouble.size() >= kMost) {
        ++hidden_trouble_;
        return;
    }
    result_.trouble.emplace_back(label, text);
}

void Walk::Unreadable(const Error& error) {
    const auto* text = dynamic_cast<const TextError*>(&error);
    Trouble(text != nullptr && text->AtEnd() ? "cut off" : "unreadable", error.what());
}

void Walk::OpenStreams() {
    for (const FileKind kind : {kGoldenFile, kDistFile}) {
        if ((lists_.kinds & Bit(kind)) == 0) continue;
        Stream stream;
        stream.kind = kind;
        const std::string a = golden_.PathOf(kind), b = other_.PathOf(kind);
        try {
            const auto in_a = RunningRange(a), in_b = RunningRange(b);
            if (in_a && in_b) {
                stream.common = {std::max(in_a->first, in_b->first),
                                 std::min(in_a->last, in_b->last)};
            }
            stream.pair = std::make_unique<RunningPair>(a, b, kind);
        } catch (const Error& error) {
            Unreadable(error);
            continue;
        }
        Advance(&stream);
        streams_.push_back(std::move(stream));
    }
}

// To the next frame of the range that differs.
void Walk::Advance(Stream* stream) {
    stream->frame = INT64_MAX;
    try {
        for (;;) {
            const RunningPair::Step step = stream->pair->Next();
            if (step == RunningPair::Step::kEnd) return;
            const bool other = step == RunningPair::Step::kOnlyOther;
            const int64_t frame =
                other ? stream->pair->Other().index : stream->pair->Golden().index;
            if (frame > options_.last_frame) return;
            if (frame < options_.first_frame) continue;
            if (step == RunningPair::Step::kBoth) {
                stream->frame = frame;
                return;
            }
            (other ? lists_.other_only : lists_.golden_only)[frame] |= Bit(stream->kind);
        }
    } catch (const Error& error) {
        Unreadable(error);
    }
}

void Walk::WalkFrames() {
    Progress progress("frames", static_cast<int64_t>(lists_.both.size()), options_.quiet);
    int64_t done = 0;
    for (auto files = lists_.both.begin();;) {
        int64_t frame = files == lists_.both.end() ? INT64_MAX : files->first;
        for (const Stream& stream : streams_) frame = std::min(frame, stream.frame);
        if (frame == INT64_MAX) return;
        const bool listed = files != lists_.both.end() && files->first == frame;
        CompareFrame(frame, listed ? files->second : Sources{0});
        if (listed) ++files;
        for (Stream& stream : streams_) {
            if (stream.frame == frame) Advance(&stream);
        }
        progress.Show(++done);
    }
}

void Walk::CompareFrame(int64_t frame, Sources kinds) {
    delta_.Start(frame);
    for (Stream& stream : streams_) {
        if (stream.frame == frame) {
            AddParts(stream.kind, stream.pair->Golden(), stream.pair->Other());
        } else if (frame >= stream.common.first && frame <= stream.common.last) {
            delta_.AddEqual(stream.kind);
        }
    }
    for (int k = kHogCurFile; k <= kObjectFile; ++k) {
        const auto kind = static_cast<FileKind>(k);
        if ((kinds & Bit(kind)) != 0) AddFrameFiles(kind, frame);
    }
    for (int s = 0; s < kStageCount; ++s) {
        if (delta_.Shows(static_cast<Stage>(s))) result_.shown[static_cast<std::size_t>(s)] = true;
    }
    if (!delta_.BytesDiffer()) return;
    const std::vector<Difference> differences = delta_.Differences(options_.stages);
    if (!differences.empty()) {
        Record(differences);
    } else if (!delta_.Unlike() && delta_.Differences(kAllStages).empty()) {
        ++text_only_;
    }
}

void Walk::AddFrameFiles(FileKind kind, int64_t frame) {
    const std::string a = golden_.PathOf(kind, frame), b = other_.PathOf(kind, frame);
    try {
        if (compare_.Equal(RawFile(a), RawFile(b))) {
            delta_.AddEqual(kind);
            return;
        }
        golden_part_ = {};
        other_part_ = {};
        golden_part_.index = other_part_.index = frame;
        ReadFrameFile(kind, a, &golden_part_);
        ReadFrameFile(kind, b, &other_part_);
    } catch (const Error& error) {
        Unreadable(error);
        return;
    }
    AddParts(kind, golden_part_, other_part_);
}

void Walk::AddParts(FileKind kind, const Frame& golden, const Frame& other) {
    if (delta_.Add(kind, golden, other)) return;
    if (!unlike_) {
        unlike_ = {delta_.FrameIndex(),
                   0,
                   kind,
                   {golden.columns, other.columns},
                   {golden.rows, other.rows}};
    }
    ++unlike_->count;
}

void Walk::Record(const std::vector<Difference>& differences) {
    if (result_.first.empty()) {
        RecordThere(differences);
        value_hints_.Start(differences.front());
    }
    const Difference lead = result_.first.empty() ? differences.front() : result_.first.front();
    std::set<std::pair<int, int>> blocks;
    bool leads = false;
    for (const Difference& difference : differences) {
        // The first difference of a block is shown for all of its differences.
        const bool wanted = static_cast<int>(result_.first.size()) <= options_.limit;
        if (wanted && blocks.insert({difference.x, difference.y}).second) {
            result_.first.push_back(difference);
        }
        auto& first = result_.first_of[difference.stage];
        if (!first) first = difference;
        if (difference.stage == lead.stage && difference.field == lead.field) {
            value_hints_.Add(difference);
            leads = true;
        }
    }
    constexpr std::size_t kFramesForHints = 6;
    if (leads && lead_frames_.size() < kFramesForHints) {
        lead_frames_.push_back(delta_.FrameIndex());
    }
    RecordBlocks(differences);
}

// Differences come stage by stage, so the first of a block is its earliest stage.
void Walk::RecordBlocks(const std::vector<Difference>& differences) {
    FrameCount count;
    count.frame = delta_.FrameIndex();
    std::map<std::pair<int, int>, Stage> earliest;  // by row, then column
    const Difference* before = nullptr;
    for (const Difference& difference : differences) {
        const bool same_block = before != nullptr && before->stage == difference.stage &&
                                before->x == difference.x && before->y == difference.y;
        before = &difference;
        if (same_block) continue;
        ++result_.blocks[difference.stage];
        if (difference.stage == kStageBox) {
            count.box = true;
        } else {
            earliest.try_emplace({difference.y, difference.x}, difference.stage);
        }
    }
    count.blocks = static_cast<int>(earliest.size());
    result_.frame_counts.push_back(count);
    if (!sink_) return;
    for (const auto& [place, stage] : earliest) {
        sink_(count.frame, place.second, place.first, stage);
    }
}

void Walk::RecordThere(const std::vector<Difference>& differences) {
    const Difference& lead = differences.front();
    for (int s = 0; s < kStageCount; ++s) {
        const auto stage = static_cast<Stage>(s);
        StageThere& there = result_.there[static_cast<std::size_t>(s)];
        there.known = delta_.Shows(stage);
        for (const Difference& difference : differences) {
            const bool here = difference.x == lead.x && difference.y == lead.y;
            if (difference.stage == stage && here) there.different.push_back(difference);
        }
    }
}

// The grid is that of a frame of the golden run, the stride comes from the videos' names.
void Walk::DescribeGrid() {
    FileKind kind{};
    try {
        Frame frame;
        for (int k = 0; k < kObjectFile && frame.columns == 0; ++k) {
            kind = static_cast<FileKind>(k);
            const auto& frames = golden_.frames[static_cast<std::size_t>(k)];
            if (golden_.has[static_cast<std::size_t>(k)]) {
                RunningFile(golden_.PathOf(kind), kind).Next(&frame);
            } else if (!frames.empty()) {
                ReadFrameFile(kind, golden_.PathOf(kind, *frames.begin()), &frame);
            }
        }
        result_.columns = frame.columns;
        result_.rows = frame.rows;
    } catch (const Error& error) {
        // Two empty files are equal, but no comparison.
        if ((lists_.kinds & Bit(kind)) != 0 && result_.trouble.empty()) Unreadable(error);
    }
    std::optional<int> stride;
    for (const ::lab::Run* run : {&golden_, &other_}) {
        const auto size = WorkingSize(*run);
        if (size && !stride) stride = StrideOf(*size, result_.columns, result_.rows);
    }
    result_.stride_known = options_.stride > 0 || stride.has_value();
    result_.stride = options_.stride > 0 ? options_.stride : stride.value_or(8);
    if (const auto range = FramesOf(golden_)) {
        const int64_t first = std::max(range->first, options_.first_frame);
        const int64_t last = std::min(range->last, options_.last_frame);
        result_.frames = std::max<int64_t>(0, last - first + 1);
    }
}

void Walk::DescribeGrids() {
    if (!unlike_) return;
    const Unlike& u = *unlike_;
    std::string text = "frame " + std::to_string(u.frame) + ": golden " +
                       GridText(u.columns[0], u.rows[0]) + " blocks, other " +
                       GridText(u.columns[1], u.rows[1]) + "   in " +
                       NameSources(Bit(u.kind), u.frame);
    if (u.count > 1) text += " and " + std::to_string(u.count - 1) + " more";
    result_.findings.emplace_back("grids", text);
    const bool swapped =
        u.columns[0] == u.rows[1] && u.rows[0] == u.columns[1] && u.columns[0] != u.columns[1];
    if (swapped) result_.hints.emplace_back("x and y of the blocks swapped");
}

void Walk::DescribeTextOnly() {
    if (text_only_ == 0) return;
    result_.notes.emplace_back("text", Counted(text_only_, "frame") +
                                           " in another writing (line ends, blanks, digits); the "
                                           "values are equal");
}

void Walk::CompareCountLogs() {
    if ((lists_.kinds & Bit(kCountFile)) == 0) return;
    try {
        const CountLog a = ReadCountLog(golden_.PathOf(kCountFile));
        const CountLog b = ReadCountLog(other_.PathOf(kCountFile));
        if (a.threshold != b.threshold) {
            result_.findings.emplace_back(
                "settings", "MD_HogDist_Th: golden " + std::to_string(a.threshold) + "   other " +
                                std::to_string(b.threshold) + "   in HOGCount.txt");
        }
        // Runs of one clip on two machines name it by two paths.
        if (a.input != b.input) {
            result_.notes.emplace_back(
                "input", "golden " + a.input + "   other " + b.input + "   in HOGCount.txt");
        }
    } catch (const Error& error) {
        Unreadable(error);
    }
}

void Walk::CompareAllVideos() {
    namespace fs = std::filesystem;
    if (!options_.all_stages) return;
    const auto compare = [this](const std::string& a, const std::string& b) {
        try {
            const auto difference = CompareVideos(a, b, options_.video_size);
            if (!difference) return;
            result_.videos.push_back(*difference);
            const auto cut = [this](const std::string& path, int64_t frames) {
                Trouble("cut off",
                        path + ": ends within frame " + std::to_string(frames) + " of the file");
            };
            if (difference->golden_cut) cut(a, difference->golden_frames);
            if (difference->other_cut) cut(b, difference->other_frames);
        } catch (const Error& error) {
            Unreadable(error);
        }
    };
    for (const std::string& name : golden_.videos) {
        const auto& others = other_.videos;
        if (std::find(others.begin(), others.end(), name) == others.end()) continue;
        compare((fs::path(golden_.output) / name).string(),
                (fs::path(other_.output) / name).string());
    }
    if (!golden_.single.empty() && golden_.single_kind == kVideoFile) {
        compare(golden_.single, other_.single);
    }
}

// A stage or frames asked for that no file shows must not pass for equal. Unlike grids differ
// anyway.
void Walk::RequireWanted() {
    const auto there = FramesOf(golden_);
    if (there && result_.frames == 0 && !result_.Differs()) {
        Trouble("not shown", "no frame of --frames: there are " + std::to_string(there->first) +
                                 " to " + std::to_string(there->last));
    }
    if (options_.all_stages || unlike_) return;
    for (int s = 0; s < kStageCount; ++s) {
        const auto stage = static_cast<std::size_t>(s);
        if (!options_.stages[stage] || result_.shown[stage]) continue;
        Trouble("not shown", std::string("stage ") + StageName(static_cast<Stage>(s)) +
                                 ": no file of both runs shows it");
    }
}

Comparison Walk::Run() {
    lists_ = ListFiles(options_, &golden_, &other_, &result_);
    OpenStreams();
    WalkFrames();
    for (const Stream& stream : streams_) {
        // Where they are equal throughout, no frame came up.
        if (unlike_ || stream.common.last < stream.common.first) continue;
        for (const Field field : FieldsOf(stream.kind)) result_.shown[Info(field).stage] = true;
    }
    DescribeMissing(lists_, &result_);
    DescribeGrid();
    DescribeGrids();
    CompareCountLogs();
    CompareAllVideos();
    DescribeTextOnly();
    RequireWanted();
    if (hidden_trouble_ > 0) {
        result_.trouble.emplace_back("unreadable",
                                     "and " + std::to_string(hidden_trouble_) + " more files");
    }
    if (!result_.first.empty()) {
        const auto values = value_hints_.Hints();
        result_.hints.insert(result_.hints.end(), values.begin(), values.end());
        const auto frames = FrameHints(golden_, other_, result_.first.front(), lead_frames_);
        result_.hints.insert(result_.hints.end(), frames.begin(), frames.end());
    }
    return std::move(result_);
}

}  // namespace

Comparison CompareRuns(const CompareOptions& options, const BlockSink& sink) {
    return Walk(options, sink).Run();
}

}  // namespace lab
