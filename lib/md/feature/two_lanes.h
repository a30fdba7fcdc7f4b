// Vectors of two lanes of 16 bytes, in the compiler's own vector types, and the few operations the
// kernels need beyond its operators. None of them moves anything from one lane to the other, so
// each is one instruction of AVX2, or the same instruction of SSSE3 once a lane. Nothing here calls
// a library template: no code built for a newer processor can be linked into an older path.
#pragma once

#include <immintrin.h>

#include <cstdint>
#include <cstring>

namespace {

using U8x32 = uint8_t __attribute__((vector_size(32)));
using I16x16 = int16_t __attribute__((vector_size(32)));
using I32x8 = int32_t __attribute__((vector_size(32)));
using I64x4 = int64_t __attribute__((vector_size(32)));

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

// The two lanes from places of their own, and to them.
MD_INLINE U8x32 LoadLanes(const uint8_t* pFirst, const uint8_t* pSecond) {
    const __m128i a = Load<__m128i>(pFirst), b = Load<__m128i>(pSecond);
#ifdef __AVX2__
    return (U8x32)_mm256_set_m128i(b, a);
#else
    const __m128i x[2] = {a, b};
    return Load<U8x32>(x);
#endif
}

MD_INLINE void StoreLanes(int16_t* pFirst, int16_t* pSecond, I16x16 v) {
    std::memcpy(pFirst, &v, 16);
    std::memcpy(pSecond, (const char*)&v + 16, 16);
}

#ifdef __AVX2__
#define MD_OPERATION(V, Name, Operand, op)             \
    MD_INLINE V Name(Operand a, Operand b) {           \
        return (V)_mm256_##op((__m256i)a, (__m256i)b); \
    }
#else
#define MD_OPERATION(V, Name, Operand, op)   \
    MD_INLINE V Name(Operand a, Operand b) { \
        __m128i x[2], y[2];                  \
        std::memcpy(x, &a, sizeof a);        \
        std::memcpy(y, &b, sizeof b);        \
        x[0] = _mm_##op(x[0], y[0]);         \
        x[1] = _mm_##op(x[1], y[1]);         \
        return Load<V>(x);                   \
    }
#endif

MD_OPERATION(I16x16, Max, I16x16, max_epi16)
MD_OPERATION(I16x16, TakeSign, I16x16, sign_epi16)         // a, negated where b is negative
MD_OPERATION(I16x16, MulHigh, I16x16, mulhi_epu16)         // high halves of unsigned products
MD_OPERATION(I32x8, PairDot, I16x16, madd_epi16)           // a0 b0 + a1 b1, a2 b2 + a3 b3, ...
MD_OPERATION(I16x16, BytePairDot, U8x32, maddubs_epi16)    // the same; a unsigned, b signed bytes
MD_OPERATION(I32x8, AddNeighbours, I32x8, hadd_epi32)      // a0 + a1, a2 + a3, b0 + b1, b2 + b3
MD_OPERATION(U8x32, Shuffle, U8x32, shuffle_epi8)          // a at the places b; 0 from place 128
MD_OPERATION(U8x32, InterleaveLow, U8x32, unpacklo_epi8)   // a0 b0 ... a7 b7 of each lane
MD_OPERATION(U8x32, InterleaveHigh, U8x32, unpackhi_epi8)  // a8 b8 ... a15 b15
MD_OPERATION(I64x4, SumDifferences, U8x32, sad_epu8)       // |a0 - b0| + ... + |a7 - b7|, ...

#undef MD_OPERATION

MD_INLINE I16x16 Abs(I16x16 a) {
    return TakeSign(a, a);
}

}  // namespace
