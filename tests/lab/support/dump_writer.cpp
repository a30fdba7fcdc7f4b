// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/lab/support/dump_writer.h"

#include <cstdio>
#include <functional>

#include "tests/support/files.h"
#include "tools/hash.h"

namespace {

template <typename... Args>
std::string Format(const char* format, Args... args) {
    char text[256];
    std::snprintf(text, sizeof text, format, args...);
    return text;
}

// Calls block(x, y, text) for each block in raster order.
using Block = std::function<std::string(int x, int y)>;
std::string EachBlock(const lab::Frame& frame, const Block& block) {
    std::string text;
    for (int y = 0; y < frame.rows; ++y) {
        for (int x = 0; x < frame.columns; ++x) text += block(x, y);
    }
    return text;
}

std::string Heading(const lab::Frame& frame) {
    return Format("****************\nFrame_idx=%03d\n****************\n",
                  static_cast<int>(frame.index));
}

std::string GoldenText(const lab::Frame& frame) {
    return Heading(frame) + EachBlock(frame, [&](int x, int y) {
               std::string text = Format("x:%03x,y:%03x\nnAvgY=%02x\nMATRIX_MODE2:", x, y,
                                         frame.At(lab::kLuma, x, y));
               for (int i = 0; i < 10; ++i) {
                   text += Format("%02x ", frame.At(lab::kVector, x, y, i));
               }
               return text + Format("\nhistNorm2=%02x\n", frame.At(lab::kLength, x, y));
           });
}

std::string DistText(const lab::Frame& frame) {
    return Heading(frame) + EachBlock(frame, [&](int x, int y) {
               return Format("x:%03x,y:%03x\nhogDistAvail:%04x,hogDis:%04x\n", x, y,
                             frame.At(lab::kActive, x, y), frame.At(lab::kDistance, x, y));
           });
}

std::string FeatureText(const lab::Frame& frame, lab::Field vector, lab::Field norm,
                        lab::Field luma) {
    return "Cur Frame Features\nEnabled: MOG,\n" + EachBlock(frame, [&](int x, int y) {
               std::string text = Format("blk[%d, %d]:, ", x, y);
               for (int i = 0; i < 10; ++i) text += Format("%d ", frame.At(vector, x, y, i));
               return text + Format(", , \nhistNorm:%d\nAvgY:%d\n", frame.At(norm, x, y),
                                    frame.At(luma, x, y));
           });
}

// Elements `first` to `first + count` of each block as rows "   [1,2],".
std::string Lists(const lab::Frame& frame, lab::Field field, int total, int count) {
    std::string text = EachBlock(frame, [&](int x, int y) {
        std::string block;
        for (int first = 0; first < total; first += count) {
            block += "   [";
            for (int i = first; i < first + count; ++i) {
                block += Format(i > first ? ",%d" : "%d", frame.At(field, x, y, i));
            }
            block += "],\n";
        }
        return block;
    });
    return text.erase(text.size() - 2, 1);
}

std::string Map(const lab::Frame& frame, lab::Field field) {
    std::string text = EachBlock(frame, [&](int x, int y) {
        return Format(x == 0 ? "  [%d" : ",%d", frame.At(field, x, y)) +
               (x == frame.columns - 1 ? "],\n" : "");
    });
    return text.erase(text.size() - 2, 1);
}

std::string Section(const lab::Frame& frame, lab::Field cells, lab::Field vector,
                    lab::Field distance, lab::Field active) {
    return Format(" \"MOG\":{\n  \"BlkW\": %d,\n  \"BlkH\": %d,  \"Cell\": 4,\n  \"CellData\": [\n",
                  frame.columns, frame.rows) +
           Lists(frame, cells, 8, 2) + "  ],\n  \"BlkData\": [\n" + Lists(frame, vector, 10, 10) +
           "  ]\n }\n ,\n \"Dist\": [\n" + Map(frame, distance) + " ]\n ,\n \"Avail\": [\n" +
           Map(frame, active) + " ]\n";
}

std::string FullJson(const lab::Frame& frame) {
    return "{\n" + Section(frame, lab::kCellData, lab::kVector, lab::kDistance, lab::kActive) +
           ",\n\"Ref\" : {\n" +
           Section(frame, lab::kReferenceCellData, lab::kReferenceVector, lab::kDistanceRepeat,
                   lab::kActiveRepeat) +
           "}\n}\n";
}

std::string FullCsv(const lab::Frame& frame) {
    return "Block Y ID\tBlock X ID\tBlock avgY\tBlock histNorm\tCell0 MoGX\tCell1 MoGX\t"
           "Cell2 MoGX\tCell3 MoGX\tCell0 MoGY\tCell1 MoGY\tCell2 MoGY\tCell3 MoGY\tBlock MoGX\t"
           "Block MoGY\tDist\tAvailMask\r\n" +
           EachBlock(frame, [&](int x, int y) {
               std::string text = Format("%d\t%d\t%d\t%d\t", y, x, frame.At(lab::kLuma, x, y),
                                         frame.At(lab::kNorm, x, y));
               for (int i = 0; i < 10; ++i) {
                   text += Format("%d\t", frame.At(lab::kVector, x, y, i));
               }
               return text + Format("%d\t%d\r\n", frame.At(lab::kDistance, x, y),
                                    frame.At(lab::kActive, x, y));
           });
}

std::string DistanceText(const lab::Frame& frame) {
    return "Output BlkHogDist\n" + EachBlock(frame, [&](int x, int y) {
               return Format("[%03d, %03d]: %03d ", x, y, frame.At(lab::kDistance, x, y)) +
                      (x == frame.columns - 1 ? "\n" : "");
           });
}

std::string DistanceJson(const lab::Frame& frame) {
    return Format("{\n \"BlkW\": %d,\n \"BlkH\": %d,\n \"Dist\": [\n", frame.columns, frame.rows) +
           Map(frame, lab::kDistance) + " ]\n}\n";
}

std::string ObjectText(const lab::ObjectReport& report) {
    std::string text = Format("{\n  \"bMotionDetected\": %d,\n  \"count\": %d,\n  \"objs\" : [\n",
                              report.motion_detected, report.count);
    for (std::size_t i = 0; i < report.boxes.size(); ++i) {
        const lab::Box& box = report.boxes[i];
        text += Format(
            "    {\n      \"left\": %d,\n      \"top\": %d,\n      \"right\": %d,\n"
            "      \"bottom\": %d\n    }%s\n",
            box.left, box.top, box.right, box.bottom, i + 1 < report.boxes.size() ? "," : "");
    }
    return text + "  ]\n}\n";
}

}  // namespace

std::string DumpText(const lab::Frame& frame, lab::FileKind kind) {
    switch (kind) {
        case lab::kGoldenFile:
            return GoldenText(frame);
        case lab::kDistFile:
            return DistText(frame);
        case lab::kHogCurFile:
            return FeatureText(frame, lab::kVector, lab::kNorm, lab::kLuma);
        case lab::kHogRefFile:
            return FeatureText(frame, lab::kReferenceVector, lab::kReferenceNorm,
                               lab::kReferenceLuma);
        case lab::kFullJsonFile:
            return FullJson(frame);
        case lab::kFullCsvFile:
            return FullCsv(frame);
        case lab::kHogDistTextFile:
            return DistanceText(frame);
        case lab::kHogDistJsonFile:
            return DistanceJson(frame);
        case lab::kObjectFile:
            return ObjectText(*frame.report);
        default:
            return "";
    }
}

lab::Frame SomeFrame(int64_t index, int columns, int rows, uint32_t seed) {
    lab::Frame frame;
    frame.index = index;
    frame.columns = columns;
    frame.rows = rows;
    const auto chance = [&](int field, std::size_t i) {
        return static_cast<uint16_t>(Hash(seed * 1000 + static_cast<uint32_t>(field),
                                          static_cast<uint32_t>(index), static_cast<uint32_t>(i)));
    };
    for (int field = 0; field < lab::kFieldCount; ++field) {
        const auto width = static_cast<std::size_t>(Info(static_cast<lab::Field>(field)).per_block);
        auto& values = frame.values[static_cast<std::size_t>(field)];
        values.resize(frame.Blocks() * width);
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = chance(field, i) & 255;
    }
    for (auto& value : frame.values[lab::kActive]) value &= 1;
    for (auto& value : frame.values[lab::kLength]) value |= 1;
    frame.values[lab::kNorm].assign(frame.Blocks(), 1);
    frame.values[lab::kReferenceNorm].assign(frame.Blocks(), 1);
    frame.values[lab::kDistanceRepeat] = frame.values[lab::kDistance];
    frame.values[lab::kActiveRepeat] = frame.values[lab::kActive];
    for (const auto& [vector, cells] :
         {std::pair(lab::kVector, lab::kCellData),
          std::pair(lab::kReferenceVector, lab::kReferenceCellData)}) {
        for (std::size_t i = 0; i < frame.values[cells].size(); ++i) {
            frame.values[cells][i] = frame.values[vector][i / 8 * 10 + i % 8];
        }
    }
    const int left = chance(lab::kFieldCount, 0) & 63, top = chance(lab::kFieldCount, 1) & 63;
    frame.report = {1, 1, {{left, top, left + 20, top + 30}}};
    return frame;
}

std::vector<lab::Frame> SomeRun(int frames, int columns, int rows, uint32_t seed) {
    std::vector<lab::Frame> run;
    for (int i = 0; i < frames; ++i) {
        run.push_back(SomeFrame(i, columns, rows, seed));
        const lab::Frame& from = run[static_cast<std::size_t>(i > 0 ? i - 1 : 0)];
        run.back().values[lab::kReferenceLuma] = from.values[lab::kLuma];
        run.back().values[lab::kReferenceVector] = from.values[lab::kVector];
        run.back().values[lab::kReferenceCellData] = from.values[lab::kCellData];
    }
    return run;
}

void WriteRun(const fs::path& folder, const std::vector<lab::Frame>& frames) {
    fs::create_directories(folder);
    std::string golden, dist;
    for (const lab::Frame& frame : frames) {
        golden += DumpText(frame, lab::kGoldenFile);
        dist += DumpText(frame, lab::kDistFile);
        for (int kind = lab::kHogCurFile; kind <= lab::kObjectFile; ++kind) {
            const auto k = static_cast<lab::FileKind>(kind);
            WriteAll(folder / (Format("%04d", static_cast<int>(frame.index) + 1) + KindName(k)),
                     DumpText(frame, k));
        }
    }
    WriteAll(folder / "hogmd_golden.txt", golden);
    WriteAll(folder / "hogmd_dist.txt", dist);
    WriteAll(folder / "HOGCount.txt", "\n\n/clips/in.yuv_HOG,th:10\n");
}
