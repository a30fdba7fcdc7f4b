// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "app/frame_reader.h"

#include "md/platform/platform.h"
#include "md/print.h"

FrameReader FrameReaderOpen(const char* szPath, int32_t nWidth, int32_t nHeight, int32_t nStart,
                            bool bLumaOnly) {
    std::FILE* pFile = OpenToRead(szPath);
    if (pFile == nullptr) {
        EndRun(stdout, kExitRefused, "open input yuv file '%s' error\n", szPath);
    }
    // Frames go straight into their buffer.
    std::setvbuf(pFile, nullptr, _IONBF, 0);
    const int64_t nPixels = int64_t{nWidth} * nHeight;
    const auto nFrameBytes = static_cast<int32_t>((nPixels * 3) >> 1);  // MdInit saw that it fits
    const int64_t nOffset = int64_t{nFrameBytes} * nStart;
    (void)FileSeek64(pFile, nOffset);
    return {pFile, nOffset, nFrameBytes, static_cast<int32_t>(nPixels), bLumaOnly};
}

int32_t FrameReaderNext(FrameReader* pReader, uint8_t* pYuv) {
    FrameReader& t = *pReader;
    const int64_t nEnd = t.nOffset + t.nFrameBytes;
    // The length is asked for every frame: a file may shrink or grow during a run.
    const bool bSkip = t.bLumaOnly && RegularFileSize(t.pFile) >= nEnd;
    const auto nWanted = static_cast<size_t>(bSkip ? t.nLumaBytes : t.nFrameBytes);
    const size_t nRead = std::fread(pYuv, 1, nWanted, t.pFile);
    if (nRead < nWanted) return static_cast<int32_t>(nRead);
    t.nOffset = nEnd;
    if (bSkip) (void)FileSeek64(t.pFile, nEnd);
    return t.nFrameBytes;
}

bool FrameReaderFailed(const FrameReader& tReader) {
    return std::ferror(tReader.pFile) != 0;
}

void FrameReaderClose(FrameReader* pReader) {
    std::fclose(pReader->pFile);
    pReader->pFile = nullptr;
}
