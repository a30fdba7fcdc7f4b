// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/hints.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace lab {

namespace {

// Values that must agree before anything is said of them. By chance a wrong value differs in only a
// given bit with 1 in 32, by a given step with 1 in 500; even noise of one step up or down gives
// eight alike only once in 128.
constexpr int64_t kLeastValues = 8;
// Blocks that must share a column, row or place, as long as the grid's chance is small enough.
constexpr int64_t kLeastBlocks = 4;
// Columns and rows that are kept: more than this is no line of blocks.
constexpr std::size_t kKept = 8;

// The value that a reader of the wrong base gets. It stops at the first digit that is none.
int HexReadAsDecimal(int value) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%x", static_cast<unsigned>(value));
    return static_cast<int>(std::strtol(digits, nullptr, 10));
}

int DecimalReadAsHex(int value) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%d", value);
    return static_cast<int>(std::strtol(digits, nullptr, 16));
}

void Keep(std::set<int>* values, int value) {
    if (values->size() < kKept) values->insert(value);
}

}  // namespace

void ValueHints::Start(const Difference& lead) {
    *this = {};
    lead_ = lead;
    least_step_ = most_step_ = lead.other - lead.golden;
    least_golden_ = most_golden_ = lead.golden;
    least_other_ = most_other_ = lead.other;
    any_bits_ = lead.golden ^ lead.other;
}

void ValueHints::Add(const Difference& difference) {
    const int golden = difference.golden, other = difference.other;
    const bool new_frame = difference.frame != last_frame_;
    const bool new_block = new_frame || difference.x != last_x_ || difference.y != last_y_;
    ++values_;
    blocks_ += new_block ? 1 : 0;
    frames_ += new_frame ? 1 : 0;
    last_frame_ = difference.frame;
    last_x_ = difference.x;
    last_y_ = difference.y;

    const int bits = golden ^ other;
    one_bit_ = one_bit_ && bits == any_bits_ && (bits & (bits - 1)) == 0;
    golden_bit_ = golden_bit_ && (golden & any_bits_) != 0;
    other_bit_ = other_bit_ && (other & any_bits_) != 0;
    least_step_ = std::min(least_step_, other - golden);
    most_step_ = std::max(most_step_, other - golden);
    least_golden_ = std::min(least_golden_, golden);
    most_golden_ = std::max(most_golden_, golden);
    least_other_ = std::min(least_other_, other);
    most_other_ = std::max(most_other_, other);
    hex_as_decimal_ = hex_as_decimal_ && other == HexReadAsDecimal(golden);
    decimal_as_hex_ = decimal_as_hex_ && other == DecimalReadAsHex(golden);
    one_column_ = one_column_ && difference.x == lead_.x;
    one_row_ = one_row_ && difference.y == lead_.y;
    Keep(&columns_, difference.x);
    Keep(&rows_, difference.y);
    elements_.insert(difference.element);
}

// One of: a bit, a base, a step, a constant.
std::string ValueHints::OfValue() const {
    const bool flag = lead_.field == kActive || lead_.field == kNorm;
    if (values_ < kLeastValues || (lead_.stage != kStageBox && flag)) return "";
    // A bit that sticks changes every value by the same step, so it is asked first.
    if (one_bit_) {
        int bit = 0;
        while (any_bits_ >> bit != 1) ++bit;
        const std::string name = "bit " + std::to_string(bit);
        if (golden_bit_) return name + " always 0 in the other";
        if (other_bit_) return name + " always 1 in the other";
        return "always " + name;
    }
    const bool steps = least_step_ != most_step_;
    if (steps && hex_as_decimal_) return "hexadecimal read as decimal";
    if (steps && decimal_as_hex_) return "decimal read as hexadecimal";
    if (!steps) {
        char step[24];
        std::snprintf(step, sizeof step, "always %+d", least_step_);
        return step;
    }
    return OfConstant();
}

// Saturation and values that never change.
std::string ValueHints::OfConstant() const {
    if (least_other_ == most_other_) {
        const std::string value = std::to_string(most_other_);
        if (most_other_ < least_golden_ && most_other_ > 0) {
            return "saturates: the other stops at " + value;
        }
        return "the other is always " + value;
    }
    if (least_golden_ == most_golden_ && most_golden_ == 255) {
        return "saturates: golden stops at 255, the other does not";
    }
    return "";
}

std::string ValueHints::OfPlace() const {
    if (lead_.stage == kStageBox || blocks_ < kLeastBlocks) return "";
    const std::string x = std::to_string(lead_.x), y = std::to_string(lead_.y);
    if (one_column_ && one_row_) return "always block x " + x + ", y " + y;
    // Several blocks of a line, not one block many times.
    if (one_column_ && rows_.size() >= 3) return "always block column " + x;
    if (one_row_ && columns_.size() >= 3) return "always block row " + y;
    return "";
}

std::string ValueHints::OfElement() const {
    if (lead_.stage == kStageBox || Info(lead_.field).per_block != kVectorSize) return "";
    if (blocks_ < kLeastValues) return "";
    if (elements_.size() == 1) return "always the " + NameOf(lead_);
    const int cell = lead_.element % 4;
    const bool one_cell = elements_ == std::set<int>{cell, 4 + cell};
    return one_cell ? "always cell " + std::to_string(cell) : "";
}

std::vector<std::string> ValueHints::Hints() const {
    std::vector<std::string> hints;
    for (std::string hint : {OfValue(), OfElement(), OfPlace()}) {
        if (!hint.empty()) hints.push_back(std::move(hint));
    }
    return hints;
}

}  // namespace lab
