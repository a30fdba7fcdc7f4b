// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The table of input types, values of nInputFileType: the one place where a type is registered.
#pragma once

#include <span>

#include "md/sim_params.h"

struct InputTypeRow {
    InputType nType;
    const char* szMark;       // part of the name of raw files of this type; null: no mark
    const char* szSmallMark;  // the same with its letter small
    bool bAskSize;            // the prober gives the size
    bool bByTool;             // the converter writes the frames, which it can at even sizes only
    // Makes szOutput, 4:2:0 at the input's size, from InputFilePath. Null: the input is that file.
    void (*pConvert)(const char* szOutput);
};

// In the order in which marks are looked for: a path may hold several.
extern const std::span<const InputTypeRow> aInputTypes;

// nType: 0 to kInputTypes - 1.
const InputTypeRow& InputTypeOf(int32_t nType);
