// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/export/difference_map.h"

#include <cstddef>

#include "lab/dumps/scanner.h"

namespace lab {

namespace {

constexpr uint32_t kMostFrames = 1000000000;
constexpr uint32_t kMostBlocks = 65535;

Stage ReadStage(Scanner* scanner) {
    for (int stage = 0; stage < kStageCount; ++stage) {
        const auto known = static_cast<Stage>(stage);
        if (scanner->Try(StageName(known))) return known;
    }
    scanner->Fail("the name of a stage");
}

}  // namespace

DifferenceMap ReadDifferenceMap(const std::string& path) {
    Scanner scanner(path);
    DifferenceMap map;
    scanner.Expect("frame,column,row,stage");
    scanner.EndLine();
    while (!scanner.AtEnd()) {
        const int64_t frame = scanner.Number(10, kMostFrames);
        scanner.Expect(",");
        const auto x = static_cast<int>(scanner.Number(10, kMostBlocks));
        scanner.Expect(",");
        const auto y = static_cast<int>(scanner.Number(10, kMostBlocks));
        scanner.Expect(",");
        map[frame].push_back({x, y, ReadStage(&scanner)});
        scanner.EndLine();
    }
    return map;
}

std::vector<uint16_t> DifferenceValues(const std::string& path, const Frame& frame,
                                       const std::vector<DifferingBlock>& blocks) {
    std::vector<uint16_t> values(frame.Blocks());
    for (const DifferingBlock& block : blocks) {
        if (block.x >= frame.columns || block.y >= frame.rows) {
            throw Error(path + ": block " + std::to_string(block.x) + "," +
                        std::to_string(block.y) + " of frame " + std::to_string(frame.index) +
                        " is outside the run's " + std::to_string(frame.columns) + " x " +
                        std::to_string(frame.rows) + " blocks");
        }
        const std::size_t row =
            static_cast<std::size_t>(block.y) * static_cast<std::size_t>(frame.columns);
        values[row + static_cast<std::size_t>(block.x)] =
            static_cast<uint16_t>(static_cast<int>(block.stage) + 1);
    }
    return values;
}

}  // namespace lab
