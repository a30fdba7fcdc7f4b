// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The running files as streams. Blocks as MD writes them take a fast path that looks at a whole
// block at once; everything else takes the plain one, token by token.
#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "lab/dumps/collect.h"
#include "lab/dumps/readers.h"

namespace lab {

namespace {

constexpr std::string_view kStars = "****************";
// Value of a digit as MD writes them; 0xff, with bits above the low four, of anything else.
constexpr std::array<uint8_t, 256> kHex = [] {
    std::array<uint8_t, 256> hex{};
    hex.fill(0xff);
    for (uint8_t i = 0; i < 10; ++i) hex[static_cast<std::size_t>('0' + i)] = i;
    for (uint8_t i = 0; i < 6; ++i) {
        hex[static_cast<std::size_t>('a' + i)] = static_cast<uint8_t>(10 + i);
    }
    return hex;
}();

// Collects digits and remembers whether one was none.
class Digits {
  public:
    explicit Digits(const char* text) : text_(reinterpret_cast<const unsigned char*>(text)) {}
    uint32_t Two(int at) {
        const unsigned high = kHex[text_[at]], low = kHex[text_[at + 1]];
        seen_ |= high | low;
        return (high << 4 | low) & 0xff;
    }
    uint32_t Three(int at) {
        const unsigned high = kHex[text_[at]];
        seen_ |= high;
        return (high << 8 | Two(at + 1)) & 0xfff;
    }
    uint32_t Four(int at) { return Two(at) << 8 | Two(at + 2); }
    [[nodiscard]] bool AllDigits() const { return seen_ < 16; }

  private:
    const unsigned char* text_;
    unsigned seen_ = 0;
};

template <std::size_t N>
bool TextIs(const char* text, int at, const char (&literal)[N]) {
    return std::memcmp(text + at, literal, N - 1) == 0;
}

}  // namespace

RunningFile::RunningFile(const std::string& path, FileKind kind, int64_t offset)
    : kind_(kind), scanner_(path, offset) {}

void RunningFile::Seek(int64_t offset) {
    scanner_.Seek(offset);
}

bool RunningFile::Next(Frame* frame) {
    const bool first = last_index_ < 0;
    if (scanner_.AtEnd()) {
        if (first && scanner_.Offset() == 0) scanner_.Fail("'" + std::string(kStars) + "'");
        return false;
    }
    for (auto& values : frame->values) values.clear();
    frame->report.reset();
    places_.clear();
    ReadHeading(frame);
    ReadBlocks(frame);
    ArrangeBlocks(scanner_, places_, frame);
    const bool shrunk = frame->columns < last_columns_ || frame->rows < last_rows_;
    if (!first && shrunk && scanner_.AtEnd()) {
        scanner_.Fail("the other blocks of frame " + std::to_string(frame->index));
    }
    last_index_ = frame->index;
    last_columns_ = frame->columns;
    last_rows_ = frame->rows;
    return true;
}

void RunningFile::ReadHeading(Frame* frame) {
    scanner_.Expect(kStars);
    scanner_.EndLine();
    scanner_.Expect("Frame_idx=");
    const int64_t at = scanner_.Offset();
    frame->index = scanner_.Number(10, INT32_MAX);
    scanner_.EndLine();
    scanner_.Expect(kStars);
    scanner_.EndLine();
    if (frame->index <= last_index_) {
        scanner_.FailAt(at,
                        "found frame " + std::to_string(frame->index) + " after frame " +
                            std::to_string(last_index_) + ", expected a later one",
                        false);
    }
}

void RunningFile::ReadBlocks(Frame* frame) {
    const bool golden = kind_ == kGoldenFile;
    for (;;) {
        if (!plain_) {
            while (golden ? FastGoldenBlock(frame) : FastDistBlock(frame)) {
            }
        }
        if (!places_.empty()) {
            const char next = *scanner_.Here();
            if (next == '*' || scanner_.AtEnd()) return;
            if (next != 'x') FailBetweenBlocks(*frame);
        }
        if (golden) {
            PlainGoldenBlock(frame);
        } else {
            PlainDistBlock(frame);
        }
    }
}

void RunningFile::FailBetweenBlocks(const Frame& frame) {
    std::string due = "'x:' or '****'";
    // The block before may lack lines that the settings can switch off.
    if (kind_ == kGoldenFile && places_.size() == 1) {
        if (!frame.Has(kLuma)) due = "'nAvgY=', " + due;
        if (!frame.Has(kVector)) due = "'MATRIX_MODE2:', " + due;
    }
    scanner_.Fail(due);
}

// x:000,y:000 / nAvgY=99 / MATRIX_MODE2:05 02 0f 08 05 03 05 07 11 13  / histNorm2=01
bool RunningFile::FastGoldenBlock(Frame* frame) {
    constexpr int kBytes = 78, kVectorAt = 34;
    static_assert(kBytes <= Scanner::kAhead);
    const char* text = scanner_.Here();
    if (!TextIs(text, 0, "x:") || !TextIs(text, 5, ",y:") || !TextIs(text, 11, "\nnAvgY=") ||
        !TextIs(text, 20, "\nMATRIX_MODE2:") || !TextIs(text, 64, "\nhistNorm2=") ||
        text[77] != '\n') {
        return false;
    }
    Digits digits(text);
    const uint32_t x = digits.Three(2), y = digits.Three(8);
    uint16_t vector[10];
    bool blanks = true;
    for (int i = 0; i < 10; ++i) {
        vector[i] = static_cast<uint16_t>(digits.Two(kVectorAt + 3 * i));
        blanks = blanks && text[kVectorAt + 3 * i + 2] == ' ';
    }
    const uint32_t luma = digits.Two(18), length = digits.Two(75);
    // Were fields missing in an earlier block, then the plain reader says so.
    const bool alike = frame->values[kLength].size() == places_.size();
    if (!digits.AllDigits() || !blanks || !alike) return false;
    places_.push_back(y << 16 | x);
    frame->values[kLuma].push_back(static_cast<uint16_t>(luma));
    auto& values = frame->values[kVector];
    values.insert(values.end(), vector, vector + 10);
    frame->values[kLength].push_back(static_cast<uint16_t>(length));
    scanner_.Skip(kBytes);
    return true;
}

// x:000,y:000 / hogDistAvail:0000,hogDis:0000
bool RunningFile::FastDistBlock(Frame* frame) {
    constexpr int kBytes = 42;
    static_assert(kBytes <= Scanner::kAhead);
    const char* text = scanner_.Here();
    if (!TextIs(text, 0, "x:") || !TextIs(text, 5, ",y:") || !TextIs(text, 11, "\nhogDistAvail:") ||
        !TextIs(text, 29, ",hogDis:") || text[41] != '\n') {
        return false;
    }
    Digits digits(text);
    const uint32_t x = digits.Three(2), y = digits.Three(8);
    const uint32_t active = digits.Four(25), distance = digits.Four(37);
    if (!digits.AllDigits()) return false;
    places_.push_back(y << 16 | x);
    frame->values[kActive].push_back(static_cast<uint16_t>(active));
    frame->values[kDistance].push_back(static_cast<uint16_t>(distance));
    scanner_.Skip(kBytes);
    return true;
}

namespace {

uint32_t ReadPlace(Scanner& scanner) {
    scanner.Expect("x:");
    const uint32_t x = scanner.Number(16, kPlaceLimit);
    scanner.Expect(",y:");
    const uint32_t y = scanner.Number(16, kPlaceLimit);
    scanner.EndLine();
    return y << 16 | x;
}

uint16_t Hex(Scanner& scanner) {
    return static_cast<uint16_t>(scanner.Number(16, kValueLimit));
}

}  // namespace

// The settings decide which of a block's lines are there: all, or with the vector off only the
// first. What the first block of a frame has, the others must have.
void RunningFile::PlainGoldenBlock(Frame* frame) {
    const bool first = places_.empty();
    places_.push_back(ReadPlace(scanner_));
    if (first ? *scanner_.Here() == 'n' : frame->Has(kLuma)) {
        scanner_.Expect("nAvgY=");
        frame->values[kLuma].push_back(Hex(scanner_));
        scanner_.EndLine();
    }
    if (first ? *scanner_.Here() == 'M' : frame->Has(kVector)) {
        scanner_.Expect("MATRIX_MODE2:");
        for (int i = 0; i < 10; ++i) {
            if (i > 0) scanner_.Expect(" ");
            frame->values[kVector].push_back(Hex(scanner_));
        }
        scanner_.EndLine();
        scanner_.Expect("histNorm2=");
        frame->values[kLength].push_back(Hex(scanner_));
        scanner_.EndLine();
    }
}

void RunningFile::PlainDistBlock(Frame* frame) {
    places_.push_back(ReadPlace(scanner_));
    scanner_.Expect("hogDistAvail:");
    frame->values[kActive].push_back(Hex(scanner_));
    scanner_.Expect(",hogDis:");
    frame->values[kDistance].push_back(Hex(scanner_));
    scanner_.EndLine();
}

}  // namespace lab
