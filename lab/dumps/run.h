// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a run of MD, or of a simulator that writes the same files, left in a folder.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "lab/dumps/frame.h"

namespace lab {

enum FileKind : int {
    kGoldenFile,       // hogmd_golden.txt: luma, vector, length of all frames
    kDistFile,         // hogmd_dist.txt: distance, active of all frames
    kHogCurFile,       // NNNN_HOGCur.txt: luma, vector, norm
    kHogRefFile,       // NNNN_HOGRef.txt: the same of the reference
    kFullJsonFile,     // NNNN_Full.json: vector, distance, active, vector of the reference
    kFullCsvFile,      // NNNN_Full.csv: luma, norm, vector, distance, active
    kHogDistTextFile,  // NNNN_HOGDist.txt: distance
    kHogDistJsonFile,  // NNNN_HOGDist.json: distance
    kObjectFile,       // NNNN_ObjOut.txt: the box
    kCountFile,        // HOGCount.txt: a line a run, no frame
    kVideoFile,        // NAME_WxH_P420.yuv, in the output folder
    kFileKindCount,
};

// The fixed name of a running file or the ending after NNNN: "hogmd_golden.txt", "_HOGCur.txt".
const char* KindName(FileKind kind);
inline bool IsRunning(FileKind kind) {
    return kind == kGoldenFile || kind == kDistFile;
}
inline bool IsFrameFile(FileKind kind) {
    return kind >= kHogCurFile && kind <= kObjectFile;
}

// By the name or its ending, else by how the file begins. Empty: neither is known.
std::optional<FileKind> KindOf(const std::string& path);

struct Run {
    std::string path;     // as given
    std::string feature;  // folder of the dumps; empty for one file
    std::string output;   // folder of the videos; empty where only HOG_feature was given and its
                          // parent holds no video

    std::array<bool, kFileKindCount> has{};  // of the running files and the count log
    // Per-frame files by frame, counted from 0 (0001_HOGCur.txt is frame 0).
    std::array<std::set<int64_t>, kFileKindCount> frames;
    std::vector<std::string> videos;  // names of raw videos in `output`, sorted
    std::string single;               // the path, when one file was given
    FileKind single_kind{};

    // Path of a running file or the count log; of a per-frame file of that frame.
    [[nodiscard]] std::string PathOf(FileKind kind, int64_t frame = 0) const;
};

// `path` is an output folder, its HOG_feature, or one file. Lists and opens nothing else. Throws
// Error when there is nothing of MD's in it, or the kind of the file is not known.
Run OpenRun(const std::string& path);

// All that the run's files hold of a frame, or nothing where none has it. Files of the same frame
// fill each other's gaps; where two give the same field, the first in the order of FileKind holds.
// Throws Error when a file is broken or two grids differ.
std::optional<Frame> LoadFrame(const Run& run, int64_t frame);

// The frames that LoadFrame would find. Running files are searched for their first and last.
struct FrameRange {
    int64_t first, last;
};
std::optional<FrameRange> FramesOf(const Run& run);

// Width and height out of a name with _WxH_ in it.
struct VideoSize {
    int width, height;
};
std::optional<VideoSize> SizeInName(const std::string& name);

// The block stride, 8 to 64 pixels, that gives this grid on a frame of this size.
std::optional<int> StrideOf(VideoSize size, int columns, int rows);

// Size of the working frame by the names of the run's videos, if any says.
std::optional<VideoSize> WorkingSize(const Run& run);

}  // namespace lab
