// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/dumps/json_files.h"

#include <string>
#include <string_view>
#include <vector>

#include "lab/dumps/collect.h"

namespace lab {

namespace {

constexpr int kCellsPerBlock = 4;

void Token(Scanner& scanner, std::string_view text) {
    scanner.SkipSpace();
    scanner.Expect(text);
}

bool TryToken(Scanner& scanner, std::string_view text) {
    scanner.SkipSpace();
    return scanner.Try(text);
}

void Key(Scanner& scanner, std::string_view name) {
    Token(scanner, '"' + std::string(name) + '"');
    Token(scanner, ":");
}

uint32_t Number(Scanner& scanner, uint32_t limit) {
    scanner.SkipSpace();
    return scanner.Number(10, limit);
}

void End(Scanner& scanner) {
    scanner.SkipSpace();
    if (!scanner.AtEnd()) scanner.Fail("the end of the file");
}

// A list of `height` lists of `width` numbers.
void Rows(Scanner& scanner, std::size_t width, std::size_t height, std::vector<uint16_t>* values) {
    Token(scanner, "[");
    for (std::size_t row = 0; row < height; ++row) {
        Token(scanner, row == 0 ? "[" : ",");
        if (row > 0) Token(scanner, "[");
        for (std::size_t i = 0; i < width; ++i) {
            if (i > 0) Token(scanner, ",");
            values->push_back(static_cast<uint16_t>(Number(scanner, kValueLimit)));
        }
        Token(scanner, "]");
    }
    Token(scanner, "]");
}

struct Grid {
    int columns, rows;
};

int GridSize(Scanner& scanner, std::string_view key) {
    Key(scanner, key);
    scanner.SkipSpace();
    if (*scanner.Here() == '0') scanner.Fail("at least one block");
    return static_cast<int>(Number(scanner, kPlaceLimit + 1));
}

Grid ReadGrid(Scanner& scanner) {
    Grid grid{};
    grid.columns = GridSize(scanner, "BlkW");
    Token(scanner, ",");
    grid.rows = GridSize(scanner, "BlkH");
    Token(scanner, ",");
    return grid;
}

// Which fields a section of _Full.json holds.
struct Section {
    Field vector, cell_data, distance, active;
};
constexpr Section kCurrent = {kVector, kCellData, kDistance, kActive};
constexpr Section kReference = {kReferenceVector, kReferenceCellData, kDistanceRepeat,
                                kActiveRepeat};

Grid ReadSection(Scanner& scanner, const Section& section, Frame* frame) {
    Key(scanner, "MOG");
    Token(scanner, "{");
    const Grid grid = ReadGrid(scanner);
    const auto columns = static_cast<std::size_t>(grid.columns);
    const auto rows = static_cast<std::size_t>(grid.rows);
    Key(scanner, "Cell");
    Token(scanner, std::to_string(kCellsPerBlock));
    Token(scanner, ",");
    Key(scanner, "CellData");
    Rows(scanner, 2, kCellsPerBlock * columns * rows, &frame->values[section.cell_data]);
    Token(scanner, ",");
    Key(scanner, "BlkData");
    Rows(scanner, kVectorSize, columns * rows, &frame->values[section.vector]);
    Token(scanner, "}");
    Token(scanner, ",");
    Key(scanner, "Dist");
    Rows(scanner, columns, rows, &frame->values[section.distance]);
    Token(scanner, ",");
    Key(scanner, "Avail");
    Rows(scanner, columns, rows, &frame->values[section.active]);
    return grid;
}

}  // namespace

void ReadFullJson(Scanner& scanner, Frame* frame) {
    Token(scanner, "{");
    const Grid grid = ReadSection(scanner, kCurrent, frame);
    Token(scanner, ",");
    Key(scanner, "Ref");
    Token(scanner, "{");
    const Grid reference = ReadSection(scanner, kReference, frame);
    if (reference.columns != grid.columns || reference.rows != grid.rows) {
        scanner.Fail("a reference with the grid of the frame");
    }
    Token(scanner, "}");
    Token(scanner, "}");
    End(scanner);
    frame->columns = grid.columns;
    frame->rows = grid.rows;
}

void ReadDistanceJson(Scanner& scanner, Frame* frame) {
    Token(scanner, "{");
    const Grid grid = ReadGrid(scanner);
    Key(scanner, "Dist");
    Rows(scanner, static_cast<std::size_t>(grid.columns), static_cast<std::size_t>(grid.rows),
         &frame->values[kDistance]);
    Token(scanner, "}");
    End(scanner);
    frame->columns = grid.columns;
    frame->rows = grid.rows;
}

void ReadObjectReport(Scanner& scanner, Frame* frame) {
    const auto number = [&scanner](std::string_view key) {
        Key(scanner, key);
        return static_cast<int>(Number(scanner, kValueLimit));
    };
    ObjectReport report;
    Token(scanner, "{");
    report.motion_detected = number("bMotionDetected");
    Token(scanner, ",");
    report.count = number("count");
    Token(scanner, ",");
    Key(scanner, "objs");
    Token(scanner, "[");
    while (!TryToken(scanner, "]")) {
        if (!report.boxes.empty()) Token(scanner, ",");
        Box box{};
        Token(scanner, "{");
        box.left = number("left");
        Token(scanner, ",");
        box.top = number("top");
        Token(scanner, ",");
        box.right = number("right");
        Token(scanner, ",");
        box.bottom = number("bottom");
        Token(scanner, "}");
        report.boxes.push_back(box);
        // MD holds four at most; a file that never ends must not fill the memory.
        if (report.boxes.size() > 1000) scanner.Fail("']' after a thousand boxes");
    }
    Token(scanner, "}");
    End(scanner);
    frame->report = report;
}

}  // namespace lab
