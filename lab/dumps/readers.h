// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The readers of all files in HOG_feature. docs/formats.md shows the files.
//
// Read as well: what a simulator makes of the same text. Lines may end in CR LF, the last one may
// have no end, hexadecimal may be in upper case, blanks at a line's end may be missing, blocks may
// come in any order, and a value may have more digits than MD prints (up to 65535). Anything else
// throws TextError with the place. Memory is that of one frame.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lab/dumps/frame.h"
#include "lab/dumps/run.h"
#include "lab/dumps/scanner.h"

namespace lab {

// hogmd_golden.txt or hogmd_dist.txt as a stream of frames.
class RunningFile {
  public:
    // `kind` is kGoldenFile or kDistFile. `offset` is that of a frame's heading.
    RunningFile(const std::string& path, FileKind kind, int64_t offset = 0);

    // Fills in the next frame; false at the end. What `frame` held before is gone; its memory is
    // used again. Frame numbers must grow. A frame that ends early throws TextError with AtEnd().
    bool Next(Frame* frame);

    // Where the next frame's heading begins.
    [[nodiscard]] int64_t Offset() const { return scanner_.Offset(); }

    // Goes on elsewhere, at the offset of a heading.
    void Seek(int64_t offset);

    // The plain reader for everything, without the fast path for lines as MD writes them.
    void UsePlainReader() { plain_ = true; }

  private:
    void ReadHeading(Frame* frame);
    void ReadBlocks(Frame* frame);
    [[noreturn]] void FailBetweenBlocks(const Frame& frame);
    bool FastGoldenBlock(Frame* frame);
    bool FastDistBlock(Frame* frame);
    void PlainGoldenBlock(Frame* frame);
    void PlainDistBlock(Frame* frame);

    FileKind kind_;
    Scanner scanner_;
    bool plain_ = false;
    int64_t last_index_ = -1;  // of the frame before; -1: none
    int last_columns_ = 0, last_rows_ = 0;
    std::vector<uint32_t> places_;  // of the frame's blocks in file order: y * 65536 + x
};

// The offset of a frame's heading, searched as text without parsing. -1 when it is not there.
int64_t FindFrame(const std::string& path, int64_t frame);

// Numbers of the first and the last heading, found from both ends.
std::optional<FrameRange> RunningRange(const std::string& path);

// Offset of the last heading that begins at or before `offset`; -1 when there is none. Nothing
// before `from` is looked at, which is 0 or the offset of a heading.
int64_t HeadingBefore(const RawFile& file, int64_t offset, int64_t from);

// The fields that a file of this kind holds; fewer where the vector is switched off.
std::vector<Field> FieldsOf(FileKind kind);

// Reads one per-frame file into `frame`: its fields and grid are replaced, the rest stays.
void ReadFrameFile(FileKind kind, const std::string& path, Frame* frame);

// The last line of HOGCount.txt.
struct CountLog {
    std::string input;  // the path before "_HOG,th:"
    int64_t threshold = 0;
};
CountLog ReadCountLog(const std::string& path);

}  // namespace lab
