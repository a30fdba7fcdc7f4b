// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The input map: one row per configuration key, with the place that receives its value, its type,
// default and limits. Parser, default setting and limit check all walk this one table.
#pragma once

#include <cstdint>
#include <span>

#include "md/sim_params.h"

enum ValueType : int32_t {
    kTypeInteger = 0,  // the place is an int32_t
    kTypeString = 1,   // the place is a char[512]
    kTypeDouble = 2,   // the place is a double
};

enum LimitKindValue : int32_t {
    kLimitNone = 0,
    kLimitBoth = 1,   // MinLimit to MaxLimit, both inclusive
    kLimitLower = 2,  // MinLimit or more
};

struct InputMapEntry {
    char TokenName[64];  // compared exactly; "END" in the row after the last key
    void* Place;
    int32_t Type;       // ValueType
    double Default;     // integers are stored as doubles too; strings have none
    int32_t LimitKind;  // LimitKindValue
    double MinLimit;
    double MaxLimit;
};

// The rows of all keys, then the row "END". Fixed for the process.
extern const std::span<const InputMapEntry> aInputMap;
extern const std::span<const InputMapEntry> aInputKeys;  // the same without "END"

constexpr int kMaxKeys = 128;  // room in a copy of the map; the compiler checks that it is enough

// The texts of the gradient keys, outside SimParams.
extern GradientTexts tGradientTexts;
