// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/content.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

#include "lab/page/pack.h"
#include "lab/probe/tools.h"
#include "lab/report/run_facts.h"
#include "lab/report/spool.h"

namespace lab {

namespace {

using nlohmann::json;

json RangeJson(const std::optional<IndexRange>& range) {
    return range ? json{range->first, range->last} : json(nullptr);
}

VideoSource SourceOf(const RecordedRun& run) {
    const json& source = run.facts["source"];
    return {.path = run.folder + "/working",
            .offset = source["offset"],
            .frame_bytes = source["frame_bytes"],
            .frames = run.Frames(),
            .width = run.facts["clip"]["width"],
            .height = run.facts["clip"]["height"]};
}

std::string ReadWhole(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// A spool of one record.
int64_t SpoolOne(const std::string& record, const std::string& path) {
    SpoolWriter writer(path);
    writer.Append(record);
    writer.Finish();
    return static_cast<int64_t>(record.size());
}

const char* LabelOf(size_t run, size_t runs) {
    return runs == 1 ? "" : run == 0 ? "A" : "B";
}

}  // namespace

Content::Content(std::vector<RecordedRun> runs, ClipTexts clip, std::optional<IndexRange> detail,
                 int64_t budget, bool quiet, const InterruptGuard& interrupt)
    : runs_(std::move(runs)),
      clip_(std::move(clip)),
      detail_(detail),
      budget_(budget),
      quiet_(quiet),
      interrupt_(interrupt),
      can_encode_(!ToolFolder().empty()) {
    if (runs_.size() == 2) comparison_ = Compare(runs_[0], runs_[1]);
}

const Chunks& Content::Packed(size_t run, const std::string& kind, BlockValues blocks) {
    const RecordedRun& from = runs_[run];
    const std::string name = kind + std::to_string(static_cast<int>(blocks));
    const auto [at, fresh] = packed_.try_emplace(std::to_string(run) + name);
    if (!fresh) return at->second;
    if (kind == "frames") {
        at->second.path = from.folder + "/frames.packed";
        at->second.sizes = {SpoolOne(Deflate(FrameTable(from.rows)), at->second.path)};
    } else if (kind == "luma") {
        at->second = PackLuma(from, interrupt_);
    } else if (kind == "vectors") {
        at->second = PackVectors(from, interrupt_);
    } else if (kind == "cases") {
        at->second = PackCases(from, interrupt_);
    } else {
        const std::vector<bool> kept = KeptFrames(blocks, from.rows, detail_);
        const auto keep = [&](int i) { return bool{kept[static_cast<size_t>(i)]}; };
        at->second = PackBlocks(from, name + ".packed", keep, interrupt_);
    }
    return at->second;
}

const Content::Video& Content::VideoOf(const Shape& shape) {
    const auto [at, fresh] = videos_.try_emplace({shape.crf, shape.half_video});
    if (!fresh) return at->second;
    const VideoSource source = SourceOf(runs_[0]);
    VideoSettings settings{.crf = shape.crf};
    if (shape.half_video) {
        settings.max_width = std::max(SizeOfVideo(source, settings).width / 2, 2);
    }
    const std::string name = runs_[0].folder + "/video" + std::to_string(videos_.size());
    EncodeVideo(source, settings, name + ".mp4", quiet_, interrupt_);
    const std::string mp4 = ReadWhole(name + ".mp4");
    at->second = {name, SpoolOne(mp4, name), SizeOfVideo(source, settings), CodecOf(mp4)};
    return at->second;
}

void Content::AddChunks(const Chunks& chunks, char letter, size_t run, bool only_detail,
                        std::vector<DataBlock>* blocks) const {
    for (size_t k = 0; k < chunks.sizes.size(); ++k) {
        const int first = static_cast<int>(k) * kChunkFrames;
        const bool wanted =
            detail_ && first <= detail_->last && detail_->first < first + kChunkFrames;
        if (only_detail && !wanted) continue;
        const std::string id = "md-" + std::string(1, letter) + std::to_string(run);
        blocks->push_back({id + "-" + std::to_string(k), chunks.path, k, chunks.sizes[k]});
    }
}

void Content::AddRun(size_t run, const Shape& shape, std::vector<DataBlock>* blocks) {
    const Chunks& frames = Packed(run, "frames", BlockValues::kAll);
    blocks->push_back({"md-f" + std::to_string(run), frames.path, 0, frames.sizes[0]});
    const bool no_blocks = shape.blocks == BlockValues::kNone;
    if (!no_blocks || detail_) {
        AddChunks(Packed(run, "blocks", shape.blocks), 'b', run, no_blocks, blocks);
    }
    const bool shared_luma = run > 0 && comparison_->same_luma;
    if (!shared_luma && (shape.luma || detail_)) {
        AddChunks(Packed(run, "luma", BlockValues::kAll), 'l', run, !shape.luma, blocks);
    }
    const bool shared_vectors = run > 0 && comparison_->same_vectors;
    if (!shared_vectors && (shape.vectors || detail_)) {
        AddChunks(Packed(run, "vectors", BlockValues::kAll), 'v', run, !shape.vectors, blocks);
    }
    if (runs_[run].facts["run"]["method"] == 2 && (!no_blocks || detail_)) {
        AddChunks(Packed(run, "cases", BlockValues::kAll), 'r', run, no_blocks, blocks);
    }
}

std::vector<DataBlock> Content::Blocks(const Shape& shape) {
    std::vector<DataBlock> blocks;
    for (size_t run = 0; run < runs_.size(); ++run) AddRun(run, shape, &blocks);
    if (shape.video && can_encode_) {
        const Video& video = VideoOf(shape);
        blocks.push_back({"md-video", video.spool, 0, video.size});
    }
    return blocks;
}

// Frames of the chunks that are there: all, those of the detail range, or none.
std::optional<IndexRange> Content::CoveredFrames(bool all) const {
    const int last = runs_[0].Frames() - 1;
    if (all) return IndexRange{0, last};
    if (!detail_) return std::nullopt;
    const int from = detail_->first / kChunkFrames * kChunkFrames;
    const int to = (detail_->last / kChunkFrames + 1) * kChunkFrames - 1;
    return IndexRange{from, std::min(to, last)};
}

json Content::RunHead(size_t run, const Shape& shape) const {
    const RecordedRun& from = runs_[run];
    const Summary& sum = from.summary;
    json head = from.facts["run"];
    head["label"] = LabelOf(run, runs_.size());
    head["totals"] = {{"motion", sum.motion}, {"reported", sum.reported}, {"held", sum.held}};
    head["events"] = json::array();
    for (const Event& event : sum.events) {
        head["events"].push_back({event.range.first, event.range.last, event.peak});
    }
    head["longest_gap"] = RangeJson(sum.longest_gap);
    head["most_active"] = {sum.most_active_frame, sum.most_active};
    head["outcomes"] = sum.outcomes;
    const bool some = shape.blocks == BlockValues::kMotion || detail_;
    head["has_blocks"] = shape.blocks == BlockValues::kAll ? "all" : some ? "some" : "none";
    const bool same_luma = run > 0 && comparison_->same_luma;
    const bool same_vectors = run > 0 && comparison_->same_vectors;
    const auto Of = [&](bool there, bool shared) {
        return there ? json(shared ? 0 : run) : json(nullptr);
    };
    head["luma_of"] = Of(shape.luma || detail_, same_luma);
    head["vectors_of"] = Of(shape.vectors || detail_, same_vectors);
    head["luma_frames"] = RangeJson(CoveredFrames(shape.luma));
    head["vector_frames"] = RangeJson(CoveredFrames(shape.vectors));
    return head;
}

json Content::ClipHead() const {
    const json& clip = runs_[0].facts["clip"];
    return {{"name", clip["name"]},
            {"frames", runs_[0].Frames()},
            {"first", clip["first"]},
            {"fps", clip_.fps > 0 ? json(clip_.fps) : json(nullptr)},
            {"variable_rate", clip_.variable_rate},
            {"width", clip["width"]},
            {"height", clip["height"]},
            {"input_width", clip["input_width"]},
            {"input_height", clip["input_height"]},
            {"ended_early", clip_.ended_early}};
}

json Content::VideoHead(const Shape& shape) {
    if (!shape.video || !can_encode_) return nullptr;
    const Video& video = VideoOf(shape);
    return {{"fps", 25},
            {"width", video.dimensions.width},
            {"height", video.dimensions.height},
            {"shown_width", video.dimensions.shown_width},
            {"shown_height", video.dimensions.shown_height},
            {"codec", video.codec}};
}

std::vector<LeftOut> Content::LeftOutParts(const Shape& shape) const {
    std::vector<LeftOut> left = LeftOutOf(shape);
    if (shape.video && !can_encode_) {
        left.push_back(
            {"Picture", "Blocks are shown without the picture.",
             "There is no ffmpeg on this machine: install it and run mdlab report again."});
    }
    return left;
}

HeaderInput Content::Header(const Shape& shape) const {
    return {clip_, runs_, comparison_, !LeftOutParts(shape).empty()};
}

PageTexts Content::Texts(const Shape& shape) {
    const HeaderInput header = Header(shape);
    const std::string verdict = Verdict(header);
    json head = {{"format", 1},
                 {"writer", "mdlab " MD_VERSION},
                 {"title", clip_.title},
                 {"verdict", verdict},
                 {"chunk_frames", kChunkFrames},
                 {"budget", budget_},
                 {"clip", ClipHead()},
                 {"video", VideoHead(shape)},
                 {"keys", KeyTexts()},
                 {"detail", RangeJson(detail_)},
                 {"opening", runs_[0].summary.Opening()}};
    for (size_t run = 0; run < runs_.size(); ++run) head["runs"].push_back(RunHead(run, shape));
    head["left_out"] = json::array();
    for (const LeftOut& part : LeftOutParts(shape)) {
        head["left_out"].push_back(
            {{"part", part.part}, {"effect", part.effect}, {"how", part.how}});
    }
    if (comparison_) {
        head["comparison"] = {
            {"frames", comparison_->frames}, {"keys", comparison_->keys}, {"first", nullptr}};
        if (comparison_->first) {
            const FirstDifference& first = *comparison_->first;
            head["comparison"]["first"] = {
                {"frame", first.frame}, {"block", first.block}, {"stage", first.stage}};
        }
    }
    return {EscapeHtml(verdict), HeaderCells(header), JsonForPage(head)};
}

}  // namespace lab
