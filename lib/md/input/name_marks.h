// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What the name of an input file says about its content.
#pragma once

#include <cstdint>

#include "md/sim_params.h"

// Type of a file named as raw video: its extension begins with "yuv" and the path holds a mark of
// the table (input_types.h), such as "_P420". Any other name gives kAnyVideo. Marks are looked for
// in the whole path, folders included.
InputType InputTypeFromName(const char* szPath);

// Calls fnFound(width, height) for every size in the path, in order: decimal digits, 'x', decimal
// digits, filling exactly the text between two underscores; both at least 1.
template <typename Found>
void ForEachNameSize(const char* szPath, Found fnFound);

// True if the text from pFrom up to pEnd is a size; stores it. Digits beyond int32_t saturate.
bool ParseNameSize(const char* pFrom, const char* pEnd, int32_t* pWidth, int32_t* pHeight);

template <typename Found>
void ForEachNameSize(const char* szPath, Found fnFound) {
    const char* pLast = nullptr;
    for (const char* p = szPath; *p != '\0'; ++p) {
        if (*p != '_') continue;
        int32_t nWidth = 0;
        int32_t nHeight = 0;
        if (pLast != nullptr && ParseNameSize(pLast + 1, p, &nWidth, &nHeight)) {
            fnFound(nWidth, nHeight);
        }
        pLast = p;
    }
}
