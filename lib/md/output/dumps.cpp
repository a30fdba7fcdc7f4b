// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/output/dumps.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "md/compose_path.h"
#include "md/output/object_report.h"
#include "md/output/text_out.h"
#include "md/run_state.h"
#include "md/run_switches.h"

namespace {

constexpr int32_t kCellsPerBlock = 4;

// Calls fnBlock(bx, by, i) for every block in raster order.
template <typename Block>
void ForEachBlock(Block fnBlock) {
    for (int32_t by = 0, i = 0; by < tMdResult.nBlkH; ++by) {
        for (int32_t bx = 0; bx < tMdResult.nBlkW; ++bx, ++i) fnBlock(bx, by, i);
    }
}

// Numbers with commas between them, none after the last.
void PrintList(TextOut* pFile, const uint8_t* pValues, int32_t nCount) {
    TextPrint<"%d">(pFile, pValues[0]);
    TextPrintEach<",%d">(pFile, pValues + 1, nCount - 1);
}

// A map as JSON rows.
void PrintMapRows(TextOut* pFile, const uint8_t* pMap) {
    for (int32_t by = 0; by < tMdResult.nBlkH; ++by) {
        TextPrint<"  [">(pFile);
        PrintList(pFile, pMap + by * tMdResult.nBlkW, tMdResult.nBlkW);
        TextPrint<"]">(pFile);
        if (by < tMdResult.nBlkH - 1) TextPrint<",">(pFile);
        TextPrint<"\n">(pFile);
    }
}

// Heading of a frame's record in a running file; there frames are numbered from 0.
void PrintFrameHeading(TextOut* pFile) {
    TextPrint<"****************\n">(pFile);
    TextPrint<"Frame_idx=%03d\n">(pFile, tSimParams.tMd.CurFrmId + tSimParams.nStartFrameIdx);
    TextPrint<"****************\n">(pFile);
}

void DumpFeatureText(TextOut* f, const BlockFeature* pFeat) {
    TextPrint<"Cur Frame Features\nEnabled: ">(f);
    TextPrint<"MOG,">(f);
    TextPrint<"\n">(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        TextPrint<"blk[%d, %d]:, ">(f, bx, by);
        TextPrintEach<"%d ">(f, pFeat[i].v, kVectorSize);
        TextPrint<", , \nhistNorm:%d\nAvgY:%d\n">(f, pFeat[i].histNorm0, pFeat[i].nAvgY);
    });
}

void DumpCurrent(TextOut* f) {
    DumpFeatureText(f, CurrentRecords(tMdResult));
}

void DumpReference(TextOut* f) {
    DumpFeatureText(f, SlotRecords(tMdResult, tSimParams.tMd.RefBufIdx));
}

void DumpFullJsonSection(TextOut* f, const BlockFeature* pFeat) {
    const int32_t nLast = tMdResult.nBlkW * tMdResult.nBlkH - 1;
    TextPrint<" \"MOG\":{\n  \"BlkW\": %d,\n  \"BlkH\": %d,  \"Cell\": %d,\n  \"CellData\": [\n">(
        f, tMdResult.nBlkW, tMdResult.nBlkH, kCellsPerBlock);
    ForEachBlock([&](int32_t, int32_t, int32_t i) {
        const uint8_t* v = pFeat[i].v;
        // The vector's first eight bytes two by two, in their stored order.
        TextPrint<"   [%d,%d],\n   [%d,%d],\n   [%d,%d],\n   [%d,%d]">(f, v[0], v[1], v[2], v[3],
                                                                       v[4], v[5], v[6], v[7]);
        if (i != nLast) TextPrint<",">(f);
        TextPrint<"\n">(f);
    });
    TextPrint<"  ],\n  \"BlkData\": [\n">(f);
    ForEachBlock([&](int32_t, int32_t, int32_t i) {
        TextPrint<"   [">(f);
        PrintList(f, pFeat[i].v, kVectorSize);
        TextPrint<"]">(f);
        if (i != nLast) TextPrint<",">(f);
        TextPrint<"\n">(f);
    });
    TextPrint<"  ]\n }\n">(f);
    TextPrint<" ,\n">(f);
    TextPrint<" \"Dist\": [\n">(f);
    PrintMapRows(f, tMdResult.pDistMap);
    TextPrint<" ]\n">(f);
    TextPrint<" ,\n">(f);
    TextPrint<" \"Avail\": [\n">(f);
    PrintMapRows(f, tMdResult.pAvailMap);
    TextPrint<" ]\n">(f);
}

void DumpFullJson(TextOut* f) {
    TextPrint<"{\n">(f);
    DumpFullJsonSection(f, CurrentRecords(tMdResult));
    TextPrint<",\n\"Ref\" : {\n">(f);
    DumpFullJsonSection(f, SlotRecords(tMdResult, tSimParams.tMd.RefBufIdx));
    TextPrint<"}\n">(f);
    TextPrint<"}\n">(f);
}

void DumpFullCsv(TextOut* f) {
    const BlockFeature* const pFeat = CurrentRecords(tMdResult);
    const bool bVector = (tSimParams.tMd.nMD_MetricMode & kMetricMog) != 0;
    TextPrint<"Block Y ID\tBlock X ID\tBlock avgY\tBlock histNorm\t">(f);
    if (bVector) {
        for (int32_t c = 0; c < kCellsPerBlock; ++c) TextPrint<"Cell%d MoGX\t">(f, c);
        for (int32_t c = 0; c < kCellsPerBlock; ++c) TextPrint<"Cell%d MoGY\t">(f, c);
        TextPrint<"Block MoGX\tBlock MoGY\t">(f);
    }
    TextPrint<"Dist\tAvailMask\r\n">(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        const BlockFeature& tFeat = pFeat[i];
        TextPrint<"%d\t%d\t%d\t%d\t">(f, by, bx, tFeat.nAvgY, tFeat.histNorm0);
        if (bVector) TextPrintEach<"%d\t">(f, tFeat.v, kVectorSize);
        TextPrint<"%d\t%d\r\n">(f, tMdResult.pDistMap[i], tMdResult.pAvailMap[i]);
    });
}

void DumpGolden(TextOut* f) {
    const BlockFeature* const pFeat = CurrentRecords(tMdResult);
    const int32_t nMode = tSimParams.tMd.nMD_MetricMode;
    PrintFrameHeading(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        const BlockFeature& tFeat = pFeat[i];
        TextPrint<"x:%03x,y:%03x\n">(f, bx, by);
        if (nMode != 0) TextPrint<"nAvgY=%02x\n">(f, tFeat.nAvgY);
        if ((nMode & kMetricMog) != 0) {
            TextPrint<"MATRIX_MODE2:">(f);
            TextPrintEach<"%02x ">(f, tFeat.v, kVectorSize);
            TextPrint<"\nhistNorm2=%02x\n">(f, tFeat.histNorm2);
        }
    });
}

void DumpDistText(TextOut* f) {
    TextPrint<"Output BlkHogDist\n">(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        TextPrint<"[%03d, %03d]: %03d ">(f, bx, by, tMdResult.pDistMap[i]);
        if (bx == tMdResult.nBlkW - 1) TextPrint<"\n">(f);
    });
}

void DumpDistJson(TextOut* f) {
    TextPrint<"{\n \"BlkW\": %d,\n \"BlkH\": %d,\n \"Dist\": [\n">(f, tMdResult.nBlkW,
                                                                   tMdResult.nBlkH);
    PrintMapRows(f, tMdResult.pDistMap);
    TextPrint<" ]\n}\n">(f);
}

void DumpDist(TextOut* f) {
    PrintFrameHeading(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        TextPrint<"x:%03x,y:%03x\nhogDistAvail:%04x,hogDis:%04x\n">(
            f, bx, by, tMdResult.pAvailMap[i], tMdResult.pDistMap[i]);
    });
}

enum Span { kEachFrame, kWholeRun };
enum Reads { kMapsOnly, kRecords };

// A file of the feature folder.
struct DumpFile {
    DebugBit nBit;             // switches it on
    Span nSpan;                // kEachFrame: a file for each frame; kWholeRun: one file for all
    const char* szName;        // kEachFrame: what follows the frame's number; kWholeRun: the name
    Reads nReads;              // kRecords: the feature records too
    const char* szKind;        // its name in the message when it cannot be opened
    void (*pWrite)(TextOut*);  // appends the text of the current frame
};

// In the order in which the files of a frame are written.
constexpr DumpFile aDumpFiles[] = {
    // clang-format off
    {kDbgFeatures,  kEachFrame, "_HOGCur.txt",      kRecords,  "dump file",        DumpCurrent},
    {kDbgFeatures,  kEachFrame, "_HOGRef.txt",      kRecords,  "dump file",        DumpReference},
    {kDbgFeatures,  kEachFrame, "_Full.json",       kRecords,  "dump file",        DumpFullJson},
    {kDbgFeatures,  kEachFrame, "_Full.csv",        kRecords,  "dump file",        DumpFullCsv},
    {kDbgFeatures,  kWholeRun,  "hogmd_golden.txt", kRecords,  "golden data file", DumpGolden},
    {kDbgDistances, kEachFrame, "_HOGDist.txt",     kMapsOnly, "dump file",        DumpDistText},
    {kDbgDistances, kEachFrame, "_HOGDist.json",    kMapsOnly, "dump file",        DumpDistJson},
    {kDbgDistances, kWholeRun,  "hogmd_dist.txt",   kMapsOnly, "golden data file", DumpDist},
    {kDbgObjects,   kEachFrame, "_ObjOut.txt",      kMapsOnly, "object report",    ObjectReport},
    // clang-format on
};

constexpr auto kWholeRunFiles =
    static_cast<size_t>(std::ranges::count(aDumpFiles, kWholeRun, &DumpFile::nSpan));

struct OpenDump {
    char szPath[kDumpPathSize];
    TextOut tText;
};
OpenDump aOpenDumps[kWholeRunFiles];  // of the rows kWholeRun, in their order
TextOut tFrameFile;                   // the file of one frame; one is open at a time

bool IsOn(const DumpFile& tFile) {
    return (tSimParams.tMd.nDbgEn & tFile.nBit) != 0;
}

void WriteFrameFile(const DumpFile& tFile) {
    char szPath[kDumpPathSize];
    // Frames are numbered from 1 in names.
    ComposePath(szPath, kExitRefused, "%s/%04d%s", tSimParams.szFeaturePath,
                tSimParams.tMd.CurFrmId + tSimParams.nStartFrameIdx + 1, tFile.szName);
    TextOpen(&tFrameFile, szPath, tFile.szKind);
    tFile.pWrite(&tFrameFile);
    TextClose(&tFrameFile);
}

}  // namespace

void DumpsOpen() {
    static const int nRegistered = std::atexit(DumpsClose);
    (void)nRegistered;
    bTextPlain = Switches().bPlainText;
    OpenDump* pDump = aOpenDumps;
    for (const DumpFile& tFile : aDumpFiles) {
        if (tFile.nSpan != kWholeRun) continue;
        if (IsOn(tFile)) {
            ComposePath(pDump->szPath, kExitRefused, "%s/%s", tSimParams.szFeaturePath,
                        tFile.szName);
            TextOpen(&pDump->tText, pDump->szPath, tFile.szKind);
        }
        ++pDump;
    }
}

void DumpsWriteFrame() {
    OpenDump* pDump = aOpenDumps;
    for (const DumpFile& tFile : aDumpFiles) {
        OpenDump* const pOwn = tFile.nSpan == kWholeRun ? pDump++ : nullptr;
        if (!IsOn(tFile)) continue;
        if (pOwn != nullptr) {
            tFile.pWrite(&pOwn->tText);
        } else {
            WriteFrameFile(tFile);
        }
    }
}

void DumpsClose() {
    for (OpenDump& t : aOpenDumps) TextClose(&t.tText);
}

bool DumpsReadRecords() {
    return std::ranges::any_of(aDumpFiles,
                               [](const DumpFile& t) { return IsOn(t) && t.nReads == kRecords; });
}

void DumpsReset() {
    for (OpenDump& t : aOpenDumps) TextForget(&t.tText);
    TextForget(&tFrameFile);
}

std::vector<DumpName> DumpNames() {
    std::vector<DumpName> a;
    for (const DumpFile& t : aDumpFiles) a.push_back({t.nBit, t.szName, t.nSpan == kEachFrame});
    return a;
}
