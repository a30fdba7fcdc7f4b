// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What goes into the page of one shape: its data blocks and its head.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "lab/report/comparison.h"
#include "lab/report/header.h"
#include "lab/report/page_file.h"
#include "lab/report/shape.h"
#include "lab/report/video.h"

namespace lab {

// The recordings and what all shapes share. Packed data is made when a shape first wants it, into
// the folders of the runs, and kept.
class Content {
  public:
    // One run, or two that Compare has accepted. `detail` is in frame indexes.
    Content(std::vector<RecordedRun> runs, ClipTexts clip, std::optional<IndexRange> detail,
            int64_t budget, bool quiet, const InterruptGuard& interrupt);

    // In the order of the page.
    std::vector<DataBlock> Blocks(const Shape& shape);

    // After Blocks of the same shape.
    PageTexts Texts(const Shape& shape);

    [[nodiscard]] const std::vector<RecordedRun>& Runs() const { return runs_; }

  private:
    // A video as it was made.
    struct Video {
        std::string spool;
        int64_t size;
        PictureSize dimensions;
        std::string codec;
    };

    const Chunks& Packed(size_t run, const std::string& kind, BlockValues blocks);
    const Video& VideoOf(const Shape& shape);
    void AddChunks(const Chunks& chunks, char letter, size_t run, bool only_detail,
                   std::vector<DataBlock>* blocks) const;
    void AddRun(size_t run, const Shape& shape, std::vector<DataBlock>* blocks);
    [[nodiscard]] std::optional<IndexRange> CoveredFrames(bool all) const;
    [[nodiscard]] nlohmann::json RunHead(size_t run, const Shape& shape) const;
    [[nodiscard]] nlohmann::json ClipHead() const;
    nlohmann::json VideoHead(const Shape& shape);
    [[nodiscard]] std::vector<LeftOut> LeftOutParts(const Shape& shape) const;
    [[nodiscard]] HeaderInput Header(const Shape& shape) const;

    std::vector<RecordedRun> runs_;
    ClipTexts clip_;
    std::optional<IndexRange> detail_;
    int64_t budget_;
    bool quiet_;
    const InterruptGuard& interrupt_;
    std::optional<Comparison> comparison_;
    std::map<std::string, Chunks> packed_;          // by run and kind
    std::map<std::pair<int, bool>, Video> videos_;  // by crf and half size
    bool can_encode_;
};

}  // namespace lab
