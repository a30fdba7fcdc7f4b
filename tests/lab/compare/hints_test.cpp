// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Each hint is given for the fault that it names, and none for chance.
#include "lab/compare/hints.h"

#include <gtest/gtest.h>

#include <functional>

#include "lab/compare/compare_runs.h"
#include "tests/lab/support/dump_writer.h"
#include "tests/support/files.h"
#include "tools/hash.h"

namespace {

using lab::Frame;
using Frames = std::vector<Frame>;

constexpr int kColumns = 18, kRows = 12, kFrames = 8;

// What compare guesses from the running files, the boxes and the references.
std::vector<std::string> HintsFor(const Frames& golden, const Frames& rtl) {
    const TempFolder folder;
    for (const auto& [name, frames] : {std::pair("golden", golden), std::pair("rtl", rtl)}) {
        fs::create_directory(folder / name);
        std::string features, distances;
        for (const Frame& frame : frames) {
            features += DumpText(frame, lab::kGoldenFile);
            distances += DumpText(frame, lab::kDistFile);
            const std::string number = "000" + std::to_string(frame.index + 1);
            WriteAll(folder / name / (number + "_ObjOut.txt"), DumpText(frame, lab::kObjectFile));
            WriteAll(folder / name / (number + "_HOGRef.txt"), DumpText(frame, lab::kHogRefFile));
        }
        WriteAll(folder / name / "hogmd_golden.txt", features);
        WriteAll(folder / name / "hogmd_dist.txt", distances);
    }
    lab::CompareOptions options;
    options.golden = (folder / "golden").string();
    options.other = (folder / "rtl").string();
    options.quiet = true;
    return lab::CompareRuns(options, nullptr).hints;
}

// Calls change(value, frame, x, y, element) for each value of a field.
using Change = std::function<void(uint16_t& value, const Frame& golden, int x, int y, int element)>;
Frames Spoiled(Frames frames, lab::Field field, const Change& change) {
    const Frames golden = frames;
    for (std::size_t f = 0; f < frames.size(); ++f) {
        const int width = lab::Info(field).per_block;
        for (std::size_t i = 0; i < frames[f].values[field].size(); ++i) {
            const int block = static_cast<int>(i) / width;
            change(frames[f].values[field][i], golden[f], block % kColumns, block / kColumns,
                   static_cast<int>(i) % width);
        }
    }
    return frames;
}

struct Row {
    const char* hints;  // joined by ", "
    lab::Field field;
    Change change;
};

const std::vector<Row>& Rows() {
    static const std::vector<Row> rows = {
        {"always +1, always block column 12", lab::kLength,
         [](uint16_t& v, const Frame&, int x, int, int) { v = x == 12 ? v + 1 : v; }},
        {"always -3, always block row 7", lab::kLuma,
         [](uint16_t& v, const Frame&, int, int y, int) { v = y == 7 && v > 2 ? v - 3 : v; }},
        {"always block x 3, y 4", lab::kDistance,
         [](uint16_t& v, const Frame& f, int x, int y, int) {
             if (x == 3 && y == 4) v ^= 1 + (f.index * 37 & 127);
         }},
        {"bit 3 always 0 in the other", lab::kDistance,
         [](uint16_t& v, const Frame&, int, int, int) { v &= 0xf7; }},
        {"bit 7 always 1 in the other", lab::kLuma,
         [](uint16_t& v, const Frame&, int, int, int) { v |= 0x80; }},
        {"always bit 4", lab::kLuma, [](uint16_t& v, const Frame&, int, int, int) { v ^= 16; }},
        {"always the y moment of cell 2", lab::kVector,
         [](uint16_t& v, const Frame& f, int x, int y, int e) {
             if (e == 6) v = static_cast<uint16_t>(f.At(lab::kLuma, x, y) ^ 255);
         }},
        {"always cell 1", lab::kVector,
         [](uint16_t& v, const Frame& f, int x, int y, int e) {
             if (e % 4 == 1 && e < 8) v = f.At(lab::kDistance, x, y);
         }},
        {"saturates: the other stops at 127", lab::kDistance,
         [](uint16_t& v, const Frame&, int, int, int) { v = std::min<uint16_t>(v, 127); }},
        {"saturates: golden stops at 255, the other does not", lab::kDistance,
         [](uint16_t& v, const Frame& f, int x, int y, int) {
             if (v == 255) v = static_cast<uint16_t>(256 + f.At(lab::kLuma, x, y));
         }},
        {"the other is always 0", lab::kDistance,
         [](uint16_t& v, const Frame&, int, int, int) { v = 0; }},
        {"hexadecimal read as decimal", lab::kLuma,
         [](uint16_t& v, const Frame&, int, int, int) {
             if ((v & 15) < 10 && v < 160) v = static_cast<uint16_t>(v / 16 * 10 + v % 16);
         }},
        {"decimal read as hexadecimal", lab::kLuma,
         [](uint16_t& v, const Frame&, int, int, int) {
             if (v < 100) v = static_cast<uint16_t>(v / 10 * 16 + v % 10);
         }},
        {"one block aside: values of the block to the left", lab::kLuma,
         [](uint16_t& v, const Frame& f, int x, int y, int) {
             if (x > 0) v = f.At(lab::kLuma, x - 1, y);
         }},
        {"one block aside: values of the block below", lab::kVector,
         [](uint16_t& v, const Frame& f, int x, int y, int e) {
             if (y < kRows - 1) v = f.At(lab::kVector, x, y + 1, e);
         }},
        {"x and y of the blocks swapped", lab::kDistance,
         [](uint16_t& v, const Frame& f, int x, int y, int) {
             if (x < kRows && y < kColumns) v = f.At(lab::kDistance, y, x);
         }},
        {"x and y moments swapped", lab::kVector,
         [](uint16_t& v, const Frame& f, int x, int y, int e) {
             v = f.At(lab::kVector, x, y, e < 8 ? (e + 4) % 8 : 17 - e);
         }},
    };
    return rows;
}

std::string Joined(const std::vector<std::string>& hints) {
    std::string text;
    for (const std::string& hint : hints) text += (text.empty() ? "" : ", ") + hint;
    return text;
}

TEST(Hints, NameThePlantedFault) {
    const Frames golden = SomeRun(kFrames, kColumns, kRows, 6);
    for (const Row& row : Rows()) {
        Frames base = golden;
        if (std::string(row.hints).find("golden stops") != std::string::npos) {
            for (Frame& frame : base) {
                for (auto& value : frame.values[lab::kDistance]) value = value > 200 ? 255 : value;
            }
        }
        EXPECT_EQ(Joined(HintsFor(base, Spoiled(base, row.field, row.change))), row.hints);
    }
}

TEST(Hints, NameFramesThatAreLateOrEarly) {
    const Frames golden = SomeRun(kFrames, kColumns, kRows, 6);
    for (const lab::Field field : {lab::kLuma, lab::kDistance, lab::kActive}) {
        Frames late = golden, early = golden;
        for (std::size_t f = 0; f + 1 < golden.size(); ++f) {
            late[f + 1].values[field] = golden[f].values[field];
            early[f].values[field] = golden[f + 1].values[field];
        }
        EXPECT_EQ(Joined(HintsFor(golden, late)), "one frame late");
        EXPECT_EQ(Joined(HintsFor(golden, early)), "one frame early");
    }
}

TEST(Hints, NameFaultsOfBoxesAndReferences) {
    const Frames golden = SomeRun(kFrames, kColumns, kRows, 6);
    Frames late = golden, swapped = golden, offset = golden, reference = golden, both = golden;
    for (std::size_t f = 0; f < golden.size(); ++f) {
        if (f > 0) late[f].report = golden[f - 1].report;
        lab::Box& box = swapped[f].report->boxes.front();
        std::swap(box.left, box.top);
        std::swap(box.right, box.bottom);
        offset[f].report->boxes.front().left += 8;
        std::swap(both[f].values[lab::kVector], both[f].values[lab::kReferenceVector]);
        if (f > 1) {
            for (const auto& [to, from] : {std::pair(lab::kReferenceVector, lab::kVector),
                                           std::pair(lab::kReferenceLuma, lab::kLuma)}) {
                reference[f].values[to] = golden[f - 2].values[from];
            }
        }
    }
    EXPECT_EQ(Joined(HintsFor(golden, late)), "one frame late");
    EXPECT_EQ(Joined(HintsFor(golden, swapped)), "x and y swapped");
    EXPECT_EQ(Joined(HintsFor(golden, offset)), "always +8");
    EXPECT_EQ(Joined(HintsFor(golden, both)),
              "one frame late, reference and current frame swapped");
    EXPECT_EQ(Joined(HintsFor(golden, reference)),
              "another reference: golden frame 1, 1 back; other frame 0, 2 back");
}

// Noise of several kinds, thin and dense, in every field.
TEST(Hints, StaySilentOverNoise) {
    const Frames golden = SomeRun(kFrames, kColumns, kRows, 6);
    int runs = 0;
    for (uint32_t seed = 0; seed < 60; ++seed) {
        const lab::Field field = std::array{lab::kLuma, lab::kVector, lab::kLength, lab::kDistance,
                                            lab::kActive}[seed % 5];
        const uint32_t density = std::array{1000U, 60U, 8U, 1U}[seed / 5 % 4];
        const bool small = seed / 20 % 3 == 1, bits = seed / 20 % 3 == 2;
        uint32_t n = 0;
        const Frames noisy =
            Spoiled(golden, field, [&](uint16_t& v, const Frame& f, int, int, int) {
                const uint32_t chance = Hash(seed, static_cast<uint32_t>(f.index), ++n);
                if (chance % density != 0) return;
                const uint32_t value = Hash(seed + 100, chance, n);
                if (field == lab::kActive) {
                    v ^= 1;
                } else if (small) {
                    v = static_cast<uint16_t>(v == 0 || (v < 255 && value % 2 == 0) ? v + 1
                                                                                    : v - 1);
                } else if (bits) {
                    v ^= static_cast<uint16_t>(1U << value % 8);
                } else {
                    v = value & 255;
                }
            });
        // Noise on every flag is a fault with a name of its own, but no hint names it.
        EXPECT_EQ(Joined(HintsFor(golden, noisy)), "") << "seed " << seed;
        ++runs;
    }
    EXPECT_EQ(runs, 60);
}

}  // namespace
