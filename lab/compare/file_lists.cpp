// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/file_lists.h"

#include <algorithm>
#include <cstdio>

#include "lab/dumps/readers.h"
#include "lab/tool/error.h"

namespace lab {

namespace {

bool Has(const Run& run, FileKind kind) {
    const auto k = static_cast<std::size_t>(kind);
    return run.has[k] || !run.frames[k].empty();
}

std::string Frames(int64_t first, int64_t last) {
    if (first == last) return "frame " + std::to_string(first);
    return "frames " + std::to_string(first) + ".." + std::to_string(last);
}

// "NNNN_HOGCur.txt" names all files of a kind.
std::string KindsText(Sources kinds) {
    std::string text;
    for (int k = 0; k <= kCountFile; ++k) {
        if ((kinds >> k & 1) == 0) continue;
        const auto kind = static_cast<FileKind>(k);
        text += (text.empty() ? "" : ", ") + std::string(IsFrameFile(kind) ? "NNNN" : "") +
                KindName(kind);
    }
    return text.empty() ? "none" : text;
}

Sources KindsOf(const Run& run) {
    Sources kinds = 0;
    for (int k = 0; k <= kCountFile; ++k) {
        if (Has(run, static_cast<FileKind>(k))) kinds |= static_cast<Sources>(1 << k);
    }
    return kinds;
}

bool Wanted(const CompareOptions& options, FileKind kind) {
    if (kind == kCountFile) return options.all_stages;
    if (kind == kObjectFile) return options.stages[kStageBox];
    const std::vector<Field> fields = FieldsOf(kind);
    return std::any_of(fields.begin(), fields.end(),
                       [&](Field field) { return options.stages[Info(field).stage]; });
}

// A run replaces files of the same number and leaves those of a longer earlier one. The running
// files show where the last run ended.
void DropLeftOver(Run* run, Comparison* result) {
    int64_t last = -1;
    std::string by;
    for (const FileKind kind : {kGoldenFile, kDistFile}) {
        if (!run->has[static_cast<std::size_t>(kind)] || !run->single.empty()) continue;
        const auto range = RunningRange(run->PathOf(kind));
        if (!range || range->last <= last) continue;
        last = range->last;
        by = KindName(kind);
    }
    if (last < 0) return;
    int64_t end = last;
    for (auto& frames : run->frames) {
        if (frames.empty()) continue;
        end = std::max(end, *frames.rbegin());
        frames.erase(frames.upper_bound(last), frames.end());
    }
    if (end == last) return;
    result->notes.emplace_back("left over", Frames(last + 1, end) + " in " + run->path + ": " + by +
                                                " ends at frame " + std::to_string(last) +
                                                ", so an earlier, longer run left them");
}

// Against a single file of one frame a folder has that frame and kind only.
void KeepKindOf(const Run& single, Run* folder) {
    if (single.single.empty() || !folder->single.empty() || !IsFrameFile(single.single_kind))
        return;
    const auto& of_kind = folder->frames[single.single_kind];
    if (of_kind.empty()) return;
    const int64_t frame = *single.frames[single.single_kind].begin();
    const bool there = of_kind.contains(frame);
    folder->has.fill(false);
    for (auto& frames : folder->frames) frames.clear();
    if (there) folder->frames[single.single_kind].insert(frame);
}

// Two single files are a pair whatever their names say.
void PairSingles(Run* golden, Run* other) {
    if (golden->single.empty() || other->single.empty()) return;
    if (golden->single_kind != other->single_kind) {
        throw Error(golden->single + " and " + other->single +
                    " are not of one kind: the first is a " + KindName(golden->single_kind) +
                    ", the second a " + KindName(other->single_kind));
    }
    const auto kind = static_cast<std::size_t>(golden->single_kind);
    other->frames[kind] = golden->frames[kind];
}

}  // namespace

FileLists ListFiles(const CompareOptions& options, Run* golden, Run* other, Comparison* result) {
    PairSingles(golden, other);
    DropLeftOver(golden, result);
    DropLeftOver(other, result);
    KeepKindOf(*golden, other);
    KeepKindOf(*other, golden);
    const Sources in_golden = KindsOf(*golden), in_other = KindsOf(*other);
    FileLists lists;
    lists.kinds = in_golden & in_other;
    // Raw videos are no kind of the lists; a single one is compared by itself.
    const bool videos =
        (!golden->videos.empty() && !other->videos.empty()) ||
        (!golden->single.empty() && golden->single_kind == kVideoFile && !other->single.empty());
    if (lists.kinds == 0 && !videos) {
        throw Error(golden->path + " and " + other->path +
                    " have no kind of file in common: the first has " + KindsText(in_golden) +
                    ", the second " + KindsText(in_other));
    }
    const bool folders = golden->single.empty() && other->single.empty();
    for (const auto& [kinds, run] : {std::pair(in_golden, golden), std::pair(in_other, other)}) {
        const auto only = static_cast<Sources>(kinds & ~lists.kinds);
        if (only == 0 || !folders) continue;
        result->notes.emplace_back("only in",
                                   run->path + ": " + KindsText(only) + ", not compared");
    }
    for (int k = 0; k <= kCountFile; ++k) {
        const auto kind = static_cast<FileKind>(k);
        const auto bit = static_cast<Sources>(1 << k);
        if (!Wanted(options, kind)) lists.kinds &= static_cast<Sources>(~bit);
        if (!IsFrameFile(kind) || (lists.kinds & bit) == 0) continue;
        const auto& a = golden->frames[static_cast<std::size_t>(k)];
        const auto& b = other->frames[static_cast<std::size_t>(k)];
        const auto add = [&](int64_t frame, auto& list) {
            if (frame >= options.first_frame && frame <= options.last_frame) list[frame] |= bit;
        };
        for (const int64_t frame : a)
            add(frame, b.contains(frame) ? lists.both : lists.golden_only);
        for (const int64_t frame : b) {
            if (!a.contains(frame)) add(frame, lists.other_only);
        }
    }
    return lists;
}

namespace {

// Frames in a row that lack the same files become one line.
void DescribeOnly(const std::map<int64_t, Sources>& only, const std::map<int64_t, Sources>& both,
                  const char* label, const std::string& where, Comparison* result) {
    for (auto at = only.begin(); at != only.end();) {
        const Sources kinds = at->second;
        const bool whole = !both.contains(at->first);
        const int64_t first = at->first;
        int64_t last = first;
        for (++at; at != only.end() && at->first == last + 1 &&
                   both.contains(at->first) == !whole && (whole || at->second == kinds);
             ++at) {
            last = at->first;
        }
        result->findings.emplace_back(
            label, Frames(first, last) + " in " + where + (whole ? "" : ": " + KindsText(kinds)));
    }
}

}  // namespace

void DescribeMissing(const FileLists& lists, Comparison* result) {
    DescribeOnly(lists.golden_only, lists.both, "missing", result->other, result);
    DescribeOnly(lists.other_only, lists.both, "extra", result->other, result);
}

}  // namespace lab
