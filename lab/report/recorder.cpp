// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/recorder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "lab/page/pack.h"
#include "lab/tool/error.h"
#include "md/object/projection_box.h"
#include "md/run_state.h"

namespace lab {

namespace {

uint64_t HashOf(const uint8_t* bytes, size_t count, uint64_t hash) {
    constexpr uint64_t kPrime = 0x100000001B3;
    uint64_t word = 0;
    for (; count >= sizeof word; bytes += sizeof word, count -= sizeof word) {
        std::memcpy(&word, bytes, sizeof word);
        hash = (hash ^ word) * kPrime;
        hash ^= hash >> 32;
    }
    for (; count > 0; ++bytes, --count) hash = (hash ^ *bytes) * kPrime;
    return hash;
}

void SetBox(const MdObject& object, bool valid, int32_t (&box)[4]) {
    std::fill(std::begin(box), std::end(box), -1);
    if (!valid) return;
    box[0] = object.left;
    box[1] = object.right;
    box[2] = object.top;
    box[3] = object.bottom;
}

// The most frequent outcome among blocks with distance 0 and state 0.
uint8_t OrdinaryOutcome(const ReplayedFrame& frame) {
    int counts[kOutcomeCount] = {};
    for (size_t i = 0; i < frame.distance.size(); ++i) {
        if (frame.distance[i] == 0 && frame.state[i] == 0) ++counts[frame.outcome[i]];
    }
    return static_cast<uint8_t>(std::max_element(std::begin(counts), std::end(counts)) -
                                std::begin(counts));
}

}  // namespace

std::string EncodeBlocks(const ReplayedFrame& frame) {
    const uint8_t ordinary = OrdinaryOutcome(frame);
    std::string out(1, static_cast<char>(ordinary));
    int32_t last = 0;
    for (const int32_t threshold : frame.thresholds) {
        PutZigzag(threshold - last, &out);
        last = threshold;
    }
    const size_t count = frame.distance.size();
    const auto IsOrdinary = [&](size_t i) {
        return frame.distance[i] == 0 && frame.state[i] == 0 && frame.outcome[i] == ordinary;
    };
    for (size_t i = 0; i < count;) {
        size_t live = i;
        while (live < count && IsOrdinary(live)) ++live;
        size_t end = live;
        while (end < count && !IsOrdinary(end)) ++end;
        PutVarint(static_cast<uint32_t>(live - i), &out);
        PutVarint(static_cast<uint32_t>(end - live), &out);
        for (size_t k = live; k < end; ++k) {
            out += static_cast<char>(frame.distance[k]);
            out += static_cast<char>(frame.state[k]);
            out += static_cast<char>(frame.outcome[k]);
        }
        i = end;
    }
    return out;
}

int VectorPlanes() {
    return tSimParams.tMd.nMD_HogNormalizeMode == 0 ? kVectorSize : kVectorSize + 1;
}

Recorder::Recorder(const std::string& folder)
    : blocks_(tMdResult.nBlkW * tMdResult.nBlkH),
      frames_(std::fopen((folder + "/frames").c_str(), "wb")),
      blocks_spool_(folder + "/blocks"),
      luma_(folder + "/luma"),
      vectors_(folder + "/vectors") {
    if (frames_ == nullptr) throw Error(folder + ": cannot be written: " + std::strerror(errno));
    if (tSimParams.tMd.nMD_PostProcMethod == kProjectionBox) {
        cases_ = std::make_unique<SpoolWriter>(folder + "/cases");
    }
}

FrameRow Recorder::Row(const ReplayedFrame& frame) {
    const MdParams& md = tSimParams.tMd;
    const MdResult& res = tMdResult;
    FrameRow row{};
    row.motion = res.bMotionDetected;
    row.reason = md.CurFrmId == 0 ? kReasonFirstFrame : res.tBoxReason.nCode;
    if (md.CurFrmId > 0) std::copy_n(res.tBoxReason.aValue, 4, row.values);
    SetBox(res.tMethodObject, res.tMethodObject.bValid != 0, row.before);
    SetBox(res.tObjects[0], res.nObjNum > 0, row.after);
    row.luma = frame.end_threshold;
    row.gate = res.tGateReason.nCode;
    std::copy_n(res.tGateReason.aValue, 2, row.gate_values);
    for (int i = 0; i < blocks_; ++i) {
        const int distance = res.pDistMap[i];
        const bool active = res.pAvailMap[i] != 0;
        row.active += active ? 1 : 0;
        row.counted += active && distance > md.nMD_HogDist_Th ? 1 : 0;
        row.largest = std::max(row.largest, distance);
        ++row.outcomes[frame.outcome[static_cast<size_t>(i)]];
        ++row.classes[DistanceClass(distance)];
        ++sums_.distances[distance];
        sums_.active[distance] += active ? 1 : 0;
    }
    return row;
}

// Frame f is compared with frame max(f - R, 0).
void Recorder::KeepVectors(const ReplayedFrame& frame) {
    const int frame_index = tSimParams.tMd.CurFrmId;
    const int reference = std::max(frame_index - tSimParams.tMd.nMD_RefFrmIdx, 0);
    Waiting now;
    now.wanted.resize(static_cast<size_t>(blocks_));
    const auto blocks = static_cast<size_t>(blocks_);
    const auto planes = static_cast<size_t>(VectorPlanes());
    now.planes.resize(blocks * planes);
    for (size_t i = 0; i < blocks; ++i) {
        const BlockFeature& feature = tMdResult.pCurFeat[i];
        for (size_t p = 0; p < planes; ++p) {
            now.planes[p * blocks + i] =
                static_cast<char>(p < kVectorSize ? feature.v[p] : feature.histNorm2);
        }
    }
    waiting_.push_back(std::move(now));
    Waiting& compared = waiting_[static_cast<size_t>(reference - first_waiting_)];
    for (size_t i = 0; i < frame.distance.size(); ++i) {
        if (frame.distance[i] == 0) continue;
        waiting_.back().wanted[i] = true;
        compared.wanted[i] = true;
    }
    while (first_waiting_ <= frame_index - tSimParams.tMd.nMD_RefFrmIdx) WriteVectors();
}

void Recorder::WriteVectors() {
    const Waiting& oldest = waiting_.front();
    const size_t blocks = oldest.wanted.size();
    std::string out((blocks + 7) / 8, '\0');
    for (size_t i = 0; i < blocks; ++i) {
        if (oldest.wanted[i]) out[i >> 3] = static_cast<char>(out[i >> 3] | 1 << (i & 7));
    }
    for (size_t p = 0; p < oldest.planes.size(); p += blocks) {
        for (size_t i = 0; i < blocks; ++i) {
            if (oldest.wanted[i]) out += oldest.planes[p + i];
        }
    }
    vectors_.Append(out);
    waiting_.pop_front();
    ++first_waiting_;
}

void Recorder::Frame() {
    const size_t pixels = static_cast<size_t>(nMdWidth) * static_cast<size_t>(nMdHeight);
    sums_.luma_hash = HashOf(tFrameBuffers.pCurYuv, pixels, sums_.luma_hash);
    const ReplayedFrame& frame = replay_.Next();
    const FrameRow row = Row(frame);
    if (std::fwrite(&row, sizeof row, 1, frames_.get()) != 1) {
        throw Error(std::string("temporary folder: ") + std::strerror(errno));
    }
    blocks_spool_.Append(EncodeBlocks(frame));
    std::string luma(static_cast<size_t>(blocks_), '\0');
    for (int i = 0; i < blocks_; ++i) {
        luma[static_cast<size_t>(i)] = static_cast<char>(tMdResult.pCurFeat[i].nAvgY);
    }
    luma_.Append(luma);
    if (cases_ != nullptr) {
        const auto* cases = reinterpret_cast<const char*>(tProjectionState.aBlkCase);
        cases_->Append({cases, static_cast<size_t>(blocks_)});
    }
    KeepVectors(frame);
}

void Recorder::Finish() {
    while (!waiting_.empty()) WriteVectors();
    if (std::fclose(frames_.release()) != 0) {
        throw Error(std::string("temporary folder: ") + std::strerror(errno));
    }
    blocks_spool_.Finish();
    luma_.Finish();
    vectors_.Finish();
    if (cases_ != nullptr) cases_->Finish();
}

std::vector<FrameRow> ReadRows(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    std::vector<FrameRow> rows;
    FrameRow row{};
    while (file != nullptr && std::fread(&row, sizeof row, 1, file.get()) == 1) rows.push_back(row);
    return rows;
}

}  // namespace lab
