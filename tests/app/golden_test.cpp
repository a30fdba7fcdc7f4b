// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Whole runs of the program against the slow twin, on every path of the processor: standard output
// from the first frame on and every file of the feature folder, byte for byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "md/cfg_top/input_map.h"
#include "tests/support/first_difference.h"
#include "tests/support/program.h"
#include "tests/twin/twin.h"
#include "tools/hash.h"
#include "tools/squares.h"

namespace {

// Keys that shape a run's results. Default and range are those of the input map, where no narrower
// range is given: of values that are refused, or that would hide all others.
struct Key {
    const char* szName;
    int32_t MdParams::*pMember;
    int nStep = 1;
    int nLow = 0, nHigh = -1;
};

constexpr Key aKeys[] = {
    {"MD_Padding_Method", &MdParams::nMD_Padding_Method},
    {"MD_HogRefMode", &MdParams::nMD_HogRefMode},
    {"MD_RefFrmIdx", &MdParams::nMD_RefFrmIdx, 1, 0, 14},
    {"MD_HogDistAvailCheck", &MdParams::nMD_HogDistAvailCheck, 1, 0, 1},
    {"MD_HogCellSize", &MdParams::nMD_HogCellSize, 8},
    {"MD_HogBlockStride", &MdParams::nMD_HogBlockStride, 8},
    {"MD_HogMagnitudeWeightEn", &MdParams::nMD_HogMagnitudeWeightEn},
    {"MD_HogNormalizeMode", &MdParams::nMD_HogNormalizeMode},
    {"MD_MetricMode", &MdParams::nMD_MetricMode, 1, 2, 2},
    {"MD_ShiftMetric2_Th", &MdParams::nMD_ShiftMetric2_Th},
    {"MD_ShiftHistMag2", &MdParams::nMD_ShiftHistMag2},
    {"MD_NeighborCorrelation", &MdParams::nMD_NeighborCorrelation},
    {"MD_ActBlk_MinMaxRatio_Scale", &MdParams::nMD_ActBlk_MinMaxRatio_Scale},
    {"MD_ActBlkRepeatFrmCntTh", &MdParams::nMD_ActBlkRepeatFrmCntTh},
    {"MD_ActNeighborBlkCntTh", &MdParams::nMD_ActNeighborBlkCntTh},
    {"MD_HogDist_AvgYDiffCalc_Method", &MdParams::nMD_HogDist_AvgYDiffCalc_Method},
    {"MD_HogDist_AvgYDiffThre_Scale", &MdParams::nMD_HogDist_AvgYDiffThre_Scale},
    {"MD_HogDist_Th_AvgYDiffAdj_Scale", &MdParams::nMD_HogDist_Th_AvgYDiffAdj_Scale},
    {"MD_HogDist_Th_nnAdj_Scale", &MdParams::nMD_HogDist_Th_nnAdj_Scale},
    {"MD_HogDist_Th_highActiveAdj_scale", &MdParams::nMD_HogDist_Th_highActiveAdj_scale},
    {"MD_LowDelayEn", &MdParams::nMD_LowDelayEn},
    {"MD_HogDist_Th_LowDelay_shift", &MdParams::nMD_HogDist_Th_LowDelay_shift},
    {"MD_HogDist_Th_LowDelay_nn_count", &MdParams::nMD_HogDist_Th_LowDelay_nn_count},
    {"MD_HogDist_Th_LowDelay_prev_nn_count", &MdParams::nMD_HogDist_Th_LowDelay_prev_nn_count},
    {"MD_HogDist_WeightMethod", &MdParams::nMD_HogDist_WeightMethod},
    {"MD_HogDist_Scale2", &MdParams::nMD_HogDist_Scale2},
    {"MD_PostProcMethod", &MdParams::nMD_PostProcMethod},
    {"MD_HogDist_Th", &MdParams::nMD_HogDist_Th},
    {"MD_BlkCnt_Th", &MdParams::nMD_BlkCnt_Th, 1, 1, 20},
    {"MD_Bbox_PP_Enable", &MdParams::nMD_Bbox_PP_Enable},
    {"MD_Bbox_PP_Window", &MdParams::nMD_Bbox_PP_Window, 1, 1, 10},
    {"MD_ScaledW", &MdParams::nMD_ScaledW, 1, 0, 0},
    {"MD_ScaledH", &MdParams::nMD_ScaledH, 1, 0, 0},
    {"MD_DbgEn", &MdParams::nDbgEn, 1, 0, 0},
};

const InputMapEntry& RowOf(const std::string& sKey) {
    return *std::ranges::find(aInputMap, sKey, &InputMapEntry::TokenName);
}

// The twin's settings from a text of blank-separated triples; keys it has no use for are skipped.
SimParams SettingsOf(const std::string& sText) {
    SimParams t{};
    t.nFramesToBeProcessed = 1;
    t.tMd.dMD_PP_Area_Converge_Thresh = RowOf("MD_PP_Area_Converge_Thresh").Default;
    t.tMd.dMD_PP_Aspect_Converge_Thresh = RowOf("MD_PP_Aspect_Converge_Thresh").Default;
    for (const Key& tKey : aKeys) {
        t.tMd.*tKey.pMember = static_cast<int32_t>(RowOf(tKey.szName).Default);
    }
    std::istringstream tText(sText);
    std::string sKey, sEquals, sValue;
    while (tText >> sKey >> sEquals >> sValue) {
        for (const Key& tKey : aKeys) {
            if (tKey.szName == sKey) t.tMd.*tKey.pMember = std::stoi(sValue);
        }
        const auto Is = [&](const char* szKey) { return sKey == szKey; };
        if (Is("StartFrameIdx")) t.nStartFrameIdx = std::stoi(sValue);
        if (Is("FramesToBeProcessed")) t.nFramesToBeProcessed = std::stoi(sValue);
        if (Is("MD_PP_Area_Converge_Thresh")) t.tMd.dMD_PP_Area_Converge_Thresh = std::stod(sValue);
        if (Is("MD_PP_Aspect_Converge_Thresh"))
            t.tMd.dMD_PP_Aspect_Converge_Thresh = std::stod(sValue);
        if (!Is("MD_HogGradX") && !Is("MD_HogGradY")) continue;
        int32_t* pTaps = Is("MD_HogGradX") ? t.tMd.nMD_HogGradX : t.tMd.nMD_HogGradY;
        std::istringstream tTaps(sValue);
        std::fill_n(pTaps, kGradientTaps, 0);
        for (std::string s; std::getline(tTaps, s, ',');) *pTaps++ = std::stoi(s);
    }
    return t;
}

struct Case {
    std::string sName;
    int nWidth, nHeight;
    SquaresClip tClip;
    std::string sSettings;  // key=value, the MD_ of most keys left out

    std::string Bytes() const { return SquaresBytes(tClip, nWidth, nHeight); }
    // The plain path runs with detail lines, which only it prints.
    std::string Config(bool bPlain) const {
        // Every bit but those of what the twin does not print: a new dump shows until it does.
        const int nOff = kDbgComp | kDbgMotionArea | kDbgHogDist | kDbgCountLog | kDbgKeepScaled |
                         (bPlain ? 0 : kDbgDetail);
        const int nDbgEn = 0xFFFF & ~nOff;
        std::string s = BaseConfig(nWidth, nHeight) + "MD_DbgEn = " + std::to_string(nDbgEn) + "\n";
        std::istringstream tSettings(sSettings);
        for (std::string sOne; tSettings >> sOne;) {
            const size_t nEquals = sOne.find('=');
            const std::string sKey = sOne.substr(0, nEquals);
            s += sKey.starts_with("StartFrame") || sKey.starts_with("FramesTo") ? "" : "MD_";
            s += sKey + " = " + sOne.substr(nEquals + 1) + "\n";
        }
        return s;
    }
    Files Twin(bool bPlain) const { return RunTwin(SettingsOf(Config(bPlain)), Bytes()); }
};

// What a failing case is named by.
void PrintTo(const Case& t, std::ostream* pOut) {
    *pOut << t.sName;
}

// The files that the twin derives: the log from the first frame on, the feature folder.
Files Program(const Case& tCase, const std::string& sPath) {
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", tCase.Bytes());
    WriteAll(tFolder / "a.cfg", tCase.Config(sPath == "plain"));
    Files aFiles;
    for (const auto& [sName, sText] : WholeRun(tFolder.Path(), sPath)) {
        aFiles[sName.substr(sName.rfind('/') + 1)] = sText;
    }
    std::string& sLog = aFiles["stdout"];
    sLog.erase(0, std::min(sLog.find("*****frame"), sLog.find("read frame")));
    return aFiles;
}

void ExpectTwinOnEveryPath(const Case& t) {
    const Files aPlainTwin = t.Twin(true), aFastTwin = t.Twin(false);
    for (const std::string& sPath : KernelNames()) {
        const bool bPlain = sPath == "plain";
        EXPECT_EQ(FirstDifference(bPlain ? aPlainTwin : aFastTwin, Program(t, sPath)), "")
            << t.sName << ", path " << sPath << "\n"
            << t.Config(bPlain);
    }
}

const std::vector<Case> aCases = {
    // clang-format off
    // every default, a square that walks.
    {"Defaults", 192, 128, {.nFrames = 12, .nSize = 64, .nSpeed = 4}, ""},
    // method 0 below and over its block count.
    {"CentroidMoving", 160, 112, {.nFrames = 12, .nSize = 60, .nSpeed = 11, .nNoise = 8},
     "PostProcMethod=0 Padding_Method=0 RefFrmIdx=1 HogDist_Th=4 BlkCnt_Th=70"},
    // gate on boxes with a centre: waits, opens, closes.
    {"CentroidGate", 160, 112, {.nFrames = 18, .nSize = 48, .nBoil = 1, .nStop = 11, .nFrom = 2},
     "PostProcMethod=0 Bbox_PP_Enable=1 Bbox_PP_Window=3"},
    // gate held back by only the aspect.
    {"CentroidGateAspect", 256, 128, {.nFrames = 14, .nSize = 110, .nSpeed = 5, .nBoil = 2},
     "PostProcMethod=0 Bbox_PP_Enable=1 Bbox_PP_Window=4 PP_Area_Converge_Thresh=9.5 "
     "PP_Aspect_Converge_Thresh=1.01 NeighborCorrelation=0"},
    // blocks apart: half of a stride of 64.
    {"CentroidWideStride", 176, 144,
     {.nFrames = 10, .nSize = 40, .nSpeed = 42, .nBoil = 1, .nNoise = 6},
     "PostProcMethod=0 HogBlockStride=64 NeighborCorrelation=0 BlkCnt_Th=1 "
     "HogDist_AvgYDiffCalc_Method=2 HogDist_Th=0"},
    // box cut at the frame, window of one frame.
    {"CentroidStride16", 160, 112, {.nFrames = 8, .nSize = 160, .nBoil = 1},
     "PostProcMethod=0 HogBlockStride=16 HogNormalizeMode=0 Bbox_PP_Enable=1 Bbox_PP_Window=1"},
    // gate on boxes without a centre.
    {"GridGate", 192, 128, {.nFrames = 20, .nSize = 64, .nBoil = 1, .nStop = 10, .nFrom = 2},
     "Bbox_PP_Enable=1"},
    // regions that merge over three squares.
    {"GridMany", 320, 180, {.nFrames = 10, .nSquares = 3, .nSize = 20, .nSpeed = 13},
     "NeighborCorrelation=0 HogDist_WeightMethod=1"},
    // score that rises slowly.
    {"GridWeak", 192, 128, {.nFrames = 8, .nSize = 70, .nSpeed = 3, .nContrast = 60, .nNoise = 24},
     "HogDist_Scale2=3 HogDist_Th=2 ShiftHistMag2=2 NeighborCorrelation=0"},
    // the tuning of 640x360.
    {"FirstRecord", 640, 360, {.nFrames = 6, .nSize = 130, .nSpeed = 17, .nFrom = 1},
     "HogBlockStride=16"},
    // refinement of weak distances.
    {"ProjectionWeak", 160, 112,
     {.nFrames = 20, .nSize = 56, .nSpeed = 2, .nContrast = 90, .nNoise = 12},
     "PostProcMethod=2 RefFrmIdx=1"},
    // gate after method 2's own wait.
    {"ProjectionGate", 160, 112, {.nFrames = 22, .nSize = 48, .nBoil = 1, .nStop = 14, .nFrom = 2},
     "PostProcMethod=2 Bbox_PP_Enable=1 Bbox_PP_Window=2"},
    // box that reaches the frame itself.
    {"ProjectionWholeFrame", 120, 88, {.nFrames = 12, .nSize = 120, .nBoil = 1},
     "PostProcMethod=2 HogDistAvailCheck=3 NeighborCorrelation=0"},
    // last bin of an odd width.
    {"ProjectionRightEdge", 60, 82, {.nFrames = 10, .nSize = 50, .nSpeed = 3, .nBoil = 1},
     "PostProcMethod=2 NeighborCorrelation=0 HogDist_Scale2=99 RefFrmIdx=1"},
    // peak of two squares.
    {"ProjectionTwo", 200, 144,
     {.nFrames = 8, .nSquares = 2, .nSize = 26, .nStepY = 60, .nBoil = 1},
     "PostProcMethod=2 NeighborCorrelation=0"},
    // two squares, one at the top.
    {"ProjectionTop", 160, 112,
     {.nFrames = 12, .nSquares = 2, .nSize = 44, .nStepY = -21, .nBoil = 1},
     "PostProcMethod=2 NeighborCorrelation=0"},
    // peak of the rows.
    {"ProjectionRows", 96, 160,
     {.nFrames = 12, .nSquares = 3, .nSize = 20, .nStepY = 50, .nBoil = 1},
     "PostProcMethod=2 NeighborCorrelation=0"},
    // gate on boxes of method 3.
    {"BisectionGate", 160, 112, {.nFrames = 18, .nSize = 60, .nBoil = 1, .nStop = 11, .nFrom = 2},
     "PostProcMethod=3 Bbox_PP_Enable=1 Bbox_PP_Window=4"},
    // sums that fill 16 bits.
    {"BisectionWholeFrame", 168, 160, {.nFrames = 4, .nSize = 168, .nBoil = 1},
     "PostProcMethod=3 HogMagnitudeWeightEn=0 NeighborCorrelation=0 HogDist_Scale2=99 "
     "ShiftMetric2_Th=9"},
    // halves of unlike weight.
    {"BisectionSkew", 176, 144, {.nFrames = 10, .nSize = 60, .nSpeed = 35, .nBoil = 1},
     "PostProcMethod=3 HogDist_Th=0 NeighborCorrelation=0"},
    // nodes too light for their size.
    {"BisectionLight", 160, 128,
     {.nFrames = 10, .nSquares = 3, .nSize = 10, .nSpeed = 2, .nContrast = 150},
     "PostProcMethod=3 HogDist_Th=1 HogDist_Scale2=1 ShiftHistMag2=7 NeighborCorrelation=0"},
    // one block wide.
    {"OneColumnBisection", 20, 96, {.nFrames = 6, .nSize = 60, .nBoil = 1},
     "PostProcMethod=3 NeighborCorrelation=0 Padding_Method=0"},
    // one block high, threshold held at its base.
    {"OneRowBisection", 96, 20, {.nFrames = 6, .nSize = 60, .nBoil = 1},
     "PostProcMethod=3 HogDist_Th_AvgYDiffAdj_Scale=0 HogDist_Th_LowDelay_nn_count=0"},
    // no width: no box.
    {"OneColumnCentroid", 20, 96, {.nFrames = 6, .nSize = 60, .nBoil = 1},
     "PostProcMethod=0 NeighborCorrelation=0 Padding_Method=1"},
    // no height: no box.
    {"OneRowCentroid", 96, 20, {.nFrames = 6, .nSize = 60, .nBoil = 1},
     "PostProcMethod=0 NeighborCorrelation=0"},
    // row of regions.
    {"OneRowGrid", 640, 21, {.nFrames = 6, .nSize = 200, .nBoil = 1}, "NeighborCorrelation=0"},
    // the smallest grid.
    {"OneBlock", 17, 16, {.nFrames = 6, .nBoil = 1}, "NeighborCorrelation=0"},
    // luma check, running threshold.
    {"LumaCheck", 96, 80, {.nFrames = 6, .nSpeed = 5, .nFlicker = 30},
     "HogDistAvailCheck=1 HogDist_AvgYDiffCalc_Method=1 RefFrmIdx=1 HogDist_AvgYDiffThre_Scale=12"},
    // luma check, threshold of the last frame.
    {"LumaCheckOnly", 96, 80, {.nFrames = 6, .nSpeed = 5, .nFlicker = 30},
     "HogDistAvailCheck=1 HogDist_AvgYDiffCalc_Method=2 NeighborCorrelation=0"},
    // every frame its own reference.
    {"SelfReference", 97, 83, {.nFrames = 5, .nSpeed = 5},
     "RefFrmIdx=0 HogRefMode=0 ShiftHistMag2=7 ShiftMetric2_Th=13"},
    // no vector at all.
    {"NoMetric", 97, 83, {.nFrames = 4, .nSpeed = 5}, "MetricMode=0"},
    // largest scales, farthest reference, scene cuts.
    {"Extremes", 97, 83, {.nFrames = 18, .nSquares = 3, .nSpeed = 5, .nCut = 4},
     "HogDist_Scale2=511 ShiftHistMag2=0 HogCellSize=8 RefFrmIdx=14 HogRefMode=0 "
     "HogDist_AvgYDiffThre_Scale=511 HogDist_Th_AvgYDiffAdj_Scale=1"},
    // only the rules on saturated distances fire.
    {"EdgesOnly", 120, 96, {.nFrames = 10, .nSquares = 2, .nSize = 40, .nSpeed = 3, .nBoil = 1},
     "HogDist_Th=255 HogDist_Scale2=40 RefFrmIdx=1"},
    // count at 15, ratio and high threshold at their ends.
    {"SteadyCount", 96, 96, {.nFrames = 24, .nSize = 60, .nBoil = 1, .nContrast = 60},
     "LowDelayEn=0 HogDist_Th_highActiveAdj_scale=31 ActBlk_MinMaxRatio_Scale=255 RefFrmIdx=1 "
     "HogDist_Th=30 HogDist_Scale2=3 HogDist_Th_AvgYDiffAdj_Scale=0"},
    // first frame and number of frames given.
    {"FramesCut", 96, 80, {.nFrames = 9, .nSize = 60, .nSpeed = 6},
     "StartFrameIdx=2 FramesToBeProcessed=5 PostProcMethod=0 RefFrmIdx=2"},
    // input that ends within a frame.
    {"TailCut", 96, 80, {.nFrames = 6, .nSize = 60, .nSpeed = 6, .nTail = 777},
     "StartFrameIdx=1 PostProcMethod=2"},
    // only the cut frame is left.
    {"TailOnly", 96, 80, {.nFrames = 2, .nTail = 11519}, "StartFrameIdx=2 FramesToBeProcessed=9"},
    // first frame after the end.
    {"StartAfterTheEnd", 96, 80, {.nFrames = 1}, "StartFrameIdx=10000"},
    // clang-format on
};

class GoldenRun : public testing::TestWithParam<Case> {};

TEST_P(GoldenRun, EqualsTheTwinOnEveryPath) {
    ExpectTwinOnEveryPath(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Table, GoldenRun, testing::ValuesIn(aCases),
                         [](const auto& tInfo) { return tInfo.param.sName; });

// A byte is changed right after the last `sAt` of a file.
TEST(GoldenComparison, NamesFrameBlockFieldAndStageOfAChangedByte) {
    const struct {
        std::string sFile, sAt, sReport;
    } aPlanted[] = {
        {"hogmd_golden.txt", "x:003,y:001\nnAvgY=",
         "frame 3, block (3,1), nAvgY: expected 108, got 124 (stage: feature)"},
        {"hogmd_golden.txt", "x:002,y:001\nnAvgY=60\nMATRIX_MODE2:5b ",
         "v[1]: expected 4a, got 5a"},
        {"hogmd_dist.txt", "x:001,y:002\nhogDistAvail:000",
         "frame 3, block (1,2), avail: expected 1, got 0 (stage: decision)"},
        {"hogmd_dist.txt", "x:001,y:002\nhogDistAvail:0001,hogDis:00", "(stage: distance)"},
        {"stdout", "blockLine=", "frame 3, log line: expected <blockLine=2, nYDiffThreLine = 40>"},
        {"stdout", "MotionDetected=", "(stage: box)"},
        {"stdout", "PP_V2: l,r,t,b = ", "(stage: gate)"},
        {"0003_Full.csv", "AvailMask\r\n", "0003_Full.csv, line 2: expected <0\t0\t"},
    };
    const Files aTwin =
        Case{"", 40, 32, {.nFrames = 4, .nSpeed = 3}, "StartFrameIdx=1 NeighborCorrelation=0"}.Twin(
            false);
    for (const auto& t : aPlanted) {
        Files aChanged = aTwin;
        std::string& s = aChanged[t.sFile];
        const size_t nAt = s.rfind(t.sAt);
        ASSERT_NE(nAt, std::string::npos) << t.sAt << " in\n" << s;
        s[nAt + t.sAt.size()] ^= 1;
        const std::string sReport = FirstDifference(aTwin, aChanged);
        EXPECT_NE(sReport.find(t.sReport), std::string::npos) << sReport << "\n" << t.sFile;
    }
    Files aMore = aTwin;
    aMore["more.txt"];
    EXPECT_EQ(FirstDifference(aMore, aTwin), "more.txt: not written");
    EXPECT_EQ(FirstDifference(aTwin, aMore), "more.txt: written, but not expected");
}

// Valid settings and a small clip out of one seed.
Case RandomCase(uint32_t nSeed) {
    uint32_t nDraws = 0;
    const auto Draw = [&](int nLow, int nHigh) {
        return nLow + int(Hash(nSeed, ++nDraws, 11) % uint32_t(nHigh - nLow + 1));
    };
    Case t{"seed " + std::to_string(nSeed), Draw(16, 120), Draw(16, 100), {}, ""};
    for (const Key& k : aKeys) {
        const InputMapEntry& tRow = RowOf(k.szName);
        const int nLow = k.nLow <= k.nHigh ? k.nLow : int(tRow.MinLimit);
        const int nHigh = k.nLow <= k.nHigh ? k.nHigh : int(tRow.MaxLimit);
        const int nDefault = int(tRow.Default);
        const int nWay = Draw(0, 3);  // mostly the default, else close to it, else anything legal
        const int nNear = std::clamp(Draw(nDefault / 2, 2 * nDefault + 1), nLow, nHigh);
        const int nAny = Draw(nLow / k.nStep, nHigh / k.nStep);
        const int nValue = (nWay == 0 ? nAny : nNear / k.nStep) * k.nStep;
        if (nWay < 2 && nHigh > 0) {
            t.sSettings += std::string(k.szName).substr(3) + "=" + std::to_string(nValue) + " ";
        }
    }
    for (const char* pAxis : {"X", "Y"}) {
        t.sSettings += std::string("HogGrad") + pAxis + "=";
        const int nZero = Draw(0, 4);  // four taps up to 2 keep both sums at 8 or below
        for (int i = 0; i < 5; ++i) {
            t.sSettings += std::to_string(i == nZero ? 0 : Draw(-2, 2)) + (i < 4 ? "," : " ");
        }
    }
    t.sSettings += "StartFrameIdx=" + std::to_string(Draw(0, 2));
    t.tClip = {.nFrames = Draw(3, 14),
               .nSquares = Draw(1, 3),
               .nSize = Draw(10, 60),
               .nSpeed = Draw(0, 9),
               .nBoil = Draw(0, 2),
               .nStop = Draw(3, 20),
               .nContrast = Draw(30, 255),
               .nNoise = Draw(0, 1) * Draw(0, 20),
               .nFlicker = Draw(0, 1) * Draw(0, 40),
               .nCut = Draw(0, 20)};
    return t;
}

TEST(GoldenRandom, EqualsTheTwinOnEveryPath) {
    for (uint32_t nSeed = 1; nSeed <= 40; ++nSeed) ExpectTwinOnEveryPath(RandomCase(nSeed));
}

}  // namespace
