// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/dumps/collect.h"

#include <algorithm>

namespace lab {

namespace {

std::string BlockName(uint32_t place) {
    return "block x " + std::to_string(place & 0xffff) + ", y " + std::to_string(place >> 16);
}

// The numbers of columns jump over a to f: someone wrote them in decimal.
bool LooksDecimal(const std::vector<uint32_t>& places) {
    bool ten = false;
    for (const uint32_t place : places) {
        for (const uint32_t n : {place & 0xffff, place >> 16}) {
            if ((n & 15) > 9) return false;
            ten = ten || n == 16;
        }
    }
    return ten;
}

[[noreturn]] void FailMissing(Scanner& scanner, const std::vector<uint32_t>& places,
                              const Frame& frame, uint32_t missing, bool at_end) {
    std::string message = "frame " + std::to_string(frame.index) + " ends without " +
                          BlockName(missing) + ", but has " + std::to_string(frame.columns) +
                          " x " + std::to_string(frame.rows) + " blocks by its largest x and y";
    if (LooksDecimal(places)) message += "; x and y look decimal, hexadecimal is due";
    scanner.FailAt(scanner.Offset(), message, at_end);
}

}  // namespace

void ArrangeBlocks(Scanner& scanner, const std::vector<uint32_t>& places, Frame* frame) {
    uint32_t columns = 0, rows = 0;
    for (const uint32_t place : places) {
        columns = std::max(columns, (place & 0xffff) + 1);
        rows = std::max(rows, (place >> 16) + 1);
    }
    frame->columns = static_cast<int>(columns);
    frame->rows = static_cast<int>(rows);
    const auto place_of = [columns](std::size_t i) {
        return static_cast<uint32_t>(i / columns) << 16 | static_cast<uint32_t>(i % columns);
    };
    bool in_order = places.size() == frame->Blocks();
    uint32_t expected = 0;
    for (std::size_t i = 0; in_order && i < places.size(); ++i) {
        in_order = places[i] == expected;
        expected = (expected & 0xffff) + 1 == columns ? (expected | 0xffff) + 1 : expected + 1;
    }
    if (in_order) return;

    // order[i] is the place of block i in the file.
    std::vector<uint32_t> order(places.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<uint32_t>(i);
    std::stable_sort(order.begin(), order.end(),
                     [&](uint32_t a, uint32_t b) { return places[a] < places[b]; });
    for (std::size_t i = 0; i < order.size(); ++i) {
        const uint32_t place = places[order[i]];
        if (i > 0 && place == places[order[i - 1]]) {
            scanner.FailAt(scanner.Offset(),
                           "frame " + std::to_string(frame->index) + " ends with " +
                               BlockName(place) + " in it twice",
                           false);
        }
        if (place != place_of(i)) FailMissing(scanner, places, *frame, place_of(i), false);
    }
    if (order.size() != frame->Blocks()) {
        FailMissing(scanner, places, *frame, place_of(order.size()), scanner.AtEnd());
    }
    for (int field = 0; field < kFieldCount; ++field) {
        auto& values = frame->values[static_cast<std::size_t>(field)];
        if (values.empty()) continue;
        const auto width = static_cast<std::size_t>(Info(static_cast<Field>(field)).per_block);
        std::vector<uint16_t> sorted(values.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(order[i] * width), width,
                        sorted.begin() + static_cast<std::ptrdiff_t>(i * width));
        }
        values = std::move(sorted);
    }
}

}  // namespace lab
