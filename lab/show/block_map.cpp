// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/show/block_map.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lab {

namespace {

constexpr int kDark = -1;   // no pixel: the row below an odd last one
constexpr int kGreen = -2;  // the box

struct Colour {
    int r, g, b;
};

// Places and lengths here are never negative.
std::size_t Size(int n) {
    return static_cast<std::size_t>(n);
}

// At equal steps of a value. Zero is apart, so that a distance of 1 shows.
constexpr Colour kHeatZero = {20, 20, 20};
constexpr std::array<Colour, 5> kHeatStops = {
    {{95, 0, 95}, {175, 0, 60}, {230, 60, 0}, {255, 190, 40}, {255, 255, 255}}};

Colour RampColour(Ramp ramp, int value, int full) {
    if (ramp == Ramp::kGrey) {
        const int grey = 255 * value / full;
        return {grey, grey, grey};
    }
    if (value == 0) return kHeatZero;
    constexpr int kSteps = static_cast<int>(kHeatStops.size()) - 1;
    const int place = value * kSteps;
    const auto from = Size(std::min(place / full, kSteps - 1));
    const int part = place - static_cast<int>(from) * full;
    const Colour& a = kHeatStops[from];
    const Colour& b = kHeatStops[from + 1];
    const auto mix = [&](int x, int y) { return x + (y - x) * part / full; };
    return {mix(a.r, b.r), mix(a.g, b.g), mix(a.b, b.b)};
}

// Number of the nearest colour of the 6 x 6 x 6 cube, whose levels are 0, 95, 135, 175, 215, 255,
// or of the 24 greys 8, 18 to 238.
int FixedColour(const Colour& c) {
    if (c.r == c.g && c.g == c.b && c.r > 3 && c.r < 247) return 232 + std::min((c.r - 3) / 10, 23);
    const auto level = [](int v) { return v < 48 ? 0 : v < 115 ? 1 : (v - 35) / 40; };
    return 16 + 36 * level(c.r) + 6 * level(c.g) + level(c.b);
}

// The part of an escape sequence that sets a colour. `layer`: 3 for the foreground, 4 for the
// other.
std::string ColourCode(const BlockMap& map, int layer, int value, bool true_colour) {
    if (value == kDark) return std::to_string(layer) + "9";
    const Colour c = value == kGreen ? Colour{0, 215, 95} : RampColour(map.ramp, value, map.full);
    const std::string start = std::to_string(layer) + "8;";
    if (!true_colour) return start + "5;" + std::to_string(FixedColour(c));
    return start + "2;" + std::to_string(c.r) + ";" + std::to_string(c.g) + ";" +
           std::to_string(c.b);
}

int DivideUp(int a, int b) {
    return (a + b - 1) / b;
}

// The map with squares of `merge` blocks joined.
BlockMap Shrink(const BlockMap& map, int merge) {
    BlockMap small{
        DivideUp(map.columns, merge), DivideUp(map.rows, merge), {}, map.full, map.ramp, map.box};
    small.values.resize(Size(small.columns) * Size(small.rows));
    for (int y = 0; y < map.rows; ++y) {
        for (int x = 0; x < map.columns; ++x) {
            const auto from = Size(y * map.columns + x);
            const auto to = Size(y / merge * small.columns + x / merge);
            small.values[to] = std::max(small.values[to], map.values[from]);
        }
    }
    if (map.box) {
        small.box = {map.box->left / merge, map.box->top / merge, DivideUp(map.box->right, merge),
                     DivideUp(map.box->bottom, merge)};
    }
    return small;
}

int Value(const BlockMap& map, int x, int y) {
    return map.values[Size(y * map.columns + x)];
}

// Right-aligned; a number that is too long keeps its last digits.
std::string Label(int number, int width) {
    std::string text = std::to_string(number);
    const auto size = Size(width);
    if (text.size() > size) return text.substr(text.size() - size);
    return std::string(size - text.size(), ' ') + text;
}

// Numbers of every fifth column, or of as many as fit; a place is `pitch` characters wide.
std::string ColumnLabels(int margin, int columns, int merge, int pitch) {
    const int last = (columns - 1) * merge;
    const int needed = static_cast<int>(std::to_string(last).size()) + 1;
    const int step = 5 * DivideUp(needed, 5 * pitch);
    std::string line;
    for (int x = 0; x < columns; x += step) {
        const std::string label = std::to_string(x * merge);
        const auto place = Size(margin + x * pitch);
        if (place + label.size() > Size(margin + columns * pitch)) break;
        line.resize(place, ' ');
        line += label;
    }
    return line + "\n";
}

std::string Cell(int value, int full, int digits) {
    if (value == 0) return digits > 1 ? "  ." : ".";
    if (digits > 1) return Label(std::min(value, 999), digits);
    return std::to_string(1 + (std::min(value, full) - 1) * 9 / full);
}

// The line between the rows y - 1 and y that holds the upper or lower edge of the box.
std::string EdgeLine(const BlockEdges& box, int margin, int pitch) {
    const auto left = Size(margin + box.left * pitch);
    const auto right = Size(margin + box.right * pitch);
    std::string line(right + 1, '-');
    line.replace(0, left, left, ' ');
    line[left] = line[right] = '+';
    return line + "\n";
}

std::string MergeNote(int merge) {
    if (merge == 1) return "\n";
    const std::string edge = std::to_string(merge);
    return ", largest of " + edge + " x " + edge + " blocks\n";
}

int LabelWidth(const BlockMap& map) {
    return static_cast<int>(std::to_string(map.rows - 1).size());
}

}  // namespace

std::string DrawDigits(const BlockMap& whole, int width) {
    const int label = LabelWidth(whole);
    const int digits = whole.full > 9 && label + whole.columns * 4 + 1 <= width ? 3 : 1;
    const int pitch = digits + 1;
    const int merge = DivideUp(whole.columns, (width - 2) / pitch);
    const BlockMap map = Shrink(whole, merge);
    // The box may need a place after the last column.
    const int edge = map.box && map.box->right == map.columns ? 1 : 0;
    const int margin = std::min(label, width - map.columns * pitch - edge);

    std::string text = ColumnLabels(margin + digits, map.columns, merge, pitch);
    for (int y = 0; y < map.rows; ++y) {
        if (map.box && y == map.box->top) text += EdgeLine(*map.box, margin, pitch);
        const bool beside = map.box && y >= map.box->top && y < map.box->bottom;
        std::string line = Label(y * merge, margin);
        for (int x = 0; x < map.columns; ++x) {
            line += beside && (x == map.box->left || x == map.box->right) ? "|" : " ";
            line += Cell(Value(map, x, y), map.full, digits);
        }
        if (beside && map.box->right == map.columns) line += "|";
        text += line + "\n";
        if (map.box && y + 1 == map.box->bottom) text += EdgeLine(*map.box, margin, pitch);
    }
    text += ". is 0";
    if (digits == 1 && map.full > 9) text += ", 1 to 9 are ninths of " + std::to_string(map.full);
    return text + MergeNote(merge);
}

std::string DrawColours(const BlockMap& whole, int width, int height, bool true_colour) {
    const int margin = LabelWidth(whole) + 1;
    const int merge = DivideUp(whole.columns, width - margin);
    const BlockMap map = Shrink(whole, merge);
    const int zoom = margin + 2 * map.columns <= width && map.rows <= height ? 2 : 1;
    const auto pixel = [&](int px, int py) {
        const int x = px / zoom;
        const int y = py / zoom;
        if (y >= map.rows) return kDark;
        if (map.box && (px + py) % 2 == 0) {
            const BlockEdges& box = *map.box;
            const bool inside = x >= box.left && x < box.right && y >= box.top && y < box.bottom;
            const bool edge = px == box.left * zoom || px == box.right * zoom - 1 ||
                              py == box.top * zoom || py == box.bottom * zoom - 1;
            if (inside && edge) return kGreen;
        }
        return std::min(Value(map, x, y), map.full);
    };

    std::string text = ColumnLabels(margin, map.columns, merge, zoom);
    for (int py = 0; py < map.rows * zoom; py += 2) {
        text += Label(py / zoom * merge, margin - 1) + " ";
        std::string last;
        for (int px = 0; px < map.columns * zoom; ++px) {
            std::string code = "\033[" + ColourCode(map, 3, pixel(px, py), true_colour) + ";" +
                               ColourCode(map, 4, pixel(px, py + 1), true_colour) + "m";
            if (code != last) text += code;
            last = std::move(code);
            text += "\u2580";  // upper half in the foreground's colour
        }
        text += "\033[0m\n";
    }
    text += std::string(Size(margin), ' ') + "0 ";
    constexpr int kSamples = 16;
    for (int i = 0; i < kSamples; ++i) {
        const int value = map.full * i / (kSamples - 1);
        text += "\033[" + ColourCode(map, 4, value, true_colour) + "m ";
    }
    return text + "\033[0m " + std::to_string(map.full) + MergeNote(merge);
}

}  // namespace lab
