// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// All settings of a run. Each key of the input map (cfg_top/input_map.cpp) stores into one member
// here; the map holds its default and its range. Members without a key say so.
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

// Values of InputFileType. input/input_types.cpp has their table.
enum InputType : int32_t {
    kRaw420 = 0,    // raw planar 4:2:0
    kAnyVideo = 1,  // any video that the outside tools read
    kRawLuma = 2,   // raw luma only
    kRaw422 = 3,    // raw planar 4:2:2
    kInputTypes,
};

// Values of nMD_Padding_Method: what surrounds a block when its gradients are formed.
enum PaddingMethod : int32_t {
    kPadNeighbours = 0,  // the pixels around it
    kPadZeros = 1,
    kPadEdge = 2,  // the block's own edge pixels, repeated
};

// Values of nMD_HogRefMode. Both give the same schedule; the first logs it twice.
enum RefMode : int32_t { kRefLoggedTwice = 0, kRefLoggedOnce = 1 };

// Values of nMD_HogDistAvailCheck that mean something; the others switch the check off.
enum AvailCheck : int32_t { kAvailCheckLuma = 1, kAvailCheckRefused = 2 };

// Values of nMD_PostProcMethod: how active blocks become a box. object/box_methods.cpp has their
// table.
enum PostProcMethod : int32_t {
    kWeightedCentroid = 0,
    kGridCluster = 1,
    kProjectionBox = 2,
    kBisection = 3,
    kPostProcMethods,
};

// The detection block's section. "Not used": parsed, held to its range, read by nothing. "Bool": 0
// or not 0.
struct MdParams {
    int32_t nMD_Scale_Method;            // must be 0; 0 to 1
    int32_t nMD_Scale_KeepAspectRatio;   // bool: height follows from width and input aspect
    int32_t nMD_ScaledW;                 // working frame, pixels, 16 to 1920
    int32_t nMD_ScaledH;                 // pixels, 16 to 1088; input preparation may store any even
    int32_t nx_ds_mode;                  // not used; 0 to 3
    int32_t ny_ds_mode;                  // not used; 0 to 3
    int32_t nx_ds_pos;                   // not used; 0 to 7
    int32_t nx_ds_avg;                   // not used; 0 to 1
    int32_t ny_ds_pos;                   // not used; 0 to 7
    int32_t nMD_Padding_Method;          // PaddingMethod
    int32_t nMD_HogRefMode;              // RefMode
    int32_t nMD_RefFrmIdx;               // distance of the reference, frames, 0 to 14
    int32_t nMD_HogMethod;               // must be 1; 0 to 1
    int32_t nMD_HogWithoutBlkDiffCheck;  // deprecated; 1 switches the check below off; 0 to 1
    int32_t nMD_HogDistAvailCheck;       // AvailCheck; 0 to 3
    int32_t nMD_NoRandomBlock;           // not used; 0 to 1
    int32_t nMD_HogBlockSize;            // edge of a block, pixels; must be 16
    int32_t nMD_HogCellSize;             // pixels, 8 or 16: a distance is divided by 4 with 8
    int32_t nMD_HogBlockStride;          // pixels between blocks, 8 to 64, a multiple of 8
    int32_t nMD_HogGradX[kGradientTaps];   // no key: from its text; each sign sums to 8 at most
    int32_t nMD_HogGradY[kGradientTaps];   // no key: likewise
    int32_t nMD_HogMagnitudeWeightEn;      // bool: pixels count by the Gaussian window
    int32_t nMD_HogSmoothBinsEn;           // not used; 0 to 1
    int32_t nMD_HogNormalizeMode;          // bool: vectors get one length; 0 to 2
    int32_t nMD_MetricMode;                // MetricBit mask, 0 to 15; 0 or 2 after the refusals
    int32_t nMD_MetricMagTh;               // no key: least magnitude that counts; stays 0
    int32_t nMD_ShiftMetric2_Th;           // right shift of the moments, bits, 0 to 15
    int32_t nMD_ShiftHistMag2;             // shift of the weight by gradient strength, bits, 0 to 7
    int32_t nMD_NeighborCorrelation;       // bool: past and neighbours decide
    int32_t nMD_ActBlk_MinMaxRatio_Scale;  // ratio of distances, sixteenths above 1, 0 to 255
    int32_t nMD_ActBlkRepeatFrmCntTh;      // frames, 0 to 15
    int32_t nMD_ActNeighborBlkCntTh;       // blocks, 0 to 9
    int32_t nMD_HogDist_AvgYDiffCalc_Method;     // ThresholdMethod, 0 to 2
    int32_t nMD_HogDist_AvgYDiffThre_Scale;      // sixteenths of the mean luma change, 0 to 511
    int32_t nMD_HogDist_Th_AvgYDiffAdj_Scale;    // eighths of the luma threshold, 0 to 255
    int32_t nMD_HogDist_Th_nnAdj_Scale;          // quarters of nMD_HogDist_Th, 0 to 31
    int32_t nMD_HogDist_Th_highActiveAdj_scale;  // quarters above 1, 0 to 31
    int32_t nMD_LowDelayEn;                      // bool: a block may count in its first two frames
    int32_t nMD_HogDist_Th_LowDelay_shift;       // right shift of a threshold, bits, 0 to 3
    int32_t nMD_HogDist_Th_LowDelay_nn_count;    // active blocks around, 0 to 15
    int32_t nMD_HogDist_Th_LowDelay_prev_nn_count;  // those right and below, last frame, 0 to 7
    int32_t nMD_HogDist_WeightMethod;  // weight by strength: 0 any change counts, 1 a gain only
    int32_t nMD_HogDist_Scale;         // not used; 0 to 511
    int32_t nMD_HogDist_Scale2;        // scale of the distance, sixteenths, 0 to 511
    int32_t nMD_HogDist_Scale4;        // not used; 0 to 511
    int32_t nDbgEn;                    // DebugBit mask, key MD_DbgEn; any value
    int32_t nMD_PostProcMethod;        // PostProcMethod
    int32_t nMD_HogDist_Th;            // distance from which a block can be active, 0 to 255
    int32_t nMD_BlkCnt_Th;             // blocks of a box with method 0, at least 1
    int32_t nMD_Sensitivity_Th;        // not used; 0 to 100
    double dObj_Density1_Th;           // not used; 0 to 255
    double dObj_Density2_Th;           // not used; 0 to 255
    int32_t nMD_HogDist_ShortDiffTimeAvg_Th;  // not used; at least 0
    int32_t nMD_HogDist_LongDiffTimeAvg_Th;   // not used; at least 0
    double dHogDist_TimeAvg_Ratio_Th;         // not used; at least 0
    int32_t nMD_Bbox_PP_Enable;               // bool: the temporal gate
    int32_t nMD_Bbox_PP_Window;               // its window, frames, 0 to 10; at least 1 if enabled
    double dMD_PP_Area_Converge_Thresh;       // growth of summed area a frame, factor, 0 to 255
    double dMD_PP_Aspect_Converge_Thresh;     // the same of the aspect
    int32_t nCls_EnableMDOutput;              // not used; 0 to 2
    int32_t nCls_Method;                      // not used; any value
    double dCls_PersonTh;                     // not used; 0 to 1
    double dCls_CarTh;                        // not used; 0 to 1
    double dCls_AnimalTh;                     // not used; 0 to 1
    double dCls_BgTh;                         // not used; 0 to 1
    int32_t nCls_ModelType;                   // not used; any value
    int32_t nCls_ModelInputW;                 // not used; at least 0
    int32_t nCls_ModelInputH;                 // not used; at least 0
    double dCls_CropRate;                     // not used; 0 to 1
    int32_t CurFrmId;                         // no key: frame of this run, 0 on the first
    int32_t RefBufIdx;                        // no key: pool slot of the reference, 0 to 14
    int32_t nEnableBatch;                     // bool: no mp4 step at the end of the run; any value
};

struct SimParams {
    int32_t nInputFileType;          // InputType
    char InputFilePath[kPathSize];   // completed before anything reads it
    int32_t nInputWidth;             // pixels, 0 to 10000; name marks and the prober may store more
    int32_t nInputHeight;            // likewise
    int32_t nStartFrameIdx;          // frame of the input, 0 to 10000
    int32_t nFramesToBeProcessed;    // frames, -1 to 100000; -1 is all up to the end
    char OutputFilePath[kPathSize];  // completed before anything reads it
    char szFeaturePath[kPathSize];   // no key: OutputFilePath + "/HOG_feature"
    const char* pPreInputPath;       // no key: 4:2:0 at input size; lives to the process's end
    const char* pScaledInputPath;    // no key: 4:2:0 at working size; likewise
    MdParams tMd;
};

// The texts of the two comma lists, split into the taps of MdParams once parsing is done.
struct GradientTexts {
    char MD_HogGradX[kPathSize];
    char MD_HogGradY[kPathSize];
};
