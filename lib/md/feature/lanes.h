// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The vectors of the row kernels: one, two or four lanes of 16 bytes, whichever is the native width
// of the instruction set that the including file is built for. Nothing is emulated, so a kernel's
// text is written once. One lane holds a pixel row of one cell; two hold that of both cells of a
// block; four that of two blocks.
//
// Most arithmetic is the compiler's own operators on vector types. What they lack is in
// lanes_x86.inc (SSSE3, AVX2, AVX-512), where each operation is described, and in lanes_neon.inc:
// mostly one instruction, at most five. All is inlined and nothing calls a library template: no
// code built for a newer processor can be linked into an older path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

#if defined(__AVX512BW__)
constexpr int32_t kLanes = 4;
#elif defined(__AVX2__)
constexpr int32_t kLanes = 2;
#else
constexpr int32_t kLanes = 1;
#endif

constexpr int32_t kVectorBytes = 16 * kLanes;
using U8xN = uint8_t __attribute__((vector_size(kVectorBytes)));
using I16xN = int16_t __attribute__((vector_size(kVectorBytes)));
using I32xN = int32_t __attribute__((vector_size(kVectorBytes)));
using U32xN = uint32_t __attribute__((vector_size(kVectorBytes)));
using I64xN = int64_t __attribute__((vector_size(kVectorBytes)));
using F32xN = float __attribute__((vector_size(kVectorBytes)));
constexpr int32_t kBlocksAVector = kVectorBytes / 4;  // one number of 32 bits a block

#define MD_INLINE inline __attribute__((always_inline))

template <typename V, typename T>
MD_INLINE V Load(const T* p) {
    V v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

template <typename V, typename T>
MD_INLINE void Store(T* p, V v) {
    std::memcpy(p, &v, sizeof v);
}

// Four numbers from each lane: those of the even lanes one after another to the first place, those
// of the odd ones to the second.
MD_INLINE void StoreSides(int32_t* const* ppPlaces, ptrdiff_t nOffset, I32xN v) {
    for (int32_t n = 0; n < kLanes; ++n) {
        std::memcpy(ppPlaces[n % 2] + nOffset + n / 2 * 4,
                    reinterpret_cast<const char*>(&v) + 16 * n, 16);
    }
}

}  // namespace

#ifdef __aarch64__
#include "md/feature/lanes_neon.inc"
#else
#include "md/feature/lanes_x86.inc"
#endif

namespace {

// Written so that the compiler sees a minimum and a maximum.
MD_INLINE I32xN AtMost(I32xN a, int32_t n) {
    const I32xN m = I32xN{} + n;
    return a < m ? a : m;
}

MD_INLINE I32xN AtLeast(I32xN a, int32_t n) {
    const I32xN m = I32xN{} + n;
    return a > m ? a : m;
}

// Keeps a value in one register: the compiler would otherwise load it a second time, or reorder
// sums until they no longer fit the registers.
MD_INLINE void Hold(I16xN* p) {
    asm("" : MD_VECTOR_REGISTER(*p));
}

}  // namespace
