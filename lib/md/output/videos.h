// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The raw overlay videos of a run and their mp4 files. comp (nDbgEn bit 1) shows three frames side
// by side with the detection drawn on the right one, hogDist (bit 4) one frame with the same
// drawing, motionArea (bit 3) one frame with the object's box and centre. A video whose bit is
// clear costs nothing and makes no file.
//
// Order within a frame: OutputCopyCanvases before detection, OutputDrawBlockDots after it,
// OutputBoxAndWrite last. motionArea is drawn into the current frame itself, which nothing reads
// afterwards.
#pragma once

#include <cstdint>

// Whether any video is on; without one nothing reads a frame's chroma.
bool VideosOn();

// Opens the enabled raw files and starts the count log. A raw file that cannot be opened ends the
// run with status -1.
void OutputFilesOpen(const char* szOutputPath);

void OutputCopyCanvases();
void OutputDrawBlockDots();
void OutputBoxAndWrite();
void OutputFilesClose();

// Encodes each raw video with the outside converter, one after the other; never ends the run.
void OutputConvertMp4();
