// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/comparison.h"

#include <algorithm>
#include <iterator>

#include "lab/report/spool.h"
#include "lab/tool/error.h"
#include "md/block_feature.h"

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

// The vectors of a frame as they were kept: which block each has, and their planes.
struct KeptVectors {
    KeptVectors(const std::string& text, int block_count)
        : record(text), start(static_cast<size_t>((block_count + 7) / 8)) {
        for (int i = 0; i < block_count; ++i) {
            if ((record[static_cast<size_t>(i) >> 3] >> (i & 7) & 1) != 0) blocks.push_back(i);
        }
    }
    [[nodiscard]] char Value(size_t plane, size_t i) const {
        return record[start + plane * blocks.size() + i];
    }

    const std::string& record;
    size_t start;  // of the planes
    std::vector<int> blocks;
};

// The first block that both kept, but not with the same vector; -1 without one.
int FirstUnequalVector(const std::string& a, const std::string& b, int blocks) {
    if (a == b) return -1;
    const KeptVectors in_a(a, blocks);
    const KeptVectors in_b(b, blocks);
    for (size_t i = 0, k = 0; i < in_a.blocks.size() && k < in_b.blocks.size();) {
        if (in_a.blocks[i] != in_b.blocks[k]) {
            ++(in_a.blocks[i] < in_b.blocks[k] ? i : k);
            continue;
        }
        for (size_t plane = 0; plane < kVectorSize; ++plane) {
            if (in_a.Value(plane, i) != in_b.Value(plane, k)) return in_a.blocks[i];
        }
        ++i;
        ++k;
    }
    return -1;
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
    const auto IsRead = [](const json& setting) {
        return setting["idle"].get_ref<const std::string&>().empty();
    };
    for (const auto& [key, setting] : a.facts["run"]["settings"].items()) {
        const json& other = in_b.at(key);
        if ((IsRead(setting) || IsRead(other)) && setting["value"] != other["value"])
            keys.push_back(key);
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
