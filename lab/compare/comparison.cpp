// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/compare/comparison.h"

#include <cstdio>

#include "lab/tool/error.h"

namespace lab {

int Comparison::Status() const {
    if (!trouble.empty()) return kTrouble;
    return Differs() ? kDiffer : kSame;
}

// Elements 0 and 1 belong to the report as a whole; then each box has four.
std::string BoxValueName(int element) {
    constexpr std::array<const char*, 4> kEdges = {"left", "top", "right", "bottom"};
    if (element == 0) return "bMotionDetected";
    if (element == 1) return "count";
    if (element == kBoxesListed) return "number of boxes in the list";
    const int box = (element - 2) / 4;
    const std::string edge = kEdges[static_cast<std::size_t>((element - 2) % 4)];
    return box == 0 ? edge : edge + " of box " + std::to_string(box + 1);
}

std::string NameOf(const Difference& difference) {
    if (difference.stage == kStageBox) return BoxValueName(difference.element);
    return ValueName(difference.field, difference.element);
}

std::string Counted(int64_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string NameSources(Sources sources, int64_t frame) {
    std::string names;
    const auto add = [&names](const std::string& name) {
        names += (names.empty() ? "" : ", ") + name;
    };
    char number[24];
    std::snprintf(number, sizeof number, "%04lld", static_cast<long long>(frame) + 1);
    for (int k = 0; k <= kObjectFile; ++k) {
        const auto kind = static_cast<FileKind>(k);
        if ((sources >> k & 1) == 0) continue;
        add(IsRunning(kind) ? KindName(kind) : std::string(number) + KindName(kind));
    }
    // A repeat is named only where the value itself does not show the same.
    if ((sources >> kFullJsonFile & 1) != 0) return names;
    const std::string json = std::string(number) + KindName(kFullJsonFile);
    if ((sources & kFromCellData) != 0) add(json + " (CellData)");
    if ((sources & kFromReference) != 0) add(json + " (under Ref)");
    return names;
}

}  // namespace lab
