#include "md/output/dumps.h"

#include <cstdlib>

#include "md/compose_path.h"
#include "md/run_state.h"
#include "md/run_switches.h"

TextOut tGoldenFile;
TextOut tDistFile;

namespace {

constexpr int32_t kCellsPerBlock = 4;

TextOut tFrameFile;  // the per-frame file in hand; one is open at a time

void OpenFrameFile(const char* szPath) {
    TextOpen(&tFrameFile, szPath, "dump file");
}

// "%s/%04d" + szEnding in the feature folder; frames are numbered from 1 in names.
void FrameFileName(char (&szName)[640], const char* szEnding) {
    ComposePath(szName, kExitRefused, "%s/%04d%s", tSimParams.szFeaturePath,
                tSimParams.tMd.CurFrmId + tSimParams.nStartFrameIdx + 1, szEnding);
}

// Calls fnBlock(bx, by, i) for every block in raster order.
template <typename Block>
void ForEachBlock(Block fnBlock) {
    for (int32_t by = 0, i = 0; by < tMdResult.nBlkH; ++by) {
        for (int32_t bx = 0; bx < tMdResult.nBlkW; ++bx, ++i) fnBlock(bx, by, i);
    }
}

// Numbers with commas between them, none behind the last.
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

}  // namespace

void DumpsOpen() {
    static char szGolden[640];
    static char szDist[640];
    constexpr const char* szMessage = "golden data file";
    bTextPlain = Switches().bPlainText;
    std::atexit(DumpsClose);  // a run that ends early keeps the records of its whole frames
    if ((tSimParams.tMd.nDbgEn & kDbgFeatures) != 0) {
        ComposePath(szGolden, kExitRefused, "%s/hogmd_golden.txt", tSimParams.szFeaturePath);
        TextOpen(&tGoldenFile, szGolden, szMessage);
    }
    if ((tSimParams.tMd.nDbgEn & kDbgDistances) != 0) {
        ComposePath(szDist, kExitRefused, "%s/hogmd_dist.txt", tSimParams.szFeaturePath);
        TextOpen(&tDistFile, szDist, szMessage);
    }
}

void DumpsClose() {
    TextClose(&tGoldenFile);
    TextClose(&tDistFile);
}

void DumpFrameFeatures(int32_t iRefIdx) {
    char logfilePath_hog[640];
    FrameFileName(logfilePath_hog, "_HOGCur.txt");
    DumpFeatureText(logfilePath_hog, tMdResult.pCurFeat);
    FrameFileName(logfilePath_hog, "_HOGRef.txt");
    DumpFeatureText(logfilePath_hog, tMdResult.pFeaturePool[iRefIdx]);
    FrameFileName(logfilePath_hog, "_Full.json");
    DumpFullJson(logfilePath_hog, iRefIdx);
    FrameFileName(logfilePath_hog, "_Full.csv");
    DumpFullCsv(logfilePath_hog);
    DumpGolden();
}

void DumpFeatureText(const char* szName, const BlockFeature* pFeat) {
    TextOut* f = &tFrameFile;
    OpenFrameFile(szName);
    TextPrint<"Cur Frame Features\nEnabled: ">(f);
    TextPrint<"MOG,">(f);
    TextPrint<"\n">(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        TextPrint<"blk[%d, %d]:, ">(f, bx, by);
        TextPrintEach<"%d ">(f, pFeat[i].v, kVectorSize);
        TextPrint<", , \nhistNorm:%d\nAvgY:%d\n">(f, pFeat[i].histNorm0, pFeat[i].nAvgY);
    });
    TextClose(f);
}

void DumpFullJson(const char* szName, int32_t iRefIdx) {
    OpenFrameFile(szName);
    TextPrint<"{\n">(&tFrameFile);
    DumpFullJsonSection(&tFrameFile, -1);
    TextPrint<",\n\"Ref\" : {\n">(&tFrameFile);
    DumpFullJsonSection(&tFrameFile, iRefIdx);
    TextPrint<"}\n">(&tFrameFile);
    TextPrint<"}\n">(&tFrameFile);
    TextClose(&tFrameFile);
}

void DumpFullJsonSection(TextOut* f, int32_t iRefIdx) {
    const BlockFeature* pFeat =
        iRefIdx == -1 ? tMdResult.pCurFeat : tMdResult.pFeaturePool[iRefIdx];
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

void DumpFullCsv(const char* szName) {
    TextOut* f = &tFrameFile;
    const bool bVector = (tSimParams.tMd.nMD_MetricMode & kMetricMog) != 0;
    OpenFrameFile(szName);
    TextPrint<"Block Y ID\tBlock X ID\tBlock avgY\tBlock histNorm\t">(f);
    if (bVector) {
        for (int32_t c = 0; c < kCellsPerBlock; ++c) TextPrint<"Cell%d MoGX\t">(f, c);
        for (int32_t c = 0; c < kCellsPerBlock; ++c) TextPrint<"Cell%d MoGY\t">(f, c);
        TextPrint<"Block MoGX\tBlock MoGY\t">(f);
    }
    TextPrint<"Dist\tAvailMask\r\n">(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        const BlockFeature& tFeat = tMdResult.pCurFeat[i];
        TextPrint<"%d\t%d\t%d\t%d\t">(f, by, bx, tFeat.nAvgY, tFeat.histNorm0);
        if (bVector) TextPrintEach<"%d\t">(f, tFeat.v, kVectorSize);
        TextPrint<"%d\t%d\r\n">(f, tMdResult.pDistMap[i], tMdResult.pAvailMap[i]);
    });
    TextClose(f);
}

void DumpGolden() {
    TextOut* f = &tGoldenFile;
    const int32_t nMode = tSimParams.tMd.nMD_MetricMode;
    PrintFrameHeading(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        const BlockFeature& tFeat = tMdResult.pCurFeat[i];
        TextPrint<"x:%03x,y:%03x\n">(f, bx, by);
        if (nMode != 0) TextPrint<"nAvgY=%02x\n">(f, tFeat.nAvgY);
        if ((nMode & kMetricMog) != 0) {
            TextPrint<"MATRIX_MODE2:">(f);
            TextPrintEach<"%02x ">(f, tFeat.v, kVectorSize);
            TextPrint<"\nhistNorm2=%02x\n">(f, tFeat.histNorm2);
        }
    });
}

void DumpFrameDist() {
    char logfilePath_hog[640];
    TextOut* f = &tFrameFile;
    FrameFileName(logfilePath_hog, "_HOGDist.txt");
    OpenFrameFile(logfilePath_hog);
    TextPrint<"Output BlkHogDist\n">(f);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        TextPrint<"[%03d, %03d]: %03d ">(f, bx, by, tMdResult.pDistMap[i]);
        if (bx == tMdResult.nBlkW - 1) TextPrint<"\n">(f);
    });
    TextClose(f);

    FrameFileName(logfilePath_hog, "_HOGDist.json");
    OpenFrameFile(logfilePath_hog);
    TextPrint<"{\n \"BlkW\": %d,\n \"BlkH\": %d,\n \"Dist\": [\n">(f, tMdResult.nBlkW,
                                                                   tMdResult.nBlkH);
    PrintMapRows(f, tMdResult.pDistMap);
    TextPrint<" ]\n}\n">(f);
    TextClose(f);

    PrintFrameHeading(&tDistFile);
    ForEachBlock([&](int32_t bx, int32_t by, int32_t i) {
        TextPrint<"x:%03x,y:%03x\nhogDistAvail:%04x,hogDis:%04x\n">(
            &tDistFile, bx, by, tMdResult.pAvailMap[i], tMdResult.pDistMap[i]);
    });
}
