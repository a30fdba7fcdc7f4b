// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The per-frame files in text: features, csv, distances.
#include <array>
#include <vector>

#include "lab/dumps/collect.h"
#include "lab/dumps/json_files.h"
#include "lab/dumps/readers.h"

namespace lab {

namespace {

void Add(Scanner& scanner, Frame* frame, Field field) {
    frame->values[field].push_back(static_cast<uint16_t>(scanner.Number(10, kValueLimit)));
}

void ExpectTab(Scanner& scanner) {
    if (!scanner.Try("\t")) scanner.Fail("a tab");
}

uint32_t ReadPlace(Scanner& scanner, char between) {
    const uint32_t x = scanner.Number(10, kPlaceLimit);
    if (between == '\t') {
        ExpectTab(scanner);
    } else {
        scanner.Expect(std::string_view(&between, 1));
    }
    scanner.SkipBlanks();
    const uint32_t y = scanner.Number(10, kPlaceLimit);
    return y << 16 | x;
}

// blk[0, 0]:, 5 2 15 8 5 3 5 7 17 19 , ,  / histNorm:1 / AvgY:153
void ReadFeatureText(Scanner& scanner, bool reference, Frame* frame) {
    const Field vector = reference ? kReferenceVector : kVector;
    const Field norm = reference ? kReferenceNorm : kNorm;
    const Field luma = reference ? kReferenceLuma : kLuma;
    scanner.Expect("Cur Frame Features");
    scanner.EndLine();
    scanner.Expect("Enabled: MOG,");
    scanner.EndLine();
    std::vector<uint32_t> places;
    do {
        scanner.Expect("blk[");
        places.push_back(ReadPlace(scanner, ','));
        scanner.Expect("]:, ");
        for (int i = 0; i < kVectorSize; ++i) {
            Add(scanner, frame, vector);
            scanner.Expect(" ");
        }
        scanner.Expect(", ,");
        scanner.EndLine();
        scanner.Expect("histNorm:");
        Add(scanner, frame, norm);
        scanner.EndLine();
        scanner.Expect("AvgY:");
        Add(scanner, frame, luma);
        scanner.EndLine();
    } while (!scanner.AtEnd());
    ArrangeBlocks(scanner, places, frame);
}

// Row, column, luma, histNorm, the vector unless it is switched off, distance, active.
void ReadCsv(Scanner& scanner, Frame* frame) {
    scanner.Expect("Block Y ID\tBlock X ID\tBlock avgY\tBlock histNorm\t");
    const bool vector = *scanner.Here() == 'C';
    if (vector) {
        for (const char* axis : {"X", "Y"}) {
            for (int cell = 0; cell < 4; ++cell) {
                scanner.Expect("Cell" + std::to_string(cell) + " MoG" + axis + "\t");
            }
        }
        scanner.Expect("Block MoGX\tBlock MoGY\t");
    }
    scanner.Expect("Dist\tAvailMask");
    scanner.EndLine();
    std::vector<uint32_t> places;
    do {
        const uint32_t swapped = ReadPlace(scanner, '\t');
        places.push_back(swapped << 16 | swapped >> 16);
        for (const Field field : {kLuma, kNorm}) {
            ExpectTab(scanner);
            Add(scanner, frame, field);
        }
        for (int i = 0; vector && i < kVectorSize; ++i) {
            ExpectTab(scanner);
            Add(scanner, frame, kVector);
        }
        for (const Field field : {kDistance, kActive}) {
            ExpectTab(scanner);
            Add(scanner, frame, field);
        }
        scanner.EndLine();
    } while (!scanner.AtEnd());
    ArrangeBlocks(scanner, places, frame);
}

// [000, 000]: 000 [001, 000]: 000 ...
void ReadDistanceText(Scanner& scanner, Frame* frame) {
    scanner.Expect("Output BlkHogDist");
    scanner.EndLine();
    std::vector<uint32_t> places;
    do {
        scanner.Expect("[");
        places.push_back(ReadPlace(scanner, ','));
        scanner.Expect("]:");
        scanner.SkipBlanks();
        Add(scanner, frame, kDistance);
        scanner.SkipBlanks();
        if (*scanner.Here() != '[') scanner.EndLine();
    } while (!scanner.AtEnd());
    ArrangeBlocks(scanner, places, frame);
}

}  // namespace

std::vector<Field> FieldsOf(FileKind kind) {
    switch (kind) {
        case kGoldenFile:
            return {kLuma, kVector, kLength};
        case kDistFile:
            return {kDistance, kActive};
        case kHogCurFile:
            return {kLuma, kVector, kNorm};
        case kHogRefFile:
            return {kReferenceLuma, kReferenceVector, kReferenceNorm};
        case kFullCsvFile:
            return {kLuma, kNorm, kVector, kDistance, kActive};
        case kFullJsonFile:
            return {kVector,   kCellData,       kReferenceVector, kReferenceCellData,
                    kDistance, kDistanceRepeat, kActive,          kActiveRepeat};
        case kHogDistTextFile:
        case kHogDistJsonFile:
            return {kDistance};
        default:
            return {};
    }
}

void ReadFrameFile(FileKind kind, const std::string& path, Frame* frame) {
    Scanner scanner(path);
    for (const Field field : FieldsOf(kind)) frame->values[field].clear();
    switch (kind) {
        case kHogCurFile:
        case kHogRefFile:
            ReadFeatureText(scanner, kind == kHogRefFile, frame);
            break;
        case kFullCsvFile:
            ReadCsv(scanner, frame);
            break;
        case kHogDistTextFile:
            ReadDistanceText(scanner, frame);
            break;
        case kFullJsonFile:
            ReadFullJson(scanner, frame);
            break;
        case kHogDistJsonFile:
            ReadDistanceJson(scanner, frame);
            break;
        case kObjectFile:
            ReadObjectReport(scanner, frame);
            break;
        default:
            throw Error(path + ": is no file of one frame");
    }
}

CountLog ReadCountLog(const std::string& path) {
    Scanner scanner(path);
    constexpr std::string_view kMark = "_HOG,th:";
    CountLog log;
    bool any = false;
    while (scanner.SkipSpace(), !scanner.AtEnd()) {
        log.input.clear();
        while (!scanner.Try(kMark)) {
            const char c = *scanner.Here();
            if (c == '\n' || scanner.AtEnd() || log.input.size() >= 4096) {
                scanner.Fail("'_HOG,th:' before the end of the line");
            }
            log.input += c;
            scanner.Skip(1);
        }
        log.threshold = scanner.Number(10, INT32_MAX);
        scanner.EndLine();
        any = true;
    }
    if (!any) scanner.Fail("the path of an input");
    return log;
}

}  // namespace lab
