// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Reads the working file frame by frame: 4:2:0, tightly packed, from any start.
#pragma once

#include <cstdint>
#include <cstdio>

struct FrameReader {
    std::FILE* pFile;
    int64_t nOffset;      // of the next frame, bytes
    int32_t nFrameBytes;  // of a frame
    int32_t nLumaBytes;   // of its Y plane, which comes first
    bool bLumaOnly;       // nothing reads chroma: its bytes are passed over
};

// Opens `szPath` and seeks to frame nStart; a start beyond the end shows at the first read. A file
// that cannot be opened ends the run with status -1.
FrameReader FrameReaderOpen(const char* szPath, int32_t nWidth, int32_t nHeight, int32_t nStart,
                            bool bLumaOnly);

// Reads the next frame into pYuv, room for nFrameBytes. Returns the bytes of it that the file
// holds, nFrameBytes for a whole frame. Of a frame whose chroma is passed over only the Y plane is
// written.
int32_t FrameReaderNext(FrameReader* pReader, uint8_t* pYuv);

// Whether the last read failed, where it would else look like the end of the file.
bool FrameReaderFailed(const FrameReader& tReader);

void FrameReaderClose(FrameReader* pReader);
