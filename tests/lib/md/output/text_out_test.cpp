// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/output/text_out.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "tests/support/files.h"

namespace {

TextOut tOut;

template <TextFormat F, typename... Args>
void Print(std::string* pWant, Args... args) {
    char sz[512];
    pWant->append(sz, static_cast<size_t>(std::snprintf(sz, sizeof sz, F.sz, args...)));
    TextPrint<F>(&tOut, args...);
}

// Every kind of line the output files hold, with `n`; hexadecimal ones take no negative number.
void PrintAll(std::string* p, int32_t n) {
    Print<"%d">(p, n);
    Print<"Cell%d MoGX\t">(p, n);
    Print<"Frame_idx=%03d\n">(p, n);
    Print<"%d\t%d\r\n">(p, 0, n);
    Print<"[%03d, %03d]: %03d ">(p, 7, n, 88);
    Print<"   [%d,%d],\n   [%d,%d],\n   [%d,%d],\n   [%d,%d]">(p, n, 1, 22, 255, 0, 10, 100, n);
    if (n < 0) return;
    Print<"%02x ">(p, n);
    Print<"x:%03x,y:%03x\nhogDistAvail:%04x,hogDis:%04x\n">(p, 0, n, 1, n);
}

// A row of bytes. After each text the whole slack is free again.
void PrintBytes(std::string* p) {
    const std::vector<uint8_t> aBytes(100, 255);
    for (size_t i = 0; i < aBytes.size(); ++i) *p += ",255";
    TextPrintEach<",%d">(&tOut, aBytes.data(), static_cast<int32_t>(aBytes.size()));
    EXPECT_LT(tOut.nUsed, kTextBuffer);
}

}  // namespace

TEST(TextOut, AllBytesAndExtremesAsPrintf) {
    std::vector<int32_t> aValues = {INT_MIN, -1000, -100, -99,  -10,   -9,    -1,     256,
                                    999,     1000,  4095, 4096, 65535, 65536, INT_MAX};
    for (int32_t n = 0; n < 256; ++n) aValues.push_back(n);
    const TempFolder tFolder;
    const std::string sPath = (tFolder / "text").string();
    for (const bool bPlain : {false, true}) {
        bTextPlain = bPlain;
        TextOpen(&tOut, sPath.c_str(), "file");
        std::string sWant;
        while (sWant.size() < 3 * kTextBuffer) {
            for (const int32_t n : aValues) PrintAll(&sWant, n);
        }
        TextClose(&tOut);
        EXPECT_TRUE(ReadAll(sPath) == sWant) << "plain " << bPlain;
    }
    bTextPlain = false;
}

TEST(TextOut, NothingLostWhereTheBufferFills) {
    const TempFolder tFolder;
    const std::string sPath = (tFolder / "text").string();
    for (size_t nFilled = kTextBuffer - 70; nFilled <= kTextBuffer + 1; ++nFilled) {
        std::string sWant(nFilled, 'x');
        TextOpen(&tOut, sPath.c_str(), "file");
        for (size_t i = 0; i < nFilled; ++i) TextPrint<"x">(&tOut);
        PrintBytes(&sWant);
        PrintAll(&sWant, INT_MIN);
        TextClose(&tOut);
        ASSERT_TRUE(ReadAll(sPath) == sWant) << nFilled;
    }
}
