// The vectors of the row kernels: one or two lanes of 16 bytes, whichever is the native width of
// the instruction set that the including file is built for. Nothing is emulated, so a kernel's text
// is written once: with two lanes a vector holds a pixel row of both cells of a block, with one it
// holds one cell's and the text takes the two sides in turn.
//
// Most arithmetic is the compiler's own operators on vector types. Below is what they lack, each
// operation one instruction of x86 (SSSE3, AVX2) and one to four of NEON. None moves anything from
// lane to lane but Spread. All is inlined and nothing calls a library template: no code built for a
// newer processor can be linked into an older path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __aarch64__
#include <arm_neon.h>
#else
#include <immintrin.h>
#endif

namespace {

#ifdef __AVX2__
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

// The lanes to places of their own; of a vector of one lane that is the first.
template <typename V, typename T>
MD_INLINE void StoreLanes(T* const* ppPlaces, ptrdiff_t nOffset, V v) {
    for (int32_t n = 0; n < kLanes; ++n) {
        std::memcpy(ppPlaces[n] + nOffset, reinterpret_cast<const char*>(&v) + 16 * n, 16);
    }
}

#ifdef __aarch64__

MD_INLINE U8xN LoadTwice(const uint8_t* p) {
    return Load<U8xN>(p);
}
MD_INLINE U8xN LoadCells(const uint8_t* p) {
    return Load<U8xN>(p);
}
MD_INLINE U8xN Spread(U8xN a) {
    return a;
}
MD_INLINE I16xN Abs(I16xN a) {
    return (I16xN)vabsq_s16((int16x8_t)a);
}
MD_INLINE I16xN Max(I16xN a, I16xN b) {
    return (I16xN)vmaxq_s16((int16x8_t)a, (int16x8_t)b);
}
MD_INLINE I16xN MulHigh(I16xN a, I16xN b) {
    const uint32x4_t nLow = vmull_u16(vget_low_u16((uint16x8_t)a), vget_low_u16((uint16x8_t)b));
    const uint32x4_t nHigh = vmull_high_u16((uint16x8_t)a, (uint16x8_t)b);
    return (I16xN)vuzp2q_u16(vreinterpretq_u16_u32(nLow), vreinterpretq_u16_u32(nHigh));
}
MD_INLINE I32xN PairDot(I16xN a, I16xN b) {
    const int32x4_t nLow = vmull_s16(vget_low_s16((int16x8_t)a), vget_low_s16((int16x8_t)b));
    return (I32xN)vpaddq_s32(nLow, vmull_high_s16((int16x8_t)a, (int16x8_t)b));
}
// Two products a pair, which 16 bits hold: a byte times a tap of -8 to 8.
MD_INLINE I16xN BytePairDot(U8xN a, I16xN nTaps) {
    const I16xN nFirst = ((I16xN)a & 0xFF) * ((nTaps << 8) >> 8);
    return nFirst + (I16xN)vshrq_n_u16((uint16x8_t)a, 8) * (nTaps >> 8);
}
MD_INLINE I32xN AddNeighbours(I32xN a, I32xN b) {
    return (I32xN)vpaddq_s32((int32x4_t)a, (int32x4_t)b);
}
MD_INLINE I64xN SumBytes(U8xN a) {
    return (I64xN)vpaddlq_u32(vpaddlq_u16(vpaddlq_u8((uint8x16_t)a)));
}
MD_INLINE U8xN Shuffle(U8xN a, U8xN nPlaces) {
    return (U8xN)vqtbl1q_u8((uint8x16_t)a, (uint8x16_t)nPlaces);
}
MD_INLINE U8xN InterleaveLow(U8xN a, U8xN b) {
    return (U8xN)vzip1q_u8((uint8x16_t)a, (uint8x16_t)b);
}
MD_INLINE U8xN InterleaveHigh(U8xN a, U8xN b) {
    return (U8xN)vzip2q_u8((uint8x16_t)a, (uint8x16_t)b);
}
MD_INLINE U8xN PackBytes(I16xN a, I16xN b) {
    return (U8xN)vqmovun_high_s16(vqmovun_s16((int16x8_t)a), (int16x8_t)b);
}
MD_INLINE F32xN Sqrt(F32xN a) {
    return (F32xN)vsqrtq_f32((float32x4_t)a);
}
#define MD_VECTOR_REGISTER "+w"

#else

#ifdef __AVX2__
#define MD_X86(op) _mm256_##op
using Vector = __m256i;
MD_INLINE U8xN LoadTwice(const uint8_t* p) {  // the same 16 bytes in both lanes
    return (U8xN)_mm256_broadcastsi128_si256(Load<__m128i>(p));
}
MD_INLINE U8xN LoadCells(const uint8_t* p) {  // each lane from another cell on
    return (U8xN)_mm256_set_m128i(Load<__m128i>(p + 8), Load<__m128i>(p));
}
// Quarters 0, 2, 1, 3: what interleaving then makes of the low halves of the lanes comes before
// what it makes of the high ones.
MD_INLINE U8xN Spread(U8xN a) {
    return (U8xN)_mm256_permute4x64_epi64((Vector)a, 0xD8);
}
MD_INLINE F32xN Sqrt(F32xN a) {
    return (F32xN)_mm256_sqrt_ps((__m256)a);
}
#else
#define MD_X86(op) _mm_##op
using Vector = __m128i;
MD_INLINE U8xN LoadTwice(const uint8_t* p) {
    return Load<U8xN>(p);
}
MD_INLINE U8xN LoadCells(const uint8_t* p) {
    return Load<U8xN>(p);
}
MD_INLINE U8xN Spread(U8xN a) {
    return a;
}
MD_INLINE F32xN Sqrt(F32xN a) {
    return (F32xN)_mm_sqrt_ps((__m128)a);
}
#endif

MD_INLINE I16xN Abs(I16xN a) {
    return (I16xN)MD_X86(abs_epi16)((Vector)a);
}
MD_INLINE I16xN Max(I16xN a, I16xN b) {
    return (I16xN)MD_X86(max_epi16)((Vector)a, (Vector)b);
}
// High halves of unsigned products.
MD_INLINE I16xN MulHigh(I16xN a, I16xN b) {
    return (I16xN)MD_X86(mulhi_epu16)((Vector)a, (Vector)b);
}
// a0 b0 + a1 b1, a2 b2 + a3 b3, ...
MD_INLINE I32xN PairDot(I16xN a, I16xN b) {
    return (I32xN)MD_X86(madd_epi16)((Vector)a, (Vector)b);
}
// The same of unsigned bytes with pairs of signed ones.
MD_INLINE I16xN BytePairDot(U8xN a, I16xN nTaps) {
    return (I16xN)MD_X86(maddubs_epi16)((Vector)a, (Vector)nTaps);
}
// a0 + a1, a2 + a3, b0 + b1, b2 + b3 of each lane.
MD_INLINE I32xN AddNeighbours(I32xN a, I32xN b) {
    return (I32xN)MD_X86(hadd_epi32)((Vector)a, (Vector)b);
}
// Sums of eight bytes each.
MD_INLINE I64xN SumBytes(U8xN a) {
    return (I64xN)MD_X86(sad_epu8)((Vector)a, (Vector)U8xN{});
}
// Bytes of a at the places given, of the same lane; 0 at place 128.
MD_INLINE U8xN Shuffle(U8xN a, U8xN nPlaces) {
    return (U8xN)MD_X86(shuffle_epi8)((Vector)a, (Vector)nPlaces);
}
// a0 b0 ... a7 b7 of each lane.
MD_INLINE U8xN InterleaveLow(U8xN a, U8xN b) {
    return (U8xN)MD_X86(unpacklo_epi8)((Vector)a, (Vector)b);
}
// a8 b8 ... a15 b15 of each lane.
MD_INLINE U8xN InterleaveHigh(U8xN a, U8xN b) {
    return (U8xN)MD_X86(unpackhi_epi8)((Vector)a, (Vector)b);
}
// Eight numbers of a, then eight of b in each lane, cut to 0 to 255.
MD_INLINE U8xN PackBytes(I16xN a, I16xN b) {
    return (U8xN)MD_X86(packus_epi16)((Vector)a, (Vector)b);
}
#ifdef __AVX512VL__
#define MD_VECTOR_REGISTER "+v"
#else
#define MD_VECTOR_REGISTER "+x"
#endif

#endif

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
