// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The faults that plant_faults draws from: places of a C++ source where one operator or constant
// can differ.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct Fault {
    size_t nAt;  // bytes from the start of the source
    std::string sOld;
    std::string sNew;  // empty: the operator is left out

    bool operator==(const Fault&) const = default;
};

// All faults of a source in its order. The source is laid out by clang-format, which puts blanks
// around binary operators and none around template brackets, pointers and references. Comments to
// the end of a line, strings, preprocessor lines and static assertions have no faults. Numbers with
// a suffix or an exponent have none either.
std::vector<Fault> FaultsIn(const std::string& sSource);

// The source with that fault.
std::string Planted(const std::string& sSource, const Fault& tFault);
