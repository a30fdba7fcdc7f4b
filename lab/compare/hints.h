// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a set of wrong values looks like. A hint is a guess that fits every value looked at, and it
// needs enough of them to rule out chance: see the numbers in hints.cpp.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "lab/compare/comparison.h"
#include "lab/dumps/run.h"

namespace lab {

// Looks at each wrong value of the leading field by itself, over all frames, in constant memory.
class ValueHints {
  public:
    void Start(const Difference& lead);
    void Add(const Difference& difference);
    [[nodiscard]] std::vector<std::string> Hints() const;

  private:
    [[nodiscard]] std::string OfValue() const;
    [[nodiscard]] std::string OfConstant() const;
    [[nodiscard]] std::string OfPlace() const;
    [[nodiscard]] std::string OfElement() const;

    Difference lead_;
    int64_t values_ = 0, blocks_ = 0, frames_ = 0;
    int64_t last_frame_ = -1;
    int last_x_ = -1, last_y_ = -1;
    int any_bits_ = 0;                           // that differ in some value
    bool one_bit_ = true;                        // the same single bit in each value
    bool golden_bit_ = true, other_bit_ = true;  // that bit is set in every golden, other value
    int least_step_ = 0, most_step_ = 0;         // other - golden
    int least_golden_ = 0, most_golden_ = 0, least_other_ = 0, most_other_ = 0;
    bool hex_as_decimal_ = true, decimal_as_hex_ = true;
    bool one_column_ = true, one_row_ = true;
    std::set<int> columns_, rows_;  // at most a few are kept
    std::set<int> elements_;
};

// Looks at whole frames: the other run may show the values of a frame before, of the next block,
// of the reference. `frames` are some in which the leading field differs. Frames that cannot be
// read are passed over.
std::vector<std::string> FrameHints(const Run& golden, const Run& other, const Difference& lead,
                                    const std::vector<int64_t>& frames);

}  // namespace lab
