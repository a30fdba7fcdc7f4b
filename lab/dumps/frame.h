// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// One frame as the dumps show it: the record that every reader fills and every subcommand reads.
//
// No single file holds all of it, so each field is there or empty. Values are as printed, also
// those that MD never prints: a simulator may leave a distance of 300, and a reader must show it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lab {

constexpr int kVectorSize = 10;          // elements of a block's vector
constexpr uint32_t kValueLimit = 65535;  // of any value read

// In the order of the hardware: a stage reads nothing of a later one. The reference is no step of
// its own; it is what the distance stage fetched to compare the frame with.
enum Stage : int {
    kStageLuma,
    kStageVector,
    kStageLength,
    kStageReference,
    kStageDistance,
    kStageActive,
    kStageBox,
    kStageCount,
};

const char* StageName(Stage stage);  // "luma", "vector", "length", ...

// What is known of a block. The repeats are the second copies in _Full.json.
enum Field : int {
    kLuma,               // mean luma, 0 to 255
    kVector,             // ten elements: see ValueName
    kCellData,           // repeat of the vector's first eight
    kNorm,               // "histNorm" of the text and csv dumps: always 1
    kLength,             // length class of the vector, 1 to 255
    kReferenceLuma,      // of the reference frame: as above
    kReferenceVector,    //
    kReferenceCellData,  //
    kReferenceNorm,      //
    kDistance,           // 0 to 255
    kDistanceRepeat,     // the same map in the section of the reference
    kActive,             // 0 or 1
    kActiveRepeat,       // the same map in the section of the reference
    kFieldCount,
};

struct FieldInfo {
    Stage stage;
    int per_block;     // values a block
    const char* name;  // of a field of one value; ValueName serves all
};

const FieldInfo& Info(Field field);

// "mean luma", "y moment of cell 2", "x moment of the block, CellData", "distance", ...
std::string ValueName(Field field, int element);

// Pixels of the working frame.
struct Box {
    int left, top, right, bottom;
    bool operator==(const Box&) const = default;
};

struct ObjectReport {
    int motion_detected = 0;  // 0 or 1; may be 1 without a box, when the temporal gate holds it
    int count = 0;            // as printed; boxes.size() in a sound report
    std::vector<Box> boxes;
    bool operator==(const ObjectReport&) const = default;
};

struct Frame {
    int64_t index = 0;  // counted from 0, as Frame_idx; file names say one more
    int columns = 0;    // blocks; 0 where only the object report is known
    int rows = 0;
    // Row by row from the top left, the values of a block side by side. Empty: not known.
    std::array<std::vector<uint16_t>, kFieldCount> values;
    std::optional<ObjectReport> report;

    [[nodiscard]] bool Has(Field field) const { return !values[field].empty(); }
    [[nodiscard]] bool Has(Stage stage) const;
    [[nodiscard]] std::size_t Blocks() const {
        return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
    }
    // Requires Has(field), x < columns, y < rows and the element below Info(field).per_block.
    [[nodiscard]] uint16_t At(Field field, int x, int y, int element = 0) const {
        const std::size_t block = static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) +
                                  static_cast<std::size_t>(x);
        return values[field][block * static_cast<std::size_t>(Info(field).per_block) +
                             static_cast<std::size_t>(element)];
    }
};

}  // namespace lab
