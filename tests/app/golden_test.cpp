// Whole runs of the program against the slow twin: standard output from the first frame on and
// every file of the feature folder, byte for byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/support/clip.h"
#include "tests/support/program.h"
#include "tests/twin/twin.h"

namespace {

// Keys that shape a run's results, with default and legal range as the program documents them.
struct Key {
    std::string sName;
    int32_t MdParams::*pMember;
    int nDefault, nLow, nHigh, nStep = 1;
};

const std::vector<Key> aKeys = {
    {"MD_Padding_Method", &MdParams::nMD_Padding_Method, 2, 0, 2},
    {"MD_HogRefMode", &MdParams::nMD_HogRefMode, 1, 0, 1},
    {"MD_RefFrmIdx", &MdParams::nMD_RefFrmIdx, 3, 0, 14},
    {"MD_HogDistAvailCheck", &MdParams::nMD_HogDistAvailCheck, 0, 0, 1},
    {"MD_HogCellSize", &MdParams::nMD_HogCellSize, 16, 8, 16, 8},
    {"MD_HogBlockStride", &MdParams::nMD_HogBlockStride, 8, 8, 64, 8},
    {"MD_HogMagnitudeWeightEn", &MdParams::nMD_HogMagnitudeWeightEn, 1, 0, 1},
    {"MD_HogNormalizeMode", &MdParams::nMD_HogNormalizeMode, 0, 0, 2},
    {"MD_MetricMode", &MdParams::nMD_MetricMode, 1, 2, 2},
    {"MD_ShiftMetric2_Th", &MdParams::nMD_ShiftMetric2_Th, 6, 0, 15},
    {"MD_ShiftHistMag2", &MdParams::nMD_ShiftHistMag2, 1, 0, 7},
    {"MD_NeighborCorrelation", &MdParams::nMD_NeighborCorrelation, 1, 0, 1},
    {"MD_ActBlk_MinMaxRatio_Scale", &MdParams::nMD_ActBlk_MinMaxRatio_Scale, 16, 0, 255},
    {"MD_ActBlkRepeatFrmCntTh", &MdParams::nMD_ActBlkRepeatFrmCntTh, 3, 0, 15},
    {"MD_ActNeighborBlkCntTh", &MdParams::nMD_ActNeighborBlkCntTh, 2, 0, 9},
    {"MD_HogDist_AvgYDiffCalc_Method", &MdParams::nMD_HogDist_AvgYDiffCalc_Method, 0, 0, 2},
    {"MD_HogDist_AvgYDiffThre_Scale", &MdParams::nMD_HogDist_AvgYDiffThre_Scale, 32, 0, 511},
    {"MD_HogDist_Th_AvgYDiffAdj_Scale", &MdParams::nMD_HogDist_Th_AvgYDiffAdj_Scale, 42, 0, 255},
    {"MD_HogDist_Th_nnAdj_Scale", &MdParams::nMD_HogDist_Th_nnAdj_Scale, 8, 0, 31},
    {"MD_HogDist_Th_highActiveAdj_scale", &MdParams::nMD_HogDist_Th_highActiveAdj_scale, 12, 0, 31},
    {"MD_LowDelayEn", &MdParams::nMD_LowDelayEn, 1, 0, 1},
    {"MD_HogDist_Th_LowDelay_shift", &MdParams::nMD_HogDist_Th_LowDelay_shift, 1, 0, 3},
    {"MD_HogDist_Th_LowDelay_nn_count", &MdParams::nMD_HogDist_Th_LowDelay_nn_count, 1, 0, 15},
    {"MD_HogDist_Th_LowDelay_prev_nn_count", &MdParams::nMD_HogDist_Th_LowDelay_prev_nn_count, 1, 0,
     7},
    {"MD_HogDist_WeightMethod", &MdParams::nMD_HogDist_WeightMethod, 0, 0, 1},
    {"MD_HogDist_Scale2", &MdParams::nMD_HogDist_Scale2, 16, 0, 511},
    {"MD_PostProcMethod", &MdParams::nMD_PostProcMethod, 1, 0, 3},
    {"MD_HogDist_Th", &MdParams::nMD_HogDist_Th, 10, 0, 255},
    {"MD_BlkCnt_Th", &MdParams::nMD_BlkCnt_Th, 8, 1, 20},
    {"MD_Bbox_PP_Enable", &MdParams::nMD_Bbox_PP_Enable, 0, 0, 1},
    {"MD_Bbox_PP_Window", &MdParams::nMD_Bbox_PP_Window, 5, 1, 10},
    {"MD_ScaledW", &MdParams::nMD_ScaledW, 320, 0, 0},
    {"MD_ScaledH", &MdParams::nMD_ScaledH, 180, 0, 0},
    {"MD_DbgEn", &MdParams::nDbgEn, 0, 608, 609},
};

// The twin's settings from a text of blank-separated triples; keys it has no use for are skipped.
SimParams SettingsOf(const std::string& sText) {
    SimParams t{};
    t.nFramesToBeProcessed = 1;
    t.tMd.dMD_PP_Area_Converge_Thresh = 1.3;
    t.tMd.dMD_PP_Aspect_Converge_Thresh = 1.5;
    for (const Key& tKey : aKeys) t.tMd.*tKey.pMember = tKey.nDefault;
    std::istringstream tText(sText);
    std::string sKey, sEquals, sValue;
    while (tText >> sKey >> sEquals >> sValue) {
        for (const Key& tKey : aKeys) {
            if (tKey.sName == sKey) t.tMd.*tKey.pMember = std::stoi(sValue);
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
    Clip tClip;
    std::string sSettings;  // key=value, the MD_ of most keys left out

    std::string Bytes() const { return ClipBytes(tClip, nWidth, nHeight); }
    std::string Config() const {
        std::string s = BaseConfig(nWidth, nHeight) + "MD_DbgEn = 609\n";
        std::istringstream tSettings(sSettings);
        for (std::string sOne; tSettings >> sOne;) {
            const size_t nEquals = sOne.find('=');
            if (!sOne.starts_with("StartFrame") && !sOne.starts_with("FramesTo")) s += "MD_";
            s += sOne.substr(0, nEquals) + " = " + sOne.substr(nEquals + 1) + "\n";
        }
        return s;
    }
    Files Twin() const { return RunTwin(SettingsOf(Config()), Bytes()); }
};

// What a failing case is told by.
void PrintTo(const Case& t, std::ostream* pOut) {
    *pOut << t.sName;
}

Files Program(const Case& tCase) {
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", tCase.Bytes());
    WriteAll(tFolder / "a.cfg", tCase.Config());
    const Outcome t = RunMd(tFolder.Path(), {"-d", "a.cfg"});
    EXPECT_EQ(t.nExit, 0) << t;
    Files aFiles;
    const size_t nFirst = std::min(t.sOut.find("*****frame"), t.sOut.find("read frame"));
    aFiles["stdout"] = nFirst == std::string::npos ? t.sOut : t.sOut.substr(nFirst);
    for (const auto& tEntry : fs::directory_iterator(tFolder / "out/HOG_feature")) {
        aFiles[tEntry.path().filename()] = ReadAll(tEntry.path());
    }
    return aFiles;
}

// Empty when both texts are equal, else the file, the frame and the first line that differs.
std::string TextDifference(const std::string& sName, const std::string& sWant,
                           const std::string& sGot) {
    if (sWant == sGot) return "";
    std::istringstream tWant(sWant), tGot(sGot);
    std::string sMark, sWantLine, sGotLine;
    for (int nLine = 1;; ++nLine) {
        const bool bWant = bool(std::getline(tWant, sWantLine));
        const bool bGot = bool(std::getline(tGot, sGotLine));
        if (sWantLine != sGotLine || bWant != bGot || !bWant) {
            return sName + ", " + sMark + ", line " + std::to_string(nLine) + ": twin <" +
                   sWantLine + ">, program <" + sGotLine + ">";
        }
        const bool bMark = sGotLine.starts_with("*****frame") || sGotLine.starts_with("Frame_idx");
        if (bMark) sMark = sGotLine;
    }
}

std::string Difference(const Files& aWant, const Files& aGot) {
    for (const auto& [sName, sText] : aWant) {
        if (!aGot.contains(sName)) return sName + ": not written by the program";
        const std::string s = TextDifference(sName, sText, aGot.at(sName));
        if (!s.empty()) return s;
    }
    for (const auto& [sName, sText] : aGot) {
        if (!aWant.contains(sName)) return sName + ": not expected by the twin";
    }
    return "";
}

const std::vector<Case> aCases = {
    // clang-format off
    {"Defaults", 192, 128, {.nFrames = 12, .nSize = 64, .nSpeed = 4}, ""},
    {"CentroidMoving", 160, 112, {.nFrames = 12, .nSize = 60, .nSpeed = 11, .nNoise = 8},
     "PostProcMethod=0 Padding_Method=0 RefFrmIdx=1 HogDist_Th=4 BlkCnt_Th=70"},
    {"CentroidGate", 160, 112, {.nFrames = 18, .nSize = 48, .nBoil = 1, .nStop = 11, .nFrom = 2},
     "PostProcMethod=0 Bbox_PP_Enable=1 Bbox_PP_Window=3"},
    {"CentroidGateAspect", 256, 128, {.nFrames = 14, .nSize = 110, .nSpeed = 5, .nBoil = 2},
     "PostProcMethod=0 Bbox_PP_Enable=1 Bbox_PP_Window=4 PP_Area_Converge_Thresh=9.5 "
     "PP_Aspect_Converge_Thresh=1.01 NeighborCorrelation=0"},
    {"CentroidWideStride", 176, 144,
     {.nFrames = 10, .nSize = 40, .nSpeed = 42, .nBoil = 1, .nNoise = 6},
     "PostProcMethod=0 HogBlockStride=64 NeighborCorrelation=0 BlkCnt_Th=1 "
     "HogDist_AvgYDiffCalc_Method=2 HogDist_Th=0"},
    {"CentroidStride16", 160, 112, {.nFrames = 8, .nSize = 160, .nBoil = 1},
     "PostProcMethod=0 HogBlockStride=16 HogNormalizeMode=0 Bbox_PP_Enable=1 Bbox_PP_Window=1"},
    {"GridGate", 192, 128, {.nFrames = 20, .nSize = 64, .nBoil = 1, .nStop = 10, .nFrom = 2},
     "Bbox_PP_Enable=1"},
    {"GridMany", 320, 180, {.nFrames = 10, .nSquares = 3, .nSize = 20, .nSpeed = 13},
     "NeighborCorrelation=0 HogDist_WeightMethod=1"},
    {"GridWeak", 192, 128, {.nFrames = 8, .nSize = 70, .nSpeed = 3, .nContrast = 60, .nNoise = 24},
     "HogDist_Scale2=3 HogDist_Th=2 ShiftHistMag2=2 NeighborCorrelation=0"},
    {"FirstRecord", 640, 360, {.nFrames = 6, .nSize = 130, .nSpeed = 17, .nFrom = 1},
     "HogBlockStride=16"},
    {"ProjectionWeak", 160, 112,
     {.nFrames = 20, .nSize = 56, .nSpeed = 2, .nContrast = 90, .nNoise = 12},
     "PostProcMethod=2 RefFrmIdx=1"},
    {"ProjectionGate", 160, 112, {.nFrames = 22, .nSize = 48, .nBoil = 1, .nStop = 14, .nFrom = 2},
     "PostProcMethod=2 Bbox_PP_Enable=1 Bbox_PP_Window=2"},
    {"ProjectionWholeFrame", 120, 88, {.nFrames = 12, .nSize = 120, .nBoil = 1},
     "PostProcMethod=2 HogDistAvailCheck=3 NeighborCorrelation=0"},
    {"ProjectionRightEdge", 60, 82, {.nFrames = 10, .nSize = 50, .nSpeed = 3, .nBoil = 1},
     "PostProcMethod=2 NeighborCorrelation=0 HogDist_Scale2=99 RefFrmIdx=1"},
    {"ProjectionTwo", 200, 144,
     {.nFrames = 8, .nSquares = 2, .nSize = 26, .nStepY = 60, .nBoil = 1},
     "PostProcMethod=2 NeighborCorrelation=0"},
    {"ProjectionTop", 160, 112,
     {.nFrames = 12, .nSquares = 2, .nSize = 44, .nStepY = -21, .nBoil = 1},
     "PostProcMethod=2 NeighborCorrelation=0"},
    {"ProjectionRows", 96, 160,
     {.nFrames = 12, .nSquares = 3, .nSize = 20, .nStepY = 50, .nBoil = 1},
     "PostProcMethod=2 NeighborCorrelation=0"},
    {"BisectionGate", 160, 112, {.nFrames = 18, .nSize = 60, .nBoil = 1, .nStop = 11, .nFrom = 2},
     "PostProcMethod=3 Bbox_PP_Enable=1 Bbox_PP_Window=4"},
    {"BisectionWholeFrame", 168, 160, {.nFrames = 4, .nSize = 168, .nBoil = 1},
     "PostProcMethod=3 HogMagnitudeWeightEn=0 NeighborCorrelation=0 HogDist_Scale2=99 "
     "ShiftMetric2_Th=9"},
    {"BisectionSkew", 176, 144, {.nFrames = 10, .nSize = 60, .nSpeed = 35, .nBoil = 1},
     "PostProcMethod=3 HogDist_Th=0 NeighborCorrelation=0"},
    {"BisectionLight", 160, 128,
     {.nFrames = 10, .nSquares = 3, .nSize = 10, .nSpeed = 2, .nContrast = 150},
     "PostProcMethod=3 HogDist_Th=1 HogDist_Scale2=1 ShiftHistMag2=7 NeighborCorrelation=0"},
    {"OneColumnBisection", 20, 96, {.nFrames = 6, .nSize = 60, .nBoil = 1},
     "PostProcMethod=3 NeighborCorrelation=0 Padding_Method=0"},
    {"OneRowBisection", 96, 20, {.nFrames = 6, .nSize = 60, .nBoil = 1},
     "PostProcMethod=3 HogDist_Th_AvgYDiffAdj_Scale=0 HogDist_Th_LowDelay_nn_count=0"},
    {"OneColumnCentroid", 20, 96, {.nFrames = 6, .nSize = 60, .nBoil = 1},
     "PostProcMethod=0 NeighborCorrelation=0 Padding_Method=1"},
    {"OneRowCentroid", 96, 20, {.nFrames = 6, .nSize = 60, .nBoil = 1},
     "PostProcMethod=0 NeighborCorrelation=0"},
    {"OneRowGrid", 640, 21, {.nFrames = 6, .nSize = 200, .nBoil = 1}, "NeighborCorrelation=0"},
    {"OneBlock", 17, 16, {.nFrames = 6, .nBoil = 1}, "NeighborCorrelation=0"},
    {"LumaCheck", 96, 80, {.nFrames = 6, .nSpeed = 5, .nFlicker = 30},
     "HogDistAvailCheck=1 HogDist_AvgYDiffCalc_Method=1 RefFrmIdx=1 HogDist_AvgYDiffThre_Scale=12"},
    {"LumaCheckAlone", 96, 80, {.nFrames = 6, .nSpeed = 5, .nFlicker = 30},
     "HogDistAvailCheck=1 HogDist_AvgYDiffCalc_Method=2 NeighborCorrelation=0"},
    {"SelfReference", 97, 83, {.nFrames = 5, .nSpeed = 5},
     "RefFrmIdx=0 HogRefMode=0 ShiftHistMag2=7 ShiftMetric2_Th=13"},
    {"NoMetric", 97, 83, {.nFrames = 4, .nSpeed = 5}, "MetricMode=0"},
    {"Extremes", 97, 83, {.nFrames = 18, .nSquares = 3, .nSpeed = 5, .nCut = 4},
     "HogDist_Scale2=511 ShiftHistMag2=0 HogCellSize=8 RefFrmIdx=14 HogRefMode=0 "
     "HogDist_AvgYDiffThre_Scale=511 HogDist_Th_AvgYDiffAdj_Scale=1"},
    {"EdgesAlone", 120, 96, {.nFrames = 10, .nSquares = 2, .nSize = 40, .nSpeed = 3, .nBoil = 1},
     "HogDist_Th=255 HogDist_Scale2=40 RefFrmIdx=1"},
    {"SteadyCount", 96, 96, {.nFrames = 24, .nSize = 60, .nBoil = 1, .nContrast = 60},
     "LowDelayEn=0 HogDist_Th_highActiveAdj_scale=31 ActBlk_MinMaxRatio_Scale=255 RefFrmIdx=1 "
     "HogDist_Th=30 HogDist_Scale2=3 HogDist_Th_AvgYDiffAdj_Scale=0"},
    {"FramesCut", 96, 80, {.nFrames = 9, .nSize = 60, .nSpeed = 6},
     "StartFrameIdx=2 FramesToBeProcessed=5 DbgEn=608 PostProcMethod=0 RefFrmIdx=2"},
    {"TailCut", 96, 80, {.nFrames = 6, .nSize = 60, .nSpeed = 6, .nTail = 777},
     "StartFrameIdx=1 PostProcMethod=2"},
    {"TailAlone", 96, 80, {.nFrames = 2, .nTail = 11519}, "StartFrameIdx=2 FramesToBeProcessed=9"},
    {"StartBehindTheEnd", 96, 80, {.nFrames = 1}, "StartFrameIdx=10000"},
    // clang-format on
};

class GoldenRun : public testing::TestWithParam<Case> {};

TEST_P(GoldenRun, DiffersFromTheTwin) {
    EXPECT_EQ(Difference(GetParam().Twin(), Program(GetParam())), "") << GetParam().Config();
}

INSTANTIATE_TEST_SUITE_P(Table, GoldenRun, testing::ValuesIn(aCases),
                         [](const auto& tInfo) { return tInfo.param.sName; });

// The byte behind the last `sAt` of a file is changed.
TEST(GoldenComparison, MissesAChangedByte) {
    const struct {
        std::string sFile, sAt, sReport;
    } aPlanted[] = {
        {"stdout", "PP_V2: l,r,t,b = ", "stdout, *****frame 3, line "},
        {"hogmd_golden.txt", "x:003,y:001\nnAvgY=", "hogmd_golden.txt, Frame_idx=003, line "},
        {"0003_Full.csv", "AvailMask", "0003_Full.csv, , line 1:"},
    };
    const Files aTwin = Case{"", 40, 32, {.nFrames = 4, .nSpeed = 3}, "StartFrameIdx=1"}.Twin();
    for (const auto& t : aPlanted) {
        Files aChanged = aTwin;
        std::string& s = aChanged[t.sFile];
        s[s.rfind(t.sAt) + t.sAt.size()] ^= 1;
        EXPECT_TRUE(Difference(aTwin, aChanged).starts_with(t.sReport)) << t.sFile;
    }
    Files aMore = aTwin;
    aMore["more.txt"];
    EXPECT_EQ(Difference(aMore, aTwin), "more.txt: not written by the program");
    EXPECT_EQ(Difference(aTwin, aMore), "more.txt: not expected by the twin");
}

// Valid settings and a small clip out of one seed.
Case RandomCase(uint32_t nSeed) {
    uint32_t nDraws = 0;
    const auto Draw = [&](int nLow, int nHigh) {
        return nLow + int(Hash(nSeed, ++nDraws, 11) % uint32_t(nHigh - nLow + 1));
    };
    Case t{"seed " + std::to_string(nSeed), Draw(16, 120), Draw(16, 100), {}, ""};
    for (const Key& k : aKeys) {
        const int nWay = Draw(0, 3);  // mostly the default, else close to it, else anything legal
        const int nNear = std::clamp(Draw(k.nDefault / 2, 2 * k.nDefault + 1), k.nLow, k.nHigh);
        const int nAny = Draw(0, (k.nHigh - k.nLow) / k.nStep) * k.nStep + k.nLow;
        const int nValue = nWay == 0 ? nAny : nNear / k.nStep * k.nStep;
        if (nWay < 2 && k.nHigh > 0)
            t.sSettings += k.sName.substr(3) + "=" + std::to_string(nValue) + " ";
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

TEST(GoldenRandom, DiffersFromTheTwin) {
    for (uint32_t nSeed = 1; nSeed <= 40; ++nSeed) {
        const Case t = RandomCase(nSeed);
        EXPECT_EQ(Difference(t.Twin(), Program(t)), "") << t.sName << "\n" << t.Config();
    }
}

}  // namespace
