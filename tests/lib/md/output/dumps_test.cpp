#include "md/output/dumps.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <vector>

#include "md/run_state.h"
#include "tests/support/program.h"

namespace {

using Files = std::map<std::string, std::string>;

// A result made by hand: block i of the current frame holds i * 246 + 0 to 9, of the reference
// 10 * (i + 1) in every place; every byte that no dump shows is 0xEE.
struct Made {
    Made(int nBlkW, int nBlkH, int nMetricMode)
        : aCur(static_cast<size_t>(nBlkW * nBlkH)), aDist(aCur.size(), 7), aAvail(aCur.size()) {
        const auto Byte = [](size_t n) { return static_cast<uint8_t>(n); };
        const bool bVector = nMetricMode != 0;
        for (size_t i = 0; i < aCur.size(); ++i) {
            BlockFeature& t = aCur[i];
            std::memset(&t, 0xEE, sizeof t);
            for (size_t k = 0; k < kVectorSize; ++k) t.v[k] = Byte(bVector ? i * 246 + k : 0);
            t.histNorm0 = 1;
            t.nAvgY = Byte(9 + i * 119);
            t.histNorm2 = Byte(31 + i * 224);
            aRef.push_back(t);
            std::memset(aRef[i].v, bVector ? Byte(10 * (i + 1)) : 0, kVectorSize);
        }
        aDist.back() = 200;
        aAvail.back() = 1;
        std::snprintf(tSimParams.szFeaturePath, kPathSize, "%s", tFolder.Path().c_str());
        tSimParams.tMd.nMD_MetricMode = nMetricMode;
        tSimParams.tMd.nDbgEn = kDbgFeatures | kDbgDistances;
        tMdResult.nBlkW = nBlkW;
        tMdResult.nBlkH = nBlkH;
        tMdResult.pCurFeat = aCur.data();
        tMdResult.pFeaturePool[3] = aRef.data();
        tMdResult.pDistMap = aDist.data();
        tMdResult.pAvailMap = aAvail.data();
    }
    ~Made() {
        tSimParams = {};
        tMdResult = {};
        bTextPlain = false;
    }
    // Dumps frames nFirst and on; all the files that are then in the folder.
    Files Dump(int nStart, int nFirst, int nFrames) {
        tSimParams.nStartFrameIdx = nStart;
        DumpsOpen();
        for (int n = nFirst; n < nFirst + nFrames; ++n) {
            tSimParams.tMd.CurFrmId = n;
            DumpFrameFeatures(3);
            DumpFrameDist();
        }
        DumpsClose();
        Files t;
        for (const auto& tEntry : fs::directory_iterator(tFolder.Path())) {
            t[tEntry.path().filename()] = ReadAll(tEntry.path());
        }
        return t;
    }
    TempFolder tFolder;
    std::vector<BlockFeature> aCur, aRef;
    std::vector<uint8_t> aDist, aAvail;
};

std::string Stars(const std::string& sFrame) {
    return "****************\nFrame_idx=" + sFrame + "\n****************\n";
}

}  // namespace

// One row of two blocks, eleventh frame of the file, second of the run.
TEST(Dumps, OneRowWithVectorsWhole) {
    const std::string sMaps = " ,\n \"Dist\": [\n  [7,200]\n ]\n ,\n \"Avail\": [\n  [0,1]\n ]\n";
    const std::string sMog =
        " \"MOG\":{\n  \"BlkW\": 2,\n  \"BlkH\": 1,  \"Cell\": 4,\n  \"CellData\": [\n";
    const Files tWant = {
        {"0011_HOGCur.txt",
         "Cur Frame Features\nEnabled: MOG,\n"
         "blk[0, 0]:, 0 1 2 3 4 5 6 7 8 9 , , \nhistNorm:1\nAvgY:9\n"
         "blk[1, 0]:, 246 247 248 249 250 251 252 253 254 255 , , \nhistNorm:1\nAvgY:128\n"},
        {"0011_HOGRef.txt",
         "Cur Frame Features\nEnabled: MOG,\n"
         "blk[0, 0]:, 10 10 10 10 10 10 10 10 10 10 , , \nhistNorm:1\nAvgY:9\n"
         "blk[1, 0]:, 20 20 20 20 20 20 20 20 20 20 , , \nhistNorm:1\nAvgY:128\n"},
        {"0011_Full.json", "{\n" + sMog +
                               "   [0,1],\n   [2,3],\n   [4,5],\n   [6,7],\n"
                               "   [246,247],\n   [248,249],\n   [250,251],\n   [252,253]\n"
                               "  ],\n  \"BlkData\": [\n   [0,1,2,3,4,5,6,7,8,9],\n"
                               "   [246,247,248,249,250,251,252,253,254,255]\n  ]\n }\n" +
                               sMaps + ",\n\"Ref\" : {\n" + sMog +
                               "   [10,10],\n   [10,10],\n   [10,10],\n   [10,10],\n"
                               "   [20,20],\n   [20,20],\n   [20,20],\n   [20,20]\n"
                               "  ],\n  \"BlkData\": [\n   [10,10,10,10,10,10,10,10,10,10],\n"
                               "   [20,20,20,20,20,20,20,20,20,20]\n  ]\n }\n" +
                               sMaps + "}\n}\n"},
        {"0011_Full.csv",
         "Block Y ID\tBlock X ID\tBlock avgY\tBlock histNorm\tCell0 MoGX\tCell1 MoGX\t"
         "Cell2 MoGX\tCell3 MoGX\tCell0 MoGY\tCell1 MoGY\tCell2 MoGY\tCell3 MoGY\t"
         "Block MoGX\tBlock MoGY\tDist\tAvailMask\r\n"
         "0\t0\t9\t1\t0\t1\t2\t3\t4\t5\t6\t7\t8\t9\t7\t0\r\n"
         "0\t1\t128\t1\t246\t247\t248\t249\t250\t251\t252\t253\t254\t255\t200\t1\r\n"},
        {"hogmd_golden.txt",
         Stars("010") +
             "x:000,y:000\nnAvgY=09\nMATRIX_MODE2:00 01 02 03 04 05 06 07 08 09 \nhistNorm2=1f\n"
             "x:001,y:000\nnAvgY=80\nMATRIX_MODE2:f6 f7 f8 f9 fa fb fc fd fe ff \nhistNorm2=ff\n"},
        {"0011_HOGDist.txt", "Output BlkHogDist\n[000, 000]: 007 [001, 000]: 200 \n"},
        {"0011_HOGDist.json", "{\n \"BlkW\": 2,\n \"BlkH\": 1,\n \"Dist\": [\n  [7,200]\n ]\n}\n"},
        {"hogmd_dist.txt", Stars("010") + "x:000,y:000\nhogDistAvail:0000,hogDis:0007\n"
                                          "x:001,y:000\nhogDistAvail:0001,hogDis:00c8\n"}};
    for (const bool bPlain : {false, true}) {
        Made t(2, 1, kMetricMog);
        bTextPlain = bPlain;
        EXPECT_EQ(t.Dump(9, 1, 1), tWant) << "plain " << bPlain;
    }
}

// One block, metric 0, two frames: the running files go on, and only they and the csv leave the
// vector out.
TEST(Dumps, OneBlockWithoutVectorsWhole) {
    const std::string sText =
        "Cur Frame Features\nEnabled: MOG,\n"
        "blk[0, 0]:, 0 0 0 0 0 0 0 0 0 0 , , \nhistNorm:1\nAvgY:9\n";
    const std::string sMap = " \"Dist\": [\n  [200]\n ]\n";
    const std::string sSection =
        " \"MOG\":{\n  \"BlkW\": 1,\n  \"BlkH\": 1,  \"Cell\": 4,\n  \"CellData\": [\n"
        "   [0,0],\n   [0,0],\n   [0,0],\n   [0,0]\n  ],\n  \"BlkData\": [\n"
        "   [0,0,0,0,0,0,0,0,0,0]\n  ]\n }\n ,\n" +
        sMap + " ,\n \"Avail\": [\n  [1]\n ]\n";
    const std::string sBlock = "x:000,y:000\n";
    const std::string sDist = sBlock + "hogDistAvail:0001,hogDis:00c8\n";
    Files tWant = {{"hogmd_golden.txt", Stars("000") + sBlock + Stars("001") + sBlock},
                   {"hogmd_dist.txt", Stars("000") + sDist + Stars("001") + sDist}};
    for (const std::string s : {"0001", "0002"}) {
        tWant[s + "_HOGCur.txt"] = tWant[s + "_HOGRef.txt"] = sText;
        tWant[s + "_Full.json"] = "{\n" + sSection + ",\n\"Ref\" : {\n" + sSection + "}\n}\n";
        tWant[s + "_Full.csv"] =
            "Block Y ID\tBlock X ID\tBlock avgY\tBlock histNorm\t"
            "Dist\tAvailMask\r\n0\t0\t9\t1\t200\t1\r\n";
        tWant[s + "_HOGDist.txt"] = "Output BlkHogDist\n[000, 000]: 200 \n";
        tWant[s + "_HOGDist.json"] = "{\n \"BlkW\": 1,\n \"BlkH\": 1,\n" + sMap + "}\n";
    }
    EXPECT_EQ(Made(1, 1, 0).Dump(0, 0, 2), tWant);
}

// Column 16 is 010 in the running files, which are hexadecimal, and 016 in a frame's.
TEST(Dumps, GridsOfOneColumnAndOf17) {
    const struct {
        int nBlkW, nBlkH;
        const char *szFile, *szPart;
    } aRows[] = {
        {1, 2, "10000_HOGDist.txt", "Dist\n[000, 000]: 007 \n[000, 001]: 200 \n"},
        {1, 2, "10000_HOGDist.json", "\"Dist\": [\n  [7],\n  [200]\n ]\n}\n"},
        {1, 2, "10000_Full.json", "[\n  [7],\n  [200]\n ]\n ,\n \"Avail\": [\n  [0],\n  [1]\n ]\n"},
        {1, 2, "10000_Full.csv", "\r\n1\t0\t128\t1\t"},
        {1, 2, "hogmd_dist.txt",
         "=9999\n****************\nx:000,y:000\nhogDistAvail:0000,hogDis:0007\nx:000,y:001\n"},
        {17, 1, "hogmd_golden.txt", "\nx:010,y:000\n"},
        {17, 1, "hogmd_dist.txt", "\nx:010,y:000\nhogDistAvail:0001,hogDis:00c8\n"},
        {17, 1, "10000_HOGDist.txt", "[016, 000]: 200 \n"},
    };
    for (const auto& r : aRows) {
        Made t(r.nBlkW, r.nBlkH, kMetricMog);
        Files tGot = t.Dump(9999, 0, 1);
        EXPECT_NE(tGot[r.szFile].find(r.szPart), std::string::npos) << tGot[r.szFile];
    }
}
