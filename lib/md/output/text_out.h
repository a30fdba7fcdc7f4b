// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Text files of a run: printf formats, resolved when the program is compiled, into a large buffer.
//
//     TextPrint<"x:%03x,y:%03x\n">(&tText, bx, by);
//
// Conversions: %d, %0Nd, %x and %0Nx of integers, nothing else; hexadecimal values are not
// negative. A dump prints millions of small numbers, so values of one byte come from a table of
// ready strings, and literal text is copied with its size known. The plain definition of every
// TextPrint is fprintf of the same format with the same arguments; bTextPlain makes a run use that.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "md/out_file.h"

extern bool bTextPlain;  // all text goes through fprintf

constexpr size_t kTextBuffer = size_t{1} << 18;  // bytes gathered before they are written
constexpr size_t kTextSlack = 512;               // longest text of one TextPrint

struct TextOut {
    OutFile tFile;
    size_t nUsed = 0;
    char aBuffer[kTextBuffer + kTextSlack];
};

// Opens for writing. `szPath` must outlive the open file. A file that cannot be opened ends the run
// with status -1; `szKind` names it in the message, as in "golden data file".
void TextOpen(TextOut* pOut, const char* szPath, const char* szKind);

// Writes out what is gathered.
void TextFlush(TextOut* pOut);

// Drops what is gathered and the file with it, without closing it.
void TextForget(TextOut* pOut);

// Closes the file, if it is open; one warning line if not all of it could be written.
void TextClose(TextOut* pOut);

// ---- How a format becomes code -------------------------------------------------------------

template <size_t N>
struct TextFormat {
    char sz[N];
    // NOLINTNEXTLINE(google-explicit-constructor): a string literal is meant to become one
    constexpr TextFormat(const char (&szText)[N]) {
        for (size_t i = 0; i < N; ++i) sz[i] = szText[i];
    }
    static constexpr size_t nLength = N - 1;
};

// Up to three digits of a byte and their number, copied as one word of four bytes.
struct ByteText {
    char aDigits[3];
    uint8_t nLength;
};

inline constexpr std::array<ByteText, 256> aByteDecimal = [] {
    std::array<ByteText, 256> aTable{};
    for (unsigned n = 0; n < 256; ++n) {
        ByteText& t = aTable[n];
        if (n >= 100) t.aDigits[t.nLength++] = static_cast<char>('0' + n / 100);
        if (n >= 10) t.aDigits[t.nLength++] = static_cast<char>('0' + n / 10 % 10);
        t.aDigits[t.nLength++] = static_cast<char>('0' + n % 10);
    }
    return aTable;
}();

// The numbers without a short way. Out of line: its array would bring the stack's guard, set and
// tested on every call, into each text that prints a number.
template <bool bHex>
[[gnu::noinline]] char* PutLongNumber(char* p, int32_t nValue, int nWidth) {
    char aDigits[12];
    const auto [pEnd, ec] =
        bHex ? std::to_chars(aDigits, aDigits + sizeof aDigits, static_cast<uint32_t>(nValue), 16)
             : std::to_chars(aDigits, aDigits + sizeof aDigits, nValue);
    const char* pFrom = aDigits;
    int nDigits = static_cast<int>(pEnd - aDigits);
    if (nWidth > nDigits && *pFrom == '-') *p++ = *pFrom++;  // the sign comes before the zeros
    for (; nDigits < nWidth; ++nDigits) *p++ = '0';
    std::memcpy(p, pFrom, static_cast<size_t>(pEnd - pFrom));
    return p + (pEnd - pFrom);
}

// Writes at p, returns the place after it. Plain %d: the table or to_chars; with a width or in
// hexadecimal: to_chars after the missing zeros.
template <bool bHex, int nWidth>
char* PutNumber(char* p, int32_t nValue) {
    if constexpr (!bHex && nWidth == 0) {
        if (static_cast<uint32_t>(nValue) < 256) {
            const ByteText& t = aByteDecimal[static_cast<size_t>(nValue)];
            std::memcpy(p, &t, sizeof t);
            return p + t.nLength;
        }
    }
    if constexpr (bHex && nWidth >= 2) {
        if (static_cast<uint32_t>(nValue) < 256) {
            constexpr char szDigits[] = "0123456789abcdef";
            for (int i = 2; i < nWidth; ++i) *p++ = '0';
            *p++ = szDigits[nValue >> 4];
            *p++ = szDigits[nValue & 15];
            return p;
        }
    }
    if constexpr (!bHex && nWidth == 3) {
        if (static_cast<uint32_t>(nValue) < 1000) {
            *p++ = static_cast<char>('0' + nValue / 100);
            *p++ = static_cast<char>('0' + nValue / 10 % 10);
            *p++ = static_cast<char>('0' + nValue % 10);
            return p;
        }
    }
    return PutLongNumber<bHex>(p, nValue, nWidth);
}

template <TextFormat F, size_t nAt>
char* PutFormat(char* p) {
    constexpr size_t nRest = F.nLength - nAt;
    static_assert(std::string_view(F.sz, F.nLength).find('%', nAt) == std::string_view::npos,
                  "a conversion without its number");
    std::memcpy(p, F.sz + nAt, nRest);
    return p + nRest;
}

template <TextFormat F, size_t nAt, typename... Rest>
char* PutFormat(char* p, int32_t nValue, Rest... rest) {
    constexpr size_t nPercent = [] {
        size_t i = nAt;
        while (F.sz[i] != '%') ++i;
        return i;
    }();
    constexpr bool bWidth = F.sz[nPercent + 1] == '0';
    constexpr int nWidth = bWidth ? F.sz[nPercent + 2] - '0' : 0;
    constexpr size_t nType = nPercent + (bWidth ? 3 : 1);
    static_assert(F.sz[nType] == 'd' || F.sz[nType] == 'x');
    std::memcpy(p, F.sz + nAt, nPercent - nAt);
    p = PutNumber<F.sz[nType] == 'x', nWidth>(p + (nPercent - nAt), nValue);
    return PutFormat<F, nType + 1>(p, rest...);
}

template <TextFormat F, typename... Args>
void TextPrint(TextOut* pOut, Args... args) {
    static_assert(F.nLength + 12 * sizeof...(Args) <= kTextSlack);
    if (bTextPlain) [[unlikely]] {
        std::FILE* pFile = pOut->tFile.pFile;
        int nPrinted = 0;
        if constexpr (sizeof...(Args) == 0) {
            nPrinted = std::fputs(F.sz, pFile);
        } else {
            nPrinted = std::fprintf(pFile, F.sz, args...);
        }
        if (nPrinted < 0) pOut->tFile.bShort = true;
        return;
    }
    char* const pStart = pOut->aBuffer + pOut->nUsed;
    pOut->nUsed += static_cast<size_t>(PutFormat<F, 0>(pStart, args...) - pStart);
    if (pOut->nUsed >= kTextBuffer) TextFlush(pOut);
}

// One TextPrint for each of `nCount` bytes.
template <TextFormat F>
void TextPrintEach(TextOut* pOut, const uint8_t* pValues, int32_t nCount) {
    constexpr int32_t kTogether = kTextSlack / (F.nLength + 12);  // what the slack holds at worst
    if (bTextPlain) {
        for (int32_t i = 0; i < nCount; ++i) TextPrint<F>(pOut, pValues[i]);
        return;
    }
    for (int32_t i = 0; i < nCount;) {
        const int32_t nEnd = nCount - i < kTogether ? nCount : i + kTogether;
        char* const pStart = pOut->aBuffer + pOut->nUsed;
        char* p = pStart;
        for (; i < nEnd; ++i) p = PutFormat<F, 0>(p, pValues[i]);
        pOut->nUsed += static_cast<size_t>(p - pStart);
        if (pOut->nUsed >= kTextBuffer) TextFlush(pOut);
    }
}
