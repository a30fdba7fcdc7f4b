// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Memory of a run. Counts are elements, never bytes; what is allocated is released with std::free.
// Without memory the run ends with status 1 and a message that names `szWhat`.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <type_traits>

#include "md/print.h"

// Uninitialised memory for nCount elements, at least one.
template <typename T>
[[nodiscard]] T* Allocate(std::size_t nCount, const char* szWhat) {
    static_assert(std::is_trivial_v<T>);
    T* const pMemory = static_cast<T*>(std::malloc(nCount * sizeof(T)));
    RequireMemory(pMemory != nullptr, szWhat);
    return pMemory;
}

// The same, all bytes 0.
template <typename T>
[[nodiscard]] T* AllocateZeroed(std::size_t nCount, const char* szWhat) {
    static_assert(std::is_trivial_v<T>);
    T* const pMemory = static_cast<T*>(std::calloc(nCount, sizeof(T)));
    RequireMemory(pMemory != nullptr, szWhat);
    return pMemory;
}
