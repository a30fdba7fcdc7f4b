// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/replay.h"

#include <cstdlib>
#include <string>

#include "lab/tool/error.h"
#include "md/block_grid.h"
#include "md/block_history.h"
#include "md/decision/distance.h"
#include "md/decision/luma_threshold.h"
#include "md/run_state.h"

namespace lab {

namespace {

// The records that the frame was compared with.
const BlockFeature* Reference() {
    const MdParams& md = tSimParams.tMd;
    return md.CurFrmId == 0 ? tMdResult.pCurFeat : tMdResult.pFeaturePool[md.RefBufIdx];
}

size_t Index(int i) {
    return static_cast<size_t>(i);
}

}  // namespace

Replay::Replay() : width_(tMdResult.nBlkW), height_(tMdResult.nBlkH), pitch_(width_ + 2) {
    const size_t blocks = Index(width_ * height_);
    const size_t bordered = Index(pitch_ * (height_ + 2));
    for (auto& plane : distances_) plane.assign(bordered, 0);
    states_.assign(bordered, 0);
    luma_change_.resize(blocks);
    frame_.distance.resize(blocks);
    frame_.state.resize(blocks);
    frame_.outcome.resize(blocks);
    frame_.thresholds.resize(Index(ThresholdCount()));
}

int Replay::ThresholdCount() const {
    switch (tSimParams.tMd.nMD_HogDist_AvgYDiffCalc_Method) {
        case kPerRow:
            return height_;
        case kRunning:
            return width_ * height_;
        default:
            return 1;
    }
}

void Replay::FindThresholds() {
    const MdParams& md = tSimParams.tMd;
    const BlockFeature* reference = Reference();
    const int method = md.nMD_HogDist_AvgYDiffCalc_Method;
    int32_t sum = 0;
    for (int i = 0; i < width_ * height_; ++i) {
        luma_change_[Index(i)] = std::abs(tMdResult.pCurFeat[i].nAvgY - reference[i].nAvgY);
        sum += luma_change_[Index(i)];
        if (method == kRunning) frame_.thresholds[Index(i)] = MeanThreshold(md, sum, i + 1);
        if (method == kPerRow && (i + 1) % width_ == 0) {
            frame_.thresholds[Index(i / width_)] = MeanThreshold(md, sum, i + 1);
        }
    }
    const int32_t whole = MeanThreshold(md, sum, width_ * height_);
    if (method == kFromLastFrame) frame_.thresholds[0] = carried_threshold_;
    frame_.end_threshold = method == kFromLastFrame ? carried_threshold_ : whole;
    carried_threshold_ = whole;
}

NeighbourCounts Replay::CountAround(int at) const {
    NeighbourCounts counts{};
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            const uint8_t state = states_[Index(at + dy * pitch_ + dx)];
            const bool later = dy > 0 || (dy == 0 && dx >= 0);
            const int active = (state & kStateActive) != 0 ? 1 : 0;
            counts.nActBlkCnt += active;
            counts.nActBlkCntLater += later ? active : 0;
            counts.nHighActBlkCnt += (state & kStateHighActive) != 0 ? 1 : 0;
        }
    }
    return counts;
}

uint8_t Replay::Decide(int block, int x, int y, int luma_threshold) {
    const MdParams& md = tSimParams.tMd;
    const bool correlation = md.nMD_NeighborCorrelation != 0;
    const int at = At(x, y);
    uint8_t& state = states_[Index(at)];
    const bool own = IsOwnReference(md);
    if (own || IsLumaStill(md, luma_change_[Index(block)], luma_threshold)) {
        state = correlation ? state & kStateRepeatMask : 0;
        return own ? kNoReference : kLumaUnchanged;
    }
    if (!correlation) return kAllCount;
    const auto& now = distances_[HistorySlot(md.CurFrmId, 0)];
    const BlockView view{
        .tCounts = CountAround(at),
        .dUp = now[Index(at - pitch_)],
        .dLeft = now[Index(at - 1)],
        .dUpLeft = now[Index(at - pitch_ - 1)],
        .dUpRight = now[Index(at - pitch_ + 1)],
        .bAllNeighborsAvail = HasAllNeighbours(x, y, width_, height_),
        .d = {now[Index(at)], distances_[HistorySlot(md.CurFrmId, 1)][Index(at)],
              distances_[HistorySlot(md.CurFrmId, 2)][Index(at)]},
        .nState = state,
    };
    const Activity activity = DecideActivity(md, BlockThresholds(md, luma_threshold), view);
    state = static_cast<uint8_t>(activity.nState);
    return activity.nOutcome;
}

void Replay::Check(int block) const {
    const int outcome = frame_.outcome[Index(block)];
    const bool counts = outcome != kNoReference && outcome != kLumaUnchanged;
    const int distance = counts ? frame_.distance[Index(block)] : 0;
    const int active = IsActive(static_cast<ActivityOutcome>(outcome)) ? 1 : 0;
    if (distance == tMdResult.pDistMap[block] && active == tMdResult.pAvailMap[block]) return;
    throw Error("internal error: frame " + std::to_string(tSimParams.tMd.CurFrmId) + ", block " +
                std::to_string(block) + ": MD has distance " +
                std::to_string(tMdResult.pDistMap[block]) + ", active " +
                std::to_string(tMdResult.pAvailMap[block]) + ", the report " +
                std::to_string(distance) + ", " + std::to_string(active) + " by outcome " +
                std::to_string(outcome));
}

void Replay::DecideBlocks() {
    const MdParams& md = tSimParams.tMd;
    const int method = md.nMD_HogDist_AvgYDiffCalc_Method;
    auto& now = distances_[HistorySlot(md.CurFrmId, 0)];
    const DistanceSetup setup = DistanceSetupOf(md);
    const BlockFeature* reference = Reference();
    for (int y = 0, block = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x, ++block) {
            const BlockFeature& cur = tMdResult.pCurFeat[block];
            const BlockFeature& ref = reference[block];
            const int distance =
                DistanceOf(setup, cur.v, cur.histNorm2, ref.v, ref.histNorm2).iHOGDist;
            const int which = method == kPerRow ? y : method == kRunning ? block : 0;
            now[Index(At(x, y))] = static_cast<uint8_t>(distance);
            frame_.distance[Index(block)] = static_cast<uint8_t>(distance);
            frame_.outcome[Index(block)] = Decide(block, x, y, frame_.thresholds[Index(which)]);
            Check(block);
        }
    }
    for (int y = 0, block = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x, ++block) {
            frame_.state[Index(block)] = states_[Index(At(x, y))];
        }
    }
}

const ReplayedFrame& Replay::Next() {
    FindThresholds();
    DecideBlocks();
    return frame_;
}

}  // namespace lab
