// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/score/scores.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace lab {

namespace {

constexpr double kJumpOverlap = 0.5;

struct Expected {
    bool motion = false;
    bool ignored = false;
    std::vector<Area> boxes;  // in input pixels
};

// The rows that concern a frame. Rows are sorted by their first frame, and a sweep over the frames
// keeps those that are still open.
class LabelWalk {
  public:
    explicit LabelWalk(Labels labels) : labels_(std::move(labels)) {
        std::stable_sort(labels_.begin(), labels_.end(),
                         [](const LabelRow& a, const LabelRow& b) { return a.first < b.first; });
    }

    // Frames must come in ascending order.
    Expected At(int32_t frame) {
        for (; next_ < labels_.size() && labels_[next_].first <= frame; ++next_) {
            open_.push_back(&labels_[next_]);
        }
        std::erase_if(open_, [&](const LabelRow* row) { return row->last < frame; });
        Expected expected;
        for (const LabelRow* row : open_) {
            expected.ignored |= row->ignore;
            expected.motion |= !row->ignore;
            if (!row->ignore && row->box) expected.boxes.push_back(AreaOf(*row->box));
        }
        return expected;
    }

  private:
    Labels labels_;
    std::vector<const LabelRow*> open_;
    size_t next_ = 0;
};

// Ranges of labelled frames, and when each is found.
struct RangeState {
    bool open = false;
    bool found = false;
    int32_t judged = 0;  // frames of it so far

    void Close(Counts* counts) {
        if (open && judged > 0) {
            ++counts->ranges;
            counts->ranges_found += found ? 1 : 0;
        }
        *this = RangeState{};
    }
    void Frame(bool hit, Counts* counts) {
        if (hit && !found) {
            found = true;
            counts->delays.push_back(judged);
        }
        ++judged;
    }
};

void CountBoxes(const Area& box, const std::vector<Area>& labelled, Counts* counts) {
    if (labelled.empty()) return;
    double best = 0;
    Area all = labelled.front();
    for (const Area& area : labelled) {
        best = std::max(best, Overlap(box, area));
        all = Around(all, area);
    }
    ++counts->boxed_hits;
    counts->on_target += best > 0 ? 1 : 0;
    counts->iou_sum += best;
    counts->iou_all_sum += Overlap(box, all);
}

// What needs no labels.
void CountMotion(const std::vector<FrameReport>& run, Counts* counts) {
    int64_t gap = -1;  // frames since the last box; below 0 before the first
    const FrameReport* before = nullptr;
    for (const FrameReport& report : run) {
        ++counts->frames;
        if (report.box) {
            ++counts->motion_frames;
            counts->longest_gap = std::max(counts->longest_gap, gap);
            gap = 0;
            if (before != nullptr && before->box) {
                ++counts->box_pairs;
                const double overlap = Overlap(AreaOf(*before->box), AreaOf(*report.box));
                counts->jumps += overlap < kJumpOverlap ? 1 : 0;
            }
        } else if (gap >= 0) {
            ++gap;
        }
        before = &report;
    }
}

void JudgeLabelled(const std::vector<FrameReport>& run, const Labels& labels, double scale_x,
                   double scale_y, Judgement* judgement) {
    LabelWalk walk(labels);
    RangeState range;
    Counts& counts = judgement->counts;
    for (const FrameReport& report : run) {
        const Expected expected = walk.At(report.frame);
        if (!expected.motion && !expected.ignored) range.Close(&counts);
        range.open |= expected.motion;
        if (expected.ignored) {
            judgement->strip += 'i';
            continue;
        }
        const bool hit = expected.motion && report.box.has_value();
        if (expected.motion) range.Frame(hit, &counts);
        if (hit) {
            ++counts.hits;
            CountBoxes(AreaOf(*report.box, scale_x, scale_y), expected.boxes, &counts);
        } else if (expected.motion) {
            ++counts.misses;
        } else {
            ++(report.box ? counts.false_frames : counts.quiet_frames);
        }
        judgement->strip += hit ? 'h' : expected.motion ? 'm' : report.box ? 'f' : '.';
    }
    range.Close(&counts);
}

std::optional<double> Ratio(double part, double whole) {
    if (whole == 0) return std::nullopt;
    return part / whole;
}

std::optional<double> Median(std::vector<int32_t> values) {
    if (values.empty()) return std::nullopt;
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return (values[(n - 1) / 2] + values[n / 2]) / 2.0;
}

bool Labelled(const Counts& n) {
    return n.hits + n.misses + n.false_frames + n.quiet_frames > 0;
}

std::optional<double> IfLabelled(const Counts& n, int64_t value) {
    if (!Labelled(n)) return std::nullopt;
    return static_cast<double>(value);
}

double Real(int64_t value) {
    return static_cast<double>(value);
}

}  // namespace

Counts& Counts::operator+=(const Counts& other) {
    frames += other.frames;
    motion_frames += other.motion_frames;
    longest_gap = std::max(longest_gap, other.longest_gap);
    box_pairs += other.box_pairs;
    jumps += other.jumps;
    hits += other.hits;
    misses += other.misses;
    false_frames += other.false_frames;
    quiet_frames += other.quiet_frames;
    ranges += other.ranges;
    ranges_found += other.ranges_found;
    delays.insert(delays.end(), other.delays.begin(), other.delays.end());
    boxed_hits += other.boxed_hits;
    on_target += other.on_target;
    iou_sum += other.iou_sum;
    iou_all_sum += other.iou_all_sum;
    return *this;
}

Judgement Judge(const std::vector<FrameReport>& run, const Labels* labels, const Scaling& scaling) {
    Judgement judgement;
    CountMotion(run, &judgement.counts);
    if (labels == nullptr) {
        for (const FrameReport& report : run) judgement.strip += report.box ? 'r' : '-';
        return judgement;
    }
    const FrameSize& from = scaling.working;
    const FrameSize& to = scaling.input;
    JudgeLabelled(run, *labels, from.width > 0 ? Real(to.width) / from.width : 1,
                  from.height > 0 ? Real(to.height) / from.height : 1, &judgement);
    return judgement;
}

const std::vector<ScoreRow>& ScoreTable() {
    using Maybe = std::optional<double>;
    // clang-format off
    static const std::vector<ScoreRow> table = {
        {"recall", Better::kHigher, "labelled frames that are reported",
         [](const Counts& n) { return Ratio(Real(n.hits), Real(n.hits + n.misses)); }},
        {"precision", Better::kHigher, "reported frames that are labelled",
         [](const Counts& n) { return Ratio(Real(n.hits), Real(n.hits + n.false_frames)); }},
        {"f1", Better::kHigher, "harmonic mean of recall and precision",
         [](const Counts& n) { return Ratio(2 * Real(n.hits), Real(2 * n.hits + n.misses + n.false_frames)); }},
        {"false_per_1000", Better::kLower, "reported frames of 1000 without a label",
         [](const Counts& n) { return Ratio(1000 * Real(n.false_frames), Real(n.false_frames + n.quiet_frames)); }},
        {"ranges", Better::kNeither, "labelled ranges",
         [](const Counts& n) { return IfLabelled(n, n.ranges); }},
        {"ranges_found", Better::kHigher, "labelled ranges with a reported frame",
         [](const Counts& n) { return IfLabelled(n, n.ranges_found); }},
        {"delay_median", Better::kLower, "frames to the first hit of a range, median",
         [](const Counts& n) { return Median(n.delays); }},
        {"delay_longest", Better::kLower, "frames to the first hit of a range, longest",
         [](const Counts& n) -> Maybe { if (n.delays.empty()) return std::nullopt;
             return *std::max_element(n.delays.begin(), n.delays.end()); }},
        {"iou", Better::kHigher, "overlap with the best labelled box, mean over hits",
         [](const Counts& n) { return Ratio(n.iou_sum, Real(n.boxed_hits)); }},
        {"iou_all", Better::kHigher, "overlap with the box around all labels, mean over hits",
         [](const Counts& n) { return Ratio(n.iou_all_sum, Real(n.boxed_hits)); }},
        {"on_target", Better::kHigher, "hits whose box touches a labelled one",
         [](const Counts& n) { return Ratio(Real(n.on_target), Real(n.boxed_hits)); }},
        {"jumps_per_100", Better::kLower, "box jumps per 100 pairs of frames with a box",
         [](const Counts& n) { return Ratio(100 * Real(n.jumps), Real(n.box_pairs)); }},
        {"motion_frames", Better::kNeither, "frames with a box",
         [](const Counts& n) -> Maybe { return Real(n.motion_frames); }},
        {"longest_gap", Better::kNeither, "frames without a box between two with one, longest",
         [](const Counts& n) -> Maybe { return Real(n.longest_gap); }},
        {"frames", Better::kNeither, "frames of the run",
         [](const Counts& n) -> Maybe { return Real(n.frames); }},
        {"hits", Better::kNeither, "frames labelled and reported",
         [](const Counts& n) { return IfLabelled(n, n.hits); }},
        {"misses", Better::kNeither, "frames labelled and not reported",
         [](const Counts& n) { return IfLabelled(n, n.misses); }},
        {"false_frames", Better::kNeither, "frames reported and not labelled",
         [](const Counts& n) { return IfLabelled(n, n.false_frames); }},
        {"quiet_frames", Better::kNeither, "frames neither labelled nor reported",
         [](const Counts& n) { return IfLabelled(n, n.quiet_frames); }},
    };
    // clang-format on
    return table;
}

std::string ScoreText(const std::optional<double>& score) {
    if (!score) return "";
    char text[64];
    std::snprintf(text, sizeof text, "%.4f", *score);
    std::string shown = text;
    shown.erase(shown.find_last_not_of('0') + 1);
    if (shown.back() == '.') shown.pop_back();
    return shown;
}

}  // namespace lab
