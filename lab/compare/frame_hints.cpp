// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Guesses that need whole frames. Each predicts the other run's value of a block out of the golden
// run; it becomes a hint when it is right for every wrong value that it speaks of.
#include <algorithm>
#include <functional>
#include <optional>
#include <set>

#include "lab/compare/hints.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

// A prediction by chance is right with 1 in 256 for each value, and much likelier where few values
// occur. So it takes this many wrong values and these different ones.
constexpr int64_t kLeastValues = 8;
constexpr std::size_t kLeastDifferent = 4;
// Boxes: whole reports must agree, of which few are alike.
constexpr int64_t kLeastReports = 3;
// How far back a reference is looked for; MD's is at most 14 frames back.
constexpr int kFarthestReference = 15;

std::optional<Frame> Load(const Run& run, int64_t frame) {
    if (frame < 0) return std::nullopt;
    try {
        return LoadFrame(run, frame);
    } catch (const Error&) {
        return std::nullopt;
    }
}

// One frame with its surroundings, as the guesses see it.
struct View {
    std::optional<Frame> golden, other, before, after;  // the last two of the golden run
    Field field{};
};

bool Fits(const std::optional<Frame>& frame, const View& view, Field field) {
    return frame && frame->Has(field) && frame->columns == view.golden->columns &&
           frame->rows == view.golden->rows;
}

using Predict = std::function<std::optional<int>(const View&, int x, int y, int element)>;
struct Guess {
    std::string words;
    Predict predict;
};

Predict FromBlock(int dx, int dy) {
    return [dx, dy](const View& view, int x, int y, int element) -> std::optional<int> {
        const Frame& frame = *view.golden;
        const bool inside =
            x + dx >= 0 && x + dx < frame.columns && y + dy >= 0 && y + dy < frame.rows;
        if (!inside) return std::nullopt;
        return frame.At(view.field, x + dx, y + dy, element);
    };
}

std::optional<int> FromFrame(const std::optional<Frame>& frame, const View& view, int x, int y,
                             int element) {
    if (!Fits(frame, view, view.field)) return std::nullopt;
    return frame->At(view.field, x, y, element);
}

std::optional<int> Transposed(const View& view, int x, int y, int element) {
    if (y >= view.golden->columns || x >= view.golden->rows) return std::nullopt;
    return view.golden->At(view.field, y, x, element);
}

std::optional<int> MomentsSwapped(const View& view, int x, int y, int element) {
    if (Info(view.field).per_block != kVectorSize) return std::nullopt;
    const int swapped = element < 8 ? (element + 4) % 8 : 17 - element;
    return view.golden->At(view.field, x, y, swapped);
}

// Both are where the other should be; if only the reference is right, it is another fault.
std::optional<int> ReferenceSwapped(const View& view, int x, int y, int element) {
    const Field from = view.field == kLuma     ? kReferenceLuma
                       : view.field == kVector ? kReferenceVector
                                               : kFieldCount;
    if (from == kFieldCount || !view.golden->Has(from) || !view.other->Has(from)) {
        return std::nullopt;
    }
    const bool there =
        view.other->At(from, x, y, element) == view.golden->At(view.field, x, y, element);
    return there ? view.golden->At(from, x, y, element) : -1;
}

const std::vector<Guess>& Guesses() {
    static const std::vector<Guess> guesses = {
        {"one frame late",
         [](const View& v, int x, int y, int e) { return FromFrame(v.before, v, x, y, e); }},
        {"one frame early",
         [](const View& v, int x, int y, int e) { return FromFrame(v.after, v, x, y, e); }},
        {"one block aside: values of the block to the left", FromBlock(-1, 0)},
        {"one block aside: values of the block to the right", FromBlock(1, 0)},
        {"one block aside: values of the block above", FromBlock(0, -1)},
        {"one block aside: values of the block below", FromBlock(0, 1)},
        {"x and y of the blocks swapped", Transposed},
        {"x and y moments swapped", MomentsSwapped},
        {"reference and current frame swapped", ReferenceSwapped},
    };
    return guesses;
}

// What a guess says of one frame's values.
struct Score {
    int64_t wrong = 0;        // values in which the runs differ
    int64_t right = 0;        // of them predicted
    bool missed = false;      // one of them predicted and not met
    bool whole = true;        // every value predicted and met, those without a fault as well
    std::set<int> different;  // values met
};

void Try(const Guess& guess, const View& view, Score* score) {
    const Frame& golden = *view.golden;
    const int width = Info(view.field).per_block;
    for (int y = 0; y < golden.rows; ++y) {
        for (int x = 0; x < golden.columns; ++x) {
            for (int e = 0; e < width; ++e) {
                const int other = view.other->At(view.field, x, y, e);
                const std::optional<int> predicted = guess.predict(view, x, y, e);
                score->whole = score->whole && predicted == other;
                if (golden.At(view.field, x, y, e) == other) continue;
                ++score->wrong;
                if (!predicted) continue;
                if (*predicted != other) {
                    score->missed = true;
                    return;
                }
                ++score->right;
                score->different.insert(other);
            }
        }
    }
}

bool Holds(const Guess& guess, const std::vector<View>& views) {
    Score score;
    for (const View& view : views) {
        Try(guess, view, &score);
        if (score.missed) return false;
    }
    // Flags have two values, and a wrong one is always the other: only whole frames prove anything.
    const bool telling =
        score.different.size() >= kLeastDifferent || (score.whole && views.size() >= 2);
    // At a frame's edge a guess may have nothing to say.
    return telling && score.right >= kLeastValues && score.right * 4 >= score.wrong * 3;
}

// Whose features the reference is: "frame 13 (4 back)".
std::string ReferenceOf(const Run& run, const Frame& frame) {
    for (int back = 0; back <= kFarthestReference; ++back) {
        const auto from = back == 0 ? std::optional<Frame>(frame) : Load(run, frame.index - back);
        if (!from || !from->Has(kVector)) continue;
        if (from->values[kVector] == frame.values[kReferenceVector]) {
            return "frame " + std::to_string(from->index) + ", " + std::to_string(back) + " back";
        }
    }
    return "";
}

std::vector<std::string> ReferenceHint(const Run& golden, const Run& other,
                                       const std::vector<int64_t>& frames) {
    const auto a = Load(golden, frames.front()), b = Load(other, frames.front());
    if (!a || !b || !a->Has(kReferenceVector) || !b->Has(kReferenceVector)) return {};
    const std::string of_a = ReferenceOf(golden, *a), of_b = ReferenceOf(other, *b);
    if (of_a.empty() || of_b.empty() || of_a == of_b) return {};
    return {"another reference: golden " + of_a + "; other " + of_b};
}

ObjectReport Swapped(ObjectReport report) {
    for (Box& box : report.boxes) box = {box.top, box.left, box.bottom, box.right};
    return report;
}

std::vector<std::string> BoxHints(const Run& golden, const Run& other,
                                  const std::vector<int64_t>& frames) {
    bool late = true, early = true, swapped = true;
    int64_t reports = 0;
    for (const int64_t frame : frames) {
        const auto a = Load(golden, frame), b = Load(other, frame);
        if (!a || !b || !a->report || !b->report) continue;
        const auto before = Load(golden, frame - 1), after = Load(golden, frame + 1);
        ++reports;
        late = late && before && before->report && *before->report == *b->report;
        early = early && after && after->report && *after->report == *b->report;
        swapped = swapped && Swapped(*a->report) == *b->report;
    }
    if (reports < kLeastReports) return {};
    if (late) return {"one frame late"};
    if (early) return {"one frame early"};
    if (swapped) return {"x and y swapped"};
    return {};
}

}  // namespace

std::vector<std::string> FrameHints(const Run& golden, const Run& other, const Difference& lead,
                                    const std::vector<int64_t>& frames) {
    if (frames.empty()) return {};
    if (lead.stage == kStageBox) return BoxHints(golden, other, frames);
    if (lead.stage == kStageReference) return ReferenceHint(golden, other, frames);
    std::vector<View> views;
    for (const int64_t frame : frames) {
        View view;
        view.field = lead.field;
        view.golden = Load(golden, frame);
        view.other = Load(other, frame);
        if (!view.golden || !view.golden->Has(lead.field)) continue;
        if (!Fits(view.other, view, lead.field)) continue;
        view.before = Load(golden, frame - 1);
        view.after = Load(golden, frame + 1);
        views.push_back(std::move(view));
    }
    std::vector<std::string> hints;
    for (const Guess& guess : Guesses()) {
        if (Holds(guess, views)) hints.push_back(guess.words);
    }
    return hints;
}

}  // namespace lab
