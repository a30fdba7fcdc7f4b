// Per-block dumps of a frame: feature records (nDbgEn bit 5) and distance maps (bit 6). Each group
// writes some files a frame and appends to one running file. All lie in the feature folder; one
// that cannot be opened ends the run with status -1. docs/formats.md shows each format.
#pragma once

#include <cstdint>

#include "md/block_feature.h"
#include "md/output/text_out.h"

// The running files, open from DumpsOpen to DumpsClose where their bit is set.
extern TextOut tGoldenFile;
extern TextOut tDistFile;

void DumpsOpen();
void DumpsClose();

// Bit 5. `iRefIdx`: pool slot of the reference features.
void DumpFrameFeatures(int32_t iRefIdx);

// Bit 6.
void DumpFrameDist();

void DumpFeatureText(const char* szName, const BlockFeature* pFeat);
void DumpFullJson(const char* szName, int32_t iRefIdx);
void DumpFullCsv(const char* szName);
void DumpGolden();

// One section of the full JSON; iRefIdx -1 takes the current features.
void DumpFullJsonSection(TextOut* f, int32_t iRefIdx);
