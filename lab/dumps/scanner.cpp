// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/dumps/scanner.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <utility>

namespace lab {

namespace {

constexpr int64_t kBuffer = 256 * 1024;

// Value of a hexadecimal digit, 16 of anything else.
constexpr std::array<uint8_t, 256> kDigits = [] {
    std::array<uint8_t, 256> digits{};
    digits.fill(16);
    for (uint8_t i = 0; i < 10; ++i) digits[static_cast<std::size_t>('0' + i)] = i;
    for (uint8_t i = 0; i < 6; ++i) {
        digits[static_cast<std::size_t>('a' + i)] = static_cast<uint8_t>(10 + i);
        digits[static_cast<std::size_t>('A' + i)] = static_cast<uint8_t>(10 + i);
    }
    return digits;
}();

// What is there, up to the line's end, in a form that any terminal shows.
std::string Shown(const char* text, int64_t length) {
    constexpr int64_t kMost = 24;
    std::string shown;
    int64_t i = 0;
    for (; i < length && i < kMost && text[i] != '\n'; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 32 && c < 127) {
            shown += text[i];
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, c == '\r' ? "\\r" : c == '\t' ? "\\t" : "\\x%02x", c);
        shown += escape;
    }
    if (shown.empty() && i < length) return "the end of the line";
    return "'" + shown + (i == kMost && i < length && text[i] != '\n' ? "..." : "") + "'";
}

}  // namespace

Scanner::Scanner(std::string path, int64_t offset)
    : file_(std::move(path)), buffer_(new char[kBuffer + kAhead]) {
    Seek(offset);
}

void Scanner::Seek(int64_t offset) {
    start_ = offset;
    place_ = end_ = 0;
    std::memset(buffer_.get(), 0, kAhead);
}

void Scanner::Fill() {
    char* text = buffer_.get();
    std::memmove(text, text + place_, static_cast<std::size_t>(end_ - place_));
    start_ += place_;
    end_ -= place_;
    place_ = 0;
    end_ += file_.Read(start_ + end_, text + end_, kBuffer - end_);
    std::memset(text + end_, 0, kAhead);
}

bool Scanner::Try(std::string_view text) {
    if (std::memcmp(Here(), text.data(), text.size()) != 0) return false;
    place_ += static_cast<int64_t>(text.size());
    return true;
}

void Scanner::Expect(std::string_view text) {
    if (Try(text)) return;
    const int64_t left = end_ - place_;
    const bool cut = left < static_cast<int64_t>(text.size()) &&
                     std::memcmp(Here(), text.data(), static_cast<std::size_t>(left)) == 0;
    if (cut) place_ = end_;  // the file ends within this text
    Fail("'" + std::string(text) + "'");
}

uint32_t Scanner::Number(int base, uint32_t limit) {
    const char* text = Here();
    uint64_t value = 0;
    int digits = 0;
    for (;; ++digits) {
        const int digit = kDigits[static_cast<unsigned char>(text[digits])];
        if (digit >= base || digits == 20) break;
        value = value * static_cast<uint64_t>(base) + static_cast<uint64_t>(digit);
        if (value > limit) break;
    }
    if (digits == 0) Fail(base == 16 ? "a hexadecimal number" : "a number");
    if (value > limit || digits == 20) {
        char words[64];
        std::snprintf(words, sizeof words, base == 16 ? "a number up to %x" : "a number up to %u",
                      limit);
        Fail(words);
    }
    place_ += digits;
    return static_cast<uint32_t>(value);
}

void Scanner::SkipBlanks() {
    while (*Here() == ' ' || *Here() == '\t') ++place_;
}

void Scanner::SkipSpace() {
    while (*Here() == ' ' || *Here() == '\t' || *Here() == '\n' || *Here() == '\r') ++place_;
}

void Scanner::EndLine() {
    SkipBlanks();
    Try("\r");
    if (Try("\n") || AtEnd()) return;
    Fail("the end of the line");
}

void Scanner::Fail(const std::string& expected) {
    const char* text = Here();
    const bool at_end = AtEnd();
    const std::string found = at_end ? "the end of the file" : Shown(text, end_ - place_);
    FailAt(Offset(), "found " + found + ", expected " + expected, at_end);
}

// Lines are counted only here, so that reading need not count them.
void Scanner::FailAt(int64_t offset, const std::string& message, bool at_end) {
    int64_t line = 1, column = 1;
    for (int64_t at = 0; at < offset;) {
        const int64_t got = file_.Read(at, buffer_.get(), std::min(kBuffer, offset - at));
        if (got == 0) break;
        for (int64_t i = 0; i < got; ++i) {
            const bool end = buffer_[static_cast<std::size_t>(i)] == '\n';
            line += end ? 1 : 0;
            column = end ? 1 : column + 1;
        }
        at += got;
    }
    throw TextError(
        file_.Path() + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + message,
        at_end);
}

}  // namespace lab
