// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/input/raw_files.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "md/out_file.h"
#include "md/platform/platform.h"
#include "md/print.h"

int32_t YuvI400ToI420(const char* szInput, int32_t nWidth, int32_t nHeight, const char* szOutput) {
    const uint64_t nPixels = static_cast<uint64_t>(nWidth) * static_cast<uint64_t>(nHeight);
    const auto nLuma = static_cast<size_t>(nPixels);
    const auto nFrame = static_cast<size_t>((nPixels * 3) >> 1);
    // A size in a name is not limited: a frame may be larger than a 32-bit system can count.
    const bool bCounts = nFrame == (nPixels * 3) >> 1;
    std::FILE* pIn = OpenToRead(szInput);
    RefuseToOverwrite(szOutput, szInput, kExitInput);
    OutFile tOut;
    const bool bOut = OutFileOpen(&tOut, szOutput);
    uint8_t* pFrame = bCounts ? static_cast<uint8_t*>(std::malloc(nFrame)) : nullptr;
    RequireMemory(pFrame != nullptr, "a frame of the luma input");
    if (pIn == nullptr) {
        MdPrint("Load Y video %s error.\n", szInput);
    } else if (!bOut) {
        MdPrint("Can't open I420 video %s for writing.\n", szOutput);
    } else {
        while (std::fread(pFrame, 1, nLuma, pIn) == nLuma) {
            std::memset(pFrame + nLuma, 128, nLuma >> 1);
            OutFileWrite(&tOut, pFrame, nFrame);
        }
    }
    std::free(pFrame);
    if (pIn != nullptr) std::fclose(pIn);
    OutFileClose(&tOut);
    return 1;
}

void copyfile(const char* szDestination, const char* szSource) {
    std::FILE* pIn = OpenToRead(szSource);
    if (pIn == nullptr) EndRun(stderr, kExitInput, "[ERROR] copyfile: src %s error\n", szSource);
    RefuseToOverwrite(szDestination, szSource, kExitInput);
    OutFile tOut;
    if (!OutFileOpen(&tOut, szDestination)) {
        EndRun(stderr, kExitInput, "[ERROR] copyfile: dst %s error\n", szDestination);
    }
    char aBlock[1024];
    while (const size_t nRead = std::fread(aBlock, 1, sizeof aBlock, pIn)) {
        OutFileWrite(&tOut, aBlock, nRead);
    }
    std::fclose(pIn);
    OutFileClose(&tOut);
}
