// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Text of any length in constant memory, read from the front, with errors at line and column.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "lab/tool/error.h"
#include "lab/tool/raw_file.h"

namespace lab {

// "FILE:LINE:COLUMN: found WHAT, expected WHAT". Line and column count from 1, columns in bytes.
class TextError : public Error {
  public:
    TextError(const std::string& message, bool at_end) : Error(message), at_end_(at_end) {}
    // The file ends where more was expected.
    [[nodiscard]] bool AtEnd() const { return at_end_; }

  private:
    bool at_end_;
};

class Scanner {
  public:
    // Throws Error if the path is no regular file or cannot be opened.
    explicit Scanner(std::string path, int64_t offset = 0);

    // The text from here on: at least kAhead bytes, filled up with zero bytes after the file's end.
    // The pointer holds until the next call of any other member.
    static constexpr int kAhead = 128;
    const char* Here() {
        if (end_ - place_ < kAhead) Fill();
        return buffer_.get() + place_;
    }
    // Passes over `bytes` bytes of what Here showed; not past the end.
    void Skip(int bytes) { place_ += bytes; }
    bool AtEnd() { return *Here() == '\0' && place_ == end_; }

    [[nodiscard]] int64_t Offset() const { return start_ + place_; }
    void Seek(int64_t offset);

    // Passes over the text if it comes next.
    bool Try(std::string_view text);
    // The same, or an error.
    void Expect(std::string_view text);
    // A number of the base 10 or 16, 0 to `limit`.
    uint32_t Number(int base, uint32_t limit);
    void SkipBlanks();  // blanks and tabs
    void SkipSpace();   // and line ends
    // Blanks, then LF, CR LF or the end of the file.
    void EndLine();

    // An error at this place, or at that offset. `expected` is words or a quoted text.
    [[noreturn]] void Fail(const std::string& expected);
    [[noreturn]] void FailAt(int64_t offset, const std::string& message, bool at_end);

  private:
    void Fill();

    RawFile file_;
    std::unique_ptr<char[]> buffer_;
    int64_t start_ = 0;            // offset of the buffer's first byte in the file
    int64_t place_ = 0, end_ = 0;  // in the buffer; the text reaches to end_, kAhead zeros follow
};

}  // namespace lab
