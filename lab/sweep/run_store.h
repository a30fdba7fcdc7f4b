// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What runs reported, kept for good. A store is a folder with a file for each finished piece of
// work; a file holds any number of runs and is renamed into place once it is whole. Its last line
// carries a digest, so that a file that was cut or damaged later counts as not there.
//
//     mdlab runs 1
//     run ID done FIRST COUNT SECONDS
//     12.30,72,51,140;31,72,52,140;3.
//     run ID refused STATUS MESSAGE
//     end RUNS DIGEST
//
// The second line of a done run holds its frames from number FIRST on: "12." is twelve frames
// without a box, "left,top,right,bottom;" a frame with one, in working pixels.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lab/score/log.h"

namespace lab {

struct StoredRun {
    std::string id;
    bool refused = false;
    int status = 0;       // of a refused run
    std::string message;  // of a refused run: MD's own, one line
    int32_t first = 0, count = 0;
    double seconds = 0;
    std::string_view frames;  // of a done run, into the text that holds it
};

std::string FramesText(const std::vector<FrameReport>& frames);

// Throws Error for a text that FramesText did not write.
std::vector<FrameReport> FramesOf(const StoredRun& run);

// Writes a file with these runs into the folder, which is made if it is missing. Throws Error.
void StoreRuns(const std::string& folder, const std::vector<StoredRun>& runs);

// All runs of some folders, by id. The texts are owned here.
class RunIndex {
  public:
    // Passes over files that are not whole. A folder that does not exist holds nothing.
    void AddFolder(const std::string& folder);
    // Null for a run that is not there.
    [[nodiscard]] const StoredRun* Find(const std::string& id) const;

  private:
    void AddFile(const std::string& path);

    std::list<std::string> texts_;
    std::unordered_map<std::string, StoredRun> runs_;
};

}  // namespace lab
