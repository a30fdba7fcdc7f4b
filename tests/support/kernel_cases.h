// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The row kernels as a table of cases: one call with its settings and inputs, which the test
// compares between paths and the benchmark repeats.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "md/decision/row_kernels.h"
#include "tests/support/walks.h"

// From where in their legal range inputs are drawn.
enum class Inputs { kNearZero, kNearMax, kFullRange, kEitherEnd };
constexpr Inputs kAllInputs[] = {Inputs::kNearZero, Inputs::kNearMax, Inputs::kFullRange,
                                 Inputs::kEitherEnd};

// What a kernel writes of one plane, between guard bytes.
struct KernelOutput {
    std::string sName;
    size_t nRoom;                            // bytes that may be written
    std::function<int32_t(size_t)> BlockOf;  // whose block a byte is
    std::vector<uint8_t> aBytes;             // guards included

    template <typename T>
    T* At() {
        return reinterpret_cast<T*>(aBytes.data() + kGuard);
    }
    static constexpr size_t kGuard = 64;
};
using KernelOutputs = std::vector<KernelOutput>;

struct KernelCase {
    std::string sText;  // what sets it apart, for a failure
    int32_t nBlocks;
    KernelOutputs aOutputs;  // to copy and fill
    std::function<void(const RowKernels&, KernelOutputs*)> Call;
};

struct KernelRow {
    const char* szName;
    KernelCase (*pMake)(const Setting& s, Inputs inputs, const Picker& Pick);
};
extern const KernelRow kRowKernels[3];

// For the test runner: a row by its name.
inline void PrintTo(const KernelRow& t, std::ostream* pStream) {
    *pStream << t.szName;
}

// The outputs of a call into buffers that were filled with nJunk before.
KernelOutputs Outputs(const KernelCase& tCase, const RowKernels& tPath, uint8_t nJunk);

// The first byte that differs, or that was written outside its room; empty when there is none.
std::string Difference(const KernelCase& tCase, const KernelOutputs& aExpected,
                       const KernelOutputs& aGot, uint8_t nJunk);
