// All settings of a run. Each key of the input map (cfg_top/input_map.cpp) stores into one member
// here; its default and range stand in the map. Members without a key say so.
#pragma once

#include <cstdint>

constexpr int kPathSize = 512;    // bytes of a path or text setting, with its end mark
constexpr int kGradientTaps = 5;  // taps of a gradient filter

// Bits of nDbgEn. Other bits are read by nothing.
enum DebugBit : int32_t {
    kDbgDetail = 1 << 0,       // detail lines on standard output
    kDbgComp = 1 << 1,         // the three-panel comp video
    kDbgMotionArea = 1 << 3,   // the motionArea video
    kDbgHogDist = 1 << 4,      // the hogDist video
    kDbgFeatures = 1 << 5,     // golden file and per-frame feature dumps
    kDbgDistances = 1 << 6,    // distance file and per-frame distance dumps
    kDbgCountLog = 1 << 8,     // count log
    kDbgObjects = 1 << 9,      // object report
    kDbgKeepScaled = 1 << 13,  // copy of the input at working size even when nothing is scaled
};

// Bits of nMD_MetricMode. Only moments of gradient exist on this chip.
enum MetricBit : int32_t {
    kMetricHog = 1 << 0,
    kMetricMog = 1 << 1,
    kMetricCog = 1 << 2,
    kMetricMog2x2 = 1 << 3,
};

// The detection block's section. "Not used": parsed, held to its range, read by nothing.
struct MdParams {
    int32_t nMD_Scale_Method;           // must be 0
    int32_t nMD_Scale_KeepAspectRatio;  // non-zero: height follows from width and input aspect
    int32_t nMD_ScaledW, nMD_ScaledH;   // working frame, pixels
    int32_t nx_ds_mode, ny_ds_mode, nx_ds_pos, nx_ds_avg, ny_ds_pos;  // not used
    int32_t nMD_Padding_Method;  // border of a block: 0 neighbours, 1 zeros, 2 its own edge
    int32_t nMD_HogRefMode, nMD_RefFrmIdx;  // schedule branch; reference distance in frames
    int32_t nMD_HogMethod, nMD_HogWithoutBlkDiffCheck, nMD_HogDistAvailCheck, nMD_NoRandomBlock;
    int32_t nMD_HogBlockSize, nMD_HogCellSize, nMD_HogBlockStride;  // pixels
    int32_t nMD_HogGradX[kGradientTaps];  // no key: split from the text of the key
    int32_t nMD_HogGradY[kGradientTaps];  // no key: split from the text of the key
    int32_t nMD_HogMagnitudeWeightEn, nMD_HogSmoothBinsEn, nMD_HogNormalizeMode;
    int32_t nMD_MetricMode;                          // MetricBit mask; 0 or 2 behind the refusals
    int32_t nMD_MetricMagTh;                         // no key: least magnitude that counts; stays 0
    int32_t nMD_ShiftMetric2_Th, nMD_ShiftHistMag2;  // right shifts
    int32_t nMD_NeighborCorrelation, nMD_ActBlk_MinMaxRatio_Scale, nMD_ActBlkRepeatFrmCntTh,
        nMD_ActNeighborBlkCntTh;
    int32_t nMD_HogDist_AvgYDiffCalc_Method, nMD_HogDist_AvgYDiffThre_Scale;
    int32_t nMD_HogDist_Th_AvgYDiffAdj_Scale, nMD_HogDist_Th_nnAdj_Scale,
        nMD_HogDist_Th_highActiveAdj_scale;
    int32_t nMD_LowDelayEn, nMD_HogDist_Th_LowDelay_shift, nMD_HogDist_Th_LowDelay_nn_count,
        nMD_HogDist_Th_LowDelay_prev_nn_count;
    int32_t nMD_HogDist_WeightMethod, nMD_HogDist_Scale, nMD_HogDist_Scale2, nMD_HogDist_Scale4;
    int32_t nDbgEn;  // DebugBit mask, key MD_DbgEn
    int32_t nMD_PostProcMethod, nMD_HogDist_Th, nMD_BlkCnt_Th, nMD_Sensitivity_Th;
    double dObj_Density1_Th, dObj_Density2_Th;                                // not used
    int32_t nMD_HogDist_ShortDiffTimeAvg_Th, nMD_HogDist_LongDiffTimeAvg_Th;  // not used
    double dHogDist_TimeAvg_Ratio_Th;                                         // not used
    int32_t nMD_Bbox_PP_Enable, nMD_Bbox_PP_Window;  // temporal gate; its window in frames
    double dMD_PP_Area_Converge_Thresh, dMD_PP_Aspect_Converge_Thresh;
    int32_t nCls_EnableMDOutput, nCls_Method;  // not used, like all Cls members
    double dCls_PersonTh, dCls_CarTh, dCls_AnimalTh, dCls_BgTh;
    int32_t nCls_ModelType, nCls_ModelInputW, nCls_ModelInputH;
    double dCls_CropRate;
    int32_t CurFrmId;      // no key: frame of this run, 0 on the first
    int32_t RefBufIdx;     // no key: pool slot of the reference, 0 to 14
    int32_t nEnableBatch;  // non-zero: no mp4 step at the end of the run
};

struct SimParams {
    int32_t nInputFileType;  // 0 raw 4:2:0, 1 any video, 2 raw luma, 3 raw 4:2:2
    char InputFilePath[kPathSize];
    int32_t nInputWidth, nInputHeight;  // pixels; name marks and the prober may overwrite them
    int32_t nStartFrameIdx, nFramesToBeProcessed;  // frames; -1 is all up to the end
    char OutputFilePath[kPathSize];
    char szFeaturePath[kPathSize];  // no key: OutputFilePath + "/HOG_feature"
    const char* pPreInputPath;      // no key: 4:2:0 at input size; lives to the process's end
    const char* pScaledInputPath;   // no key: 4:2:0 at working size; likewise
    MdParams tMd;
};

// The texts of the two comma lists, split into the taps of MdParams once parsing is done.
struct GradientTexts {
    char MD_HogGradX[kPathSize];
    char MD_HogGradY[kPathSize];
};
