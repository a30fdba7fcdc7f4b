// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/faults.h"

#include <gtest/gtest.h>

namespace {

struct SourceRow {
    const char* szSource;
    std::vector<std::string> aPlanted;  // the source with each of its faults
};

void ExpectPlanted(const std::vector<SourceRow>& aRows) {
    for (const SourceRow& tRow : aRows) {
        std::vector<std::string> aPlanted;
        for (const Fault& t : FaultsIn(tRow.szSource)) {
            aPlanted.push_back(Planted(tRow.szSource, t));
        }
        EXPECT_EQ(aPlanted, tRow.aPlanted) << tRow.szSource;
    }
}

TEST(PlantedFaults, AreOperatorsThatBlanksShowToBeBinary) {
    ExpectPlanted({
        {"a = b << c >= d;\n", {"a = b >> c >= d;\n", "a = b << c > d;\n"}},
        {"a = b ||\n    c\n    && d;\n",
         {"a = b &&\n    c\n    && d;\n", "a = b ||\n    c\n    || d;\n"}},
        {"std::vector<T*>& a = *p(&b, -c);\n", {}},
        {"a->b = a ? b : c = d;\n", {}},
        {"*p++ ^= --i;\n", {"*p-- ^= --i;\n", "*p++ ^= ++i;\n"}},
        {"if (!a != !(b)) c = !*d;\n",
         {"if (a != !(b)) c = !*d;\n", "if (!a == !(b)) c = !*d;\n", "if (!a != (b)) c = !*d;\n"}},
    });
}

TEST(PlantedFaults, AreOneMoreAndOneLessForANumber) {
    ExpectPlanted({
        {"a[0]", {"a[1]"}},
        {"f(0x1F, 010);", {"f(32, 010);", "f(30, 010);", "f(0x1F, 9);", "f(0x1F, 7);"}},
        {"f(0.25, 1.5)", {"f(0.75, 1.5)", "f(0.25, 2.0)"}},
        {"18446744073709551615", {"18446744073709551614"}},
        {"true, false, truest", {"false, false, truest", "true, true, truest"}},
        {"a1 + x2.y3", {"a1 - x2.y3"}},
        {"f(16U, 1e5, 2.5f)", {}},
    });
}

TEST(PlantedFaults, AreInCodeOnly) {
    ExpectPlanted({
        {"a;  // 1 + 2\n1", {"a;  // 1 + 2\n2", "a;  // 1 + 2\n0"}},
        {"f(\"1 + \\\" 2\", '\\'', '3', true)", {"f(\"1 + \\\" 2\", '\\'', '3', false)"}},
        {"#if 1 \\\n  < 2\ntrue", {"#if 1 \\\n  < 2\nfalse"}},
        {"  #define A 1\ntrue", {"  #define A 1\nfalse"}},
        {"static_assert(f(1) < 2,\n    \"no\");\ntrue",
         {"static_assert(f(1) < 2,\n    \"no\");\nfalse"}},
    });
}

}  // namespace
