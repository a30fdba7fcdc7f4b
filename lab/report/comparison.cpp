#include "lab/report/comparison.h"

#include <algorithm>
#include <iterator>

#include "lab/report/spool.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

using nlohmann::json;

void RequireSame(const RecordedRun& a, const RecordedRun& b, const json::json_pointer& at,
                 const std::string& what) {
    if (a.facts.at(at) == b.facts.at(at)) return;
    throw Error("the runs cannot be compared: " + what + " differs, " + a.facts.at(at).dump() +
                " and " + b.facts.at(at).dump());
}

void RequireSamePictures(const RecordedRun& a, const RecordedRun& b) {
    RequireSame(a, b, "/clip/width"_json_pointer, "the working width");
    RequireSame(a, b, "/clip/height"_json_pointer, "the working height");
    RequireSame(a, b, "/run/grid/stride"_json_pointer, "MD_HogBlockStride");
    RequireSame(a, b, "/clip/first"_json_pointer, "StartFrameIdx");
    if (a.Frames() != b.Frames()) {
        throw Error("the runs cannot be compared: they have " + std::to_string(a.Frames()) +
                    " and " + std::to_string(b.Frames()) + " frames");
    }
    RequireSame(a, b, "/hash"_json_pointer, "the clip: a sum over its pictures");
}

int FirstUnequal(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
    const auto pair = std::mismatch(a.begin(), a.end(), b.begin());
    return pair.first == a.end() ? -1 : static_cast<int>(pair.first - a.begin());
}

int FirstUnequalMask(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
    for (size_t i = 0; i < a.size(); ++i) {
        if (IsActive(static_cast<ActivityOutcome>(a[i])) !=
            IsActive(static_cast<ActivityOutcome>(b[i]))) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

// The block of the first byte that differs between the vectors that both kept; -1 without one.
int FirstUnequalVector(const std::string& a, const std::string& b, int blocks) {
    const auto bitmap = static_cast<size_t>((blocks + 7) / 8);
    if (a.compare(0, bitmap, b, 0, bitmap) != 0 || a == b) return -1;
    std::vector<int> kept;
    for (int i = 0; i < blocks; ++i) {
        if ((a[static_cast<size_t>(i) >> 3] >> (i & 7) & 1) != 0) kept.push_back(i);
    }
    const auto pair = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    const auto byte = static_cast<size_t>(pair.first - a.begin()) - bitmap;
    return kept[byte % kept.size()];
}

// The recordings side by side.
struct Spools {
    explicit Spools(const RecordedRun& run)
        : blocks(run.folder + "/blocks"),
          luma(run.folder + "/luma"),
          vectors(run.folder + "/vectors") {}
    SpoolReader blocks, luma, vectors;
};

bool SameBox(const int32_t (&a)[4], const int32_t (&b)[4]) {
    return std::equal(std::begin(a), std::end(a), std::begin(b));
}

std::vector<uint8_t> AsBytes(const std::string& text) {
    return {text.begin(), text.end()};
}

void CompareFrame(const RecordedRun& a, const RecordedRun& b, const Spools& in_a,
                  const Spools& in_b, size_t i, Comparison* result) {
    const auto Find = [&](int block, bool differs, const char* stage) {
        if (differs && !result->first) result->first = {static_cast<int>(i), block, stage};
    };
    const ReplayedFrame fa = DecodeBlocks(in_a.blocks.Read(i), a.Blocks(), a.Thresholds());
    const ReplayedFrame fb = DecodeBlocks(in_b.blocks.Read(i), b.Blocks(), b.Thresholds());
    const int mask = FirstUnequalMask(fa.outcome, fb.outcome);
    const FrameRow& ra = a.rows[i];
    const FrameRow& rb = b.rows[i];
    const bool boxes = SameBox(ra.before, rb.before) && SameBox(ra.after, rb.after);
    if (mask >= 0 || !boxes) ++result->frames;
    if (result->first) return;
    const int luma = FirstUnequal(AsBytes(in_a.luma.Read(i)), AsBytes(in_b.luma.Read(i)));
    Find(luma, luma >= 0, "luma");
    const int vector = FirstUnequalVector(in_a.vectors.Read(i), in_b.vectors.Read(i), a.Blocks());
    Find(vector, vector >= 0, "vectors");
    const int distance = FirstUnequal(fa.distance, fb.distance);
    Find(distance, distance >= 0, "distances");
    Find(mask, mask >= 0, "decision");
    Find(-1, !SameBox(ra.before, rb.before), "box");
    Find(-1, !SameBox(ra.after, rb.after), "gate");
}

std::vector<std::string> UnequalKeys(const RecordedRun& a, const RecordedRun& b) {
    std::vector<std::string> keys;
    const json& in_b = b.facts["run"]["settings"];
    for (const auto& [key, setting] : a.facts["run"]["settings"].items()) {
        const json& other = in_b.at(key);
        const bool read = setting["idle"] == "" || other["idle"] == "";
        if (read && setting["value"] != other["value"]) keys.push_back(key);
    }
    return keys;
}

}  // namespace

Comparison Compare(const RecordedRun& a, const RecordedRun& b) {
    RequireSamePictures(a, b);
    Comparison result;
    result.keys = UnequalKeys(a, b);
    const Spools in_a(a);
    const Spools in_b(b);
    for (size_t i = 0; i < a.rows.size(); ++i) CompareFrame(a, b, in_a, in_b, i, &result);
    result.same_luma = SameSpools(in_a.luma, in_b.luma);
    result.same_vectors = SameSpools(in_a.vectors, in_b.vectors);
    return result;
}

}  // namespace lab
