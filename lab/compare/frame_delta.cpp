// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/frame_delta.h"

#include <algorithm>
#include <utility>

#include "lab/dumps/readers.h"

namespace lab {

namespace {

// A repeat counts as the field that it repeats.
struct Main {
    Field field;
    Sources repeat;  // 0: the field is no repeat
};
Main MainOf(Field field) {
    switch (field) {
        case kCellData:
            return {kVector, kFromCellData};
        case kReferenceCellData:
            return {kReferenceVector, kFromCellData};
        case kDistanceRepeat:
            return {kDistance, kFromReference};
        case kActiveRepeat:
            return {kActive, kFromReference};
        default:
            return {field, 0};
    }
}

Sources SourceOf(FileKind kind, Field field) {
    const Sources repeat = MainOf(field).repeat;
    return repeat != 0 ? repeat : static_cast<Sources>(1 << kind);
}

std::vector<int> BoxValues(const ObjectReport& report) {
    std::vector<int> values = {report.motion_detected, report.count};
    for (const Box& box : report.boxes) {
        values.insert(values.end(), {box.left, box.top, box.right, box.bottom});
    }
    return values;
}

}  // namespace

void FrameDelta::Start(int64_t frame) {
    frame_ = frame;
    columns_ = 0;
    bytes_differ_ = unlike_ = false;
    for (auto& values : values_) values.clear();
    holders_.fill(0);
    report_held_ = false;
    box_.clear();
}

void FrameDelta::AddEqual(FileKind kind) {
    if (kind == kObjectFile) report_held_ = true;
    for (const Field field : FieldsOf(kind)) {
        holders_[MainOf(field).field] |= SourceOf(kind, field);
    }
}

bool FrameDelta::Add(FileKind kind, const Frame& golden, const Frame& other) {
    bytes_differ_ = true;
    if (kind == kObjectFile) {
        report_held_ = true;
        AddReport(*golden.report, *other.report);
        return true;
    }
    unlike_ = unlike_ || golden.columns != other.columns || golden.rows != other.rows ||
              (columns_ != 0 && columns_ != golden.columns);
    if (unlike_) return false;
    columns_ = golden.columns;
    for (const Field field : FieldsOf(kind)) {
        if (!golden.Has(field) || !other.Has(field)) continue;
        const Field main = MainOf(field).field;
        const Sources source = SourceOf(kind, field);
        holders_[main] |= source;
        if (golden.values[field] != other.values[field]) {
            AddField(main, field, source, golden, other);
        }
    }
    return true;
}

void FrameDelta::AddField(Field main, Field field, Sources source, const Frame& golden,
                          const Frame& other) {
    const auto width = static_cast<std::size_t>(Info(field).per_block);
    const auto main_width = static_cast<std::size_t>(Info(main).per_block);
    auto& values = values_[main];
    values.resize(std::max(values.size(), golden.Blocks() * main_width));
    for (std::size_t block = 0, i = 0; block < golden.Blocks(); ++block) {
        for (std::size_t element = 0; element < width; ++element, ++i) {
            const uint16_t a = golden.values[field][i], b = other.values[field][i];
            if (a == b) continue;
            Value& value = values[block * main_width + element];
            if (value.shown == 0) value = {a, b, 0};
            value.shown |= source;
        }
    }
}

void FrameDelta::AddReport(const ObjectReport& golden, const ObjectReport& other) {
    const std::vector<int> a = BoxValues(golden), b = BoxValues(other);
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        if (a[i] == b[i]) continue;
        Difference difference;
        difference.frame = frame_;
        difference.stage = kStageBox;
        difference.element = static_cast<int>(i);
        difference.golden = a[i];
        difference.other = b[i];
        difference.shown = 1 << kObjectFile;
        box_.push_back(difference);
    }
    // A box that one side lacks though both counts agree: its report contradicts itself.
    if (a.size() != b.size() && golden.count == other.count) {
        Difference difference;
        difference.frame = frame_;
        difference.stage = kStageBox;
        difference.element = kBoxesListed;
        difference.golden = static_cast<int>(golden.boxes.size());
        difference.other = static_cast<int>(other.boxes.size());
        difference.shown = 1 << kObjectFile;
        box_.push_back(difference);
    }
}

bool FrameDelta::Shows(Stage stage) const {
    if (stage == kStageBox) return report_held_;
    for (int field = 0; field < kFieldCount; ++field) {
        const auto f = static_cast<Field>(field);
        if (Info(f).stage == stage && holders_[f] != 0) return true;
    }
    return false;
}

std::vector<Difference> FrameDelta::Differences(const StageSet& stages) const {
    std::vector<Difference> all;
    for (int s = 0; s < kStageBox; ++s) {
        if (!stages[static_cast<std::size_t>(s)]) continue;
        std::vector<Difference> of_stage;
        for (int f = 0; f < kFieldCount; ++f) {
            const auto field = static_cast<Field>(f);
            if (Info(field).stage != s) continue;
            const int width = Info(field).per_block;
            const auto& values = values_[field];
            for (std::size_t i = 0; i < values.size(); ++i) {
                if (values[i].shown == 0) continue;
                const int block = static_cast<int>(i) / width;
                Difference difference;
                difference.frame = frame_;
                difference.stage = static_cast<Stage>(s);
                difference.field = field;
                difference.element = static_cast<int>(i) % width;
                difference.x = block % columns_;
                difference.y = block / columns_;
                difference.golden = values[i].golden;
                difference.other = values[i].other;
                difference.shown = values[i].shown;
                difference.same = holders_[field] & static_cast<Sources>(~values[i].shown);
                // CellData has no block moments, so it cannot agree on them.
                if (width == kVectorSize && difference.element >= 8) {
                    difference.same &= static_cast<Sources>(~kFromCellData);
                }
                of_stage.push_back(difference);
            }
        }
        std::stable_sort(of_stage.begin(), of_stage.end(),
                         [](const Difference& a, const Difference& b) {
                             return std::pair(a.y, a.x) < std::pair(b.y, b.x);
                         });
        all.insert(all.end(), of_stage.begin(), of_stage.end());
    }
    if (stages[kStageBox]) all.insert(all.end(), box_.begin(), box_.end());
    return all;
}

}  // namespace lab
