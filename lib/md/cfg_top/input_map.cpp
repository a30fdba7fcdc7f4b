// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/cfg_top/input_map.h"

#include <iterator>

#include "md/run_state.h"

GradientTexts tGradientTexts;

namespace {

constexpr SimParams& sim = tSimParams;
constexpr MdParams& md = tSimParams.tMd;

// Row makers: the type of the place and the type in the row always agree.
constexpr InputMapEntry Row(const char* szKey, void* pPlace, ValueType nType, double dDefault,
                            LimitKindValue nKind, double dMin, double dMax) {
    InputMapEntry tRow{{}, pPlace, nType, dDefault, nKind, dMin, dMax};
    for (int i = 0; szKey[i] != '\0'; ++i) tRow.TokenName[i] = szKey[i];
    return tRow;
}

constexpr InputMapEntry Int(const char* szKey, int32_t* pPlace, int32_t nDefault,
                            LimitKindValue nKind, int32_t nMin, int32_t nMax = 0) {
    return Row(szKey, pPlace, kTypeInteger, nDefault, nKind, nMin, nMax);
}

constexpr InputMapEntry Real(const char* szKey, double* pPlace, double dDefault,
                             LimitKindValue nKind, double dMin, double dMax = 0.0) {
    return Row(szKey, pPlace, kTypeDouble, dDefault, nKind, dMin, dMax);
}

constexpr InputMapEntry Text(const char* szKey, char (&aPlace)[kPathSize]) {
    return Row(szKey, aPlace, kTypeString, 0.0, kLimitNone, 0.0, 0.0);
}

// The order of the rows is the order of the limit check. Under kLimitNone the bounds only inform
// the reader.
constexpr InputMapEntry aRows[] = {
    // clang-format off
    Int("InputFileType", &sim.nInputFileType, 0, kLimitBoth, 0, kInputTypes - 1),
    Text("InputFilePath", sim.InputFilePath),
    Int("InputWidth", &sim.nInputWidth, 1920, kLimitBoth, 0, 10000),
    Int("InputHeight", &sim.nInputHeight, 1072, kLimitBoth, 0, 10000),
    Int("StartFrameIdx", &sim.nStartFrameIdx, 0, kLimitBoth, 0, 10000),
    Int("FramesToBeProcessed", &sim.nFramesToBeProcessed, 1, kLimitBoth, -1, 100000),
    Text("OutputFilePath", sim.OutputFilePath),
    Int("MD_Scale_Method", &md.nMD_Scale_Method, 0, kLimitBoth, 0, 1),
    Int("MD_Scale_KeepAspectRatio", &md.nMD_Scale_KeepAspectRatio, 1, kLimitBoth, 0, 1),
    Int("MD_ScaledW", &md.nMD_ScaledW, 320, kLimitBoth, 16, 1920),
    Int("MD_ScaledH", &md.nMD_ScaledH, 180, kLimitBoth, 16, 1088),
    Int("x_ds_mode", &md.nx_ds_mode, 0, kLimitBoth, 0, 3),
    Int("y_ds_mode", &md.ny_ds_mode, 0, kLimitBoth, 0, 3),
    Int("x_ds_avg", &md.nx_ds_avg, 0, kLimitBoth, 0, 1),
    Int("x_ds_pos", &md.nx_ds_pos, 0, kLimitBoth, 0, 7),
    Int("y_ds_pos", &md.ny_ds_pos, 0, kLimitBoth, 0, 7),
    Int("MD_Padding_Method", &md.nMD_Padding_Method, 2, kLimitBoth, 0, 2),
    Int("MD_HogRefMode", &md.nMD_HogRefMode, 1, kLimitBoth, 0, 1),
    Int("MD_RefFrmIdx", &md.nMD_RefFrmIdx, 3, kLimitBoth, 0, 15),
    Int("MD_HogMethod", &md.nMD_HogMethod, 0, kLimitBoth, 0, 1),
    Int("MD_HogWithoutBlkDiffCheck", &md.nMD_HogWithoutBlkDiffCheck, 0, kLimitBoth, 0, 1),
    Int("MD_HogDistAvailCheck", &md.nMD_HogDistAvailCheck, 0, kLimitBoth, 0, 3),
    Int("MD_NoRandomBlock", &md.nMD_NoRandomBlock, 0, kLimitBoth, 0, 1),
    Int("MD_HogBlockSize", &md.nMD_HogBlockSize, 16, kLimitBoth, 16, 32),
    Int("MD_HogCellSize", &md.nMD_HogCellSize, 16, kLimitBoth, 8, 16),
    Int("MD_HogBlockStride", &md.nMD_HogBlockStride, 8, kLimitBoth, 8, 64),
    Text("MD_HogGradX", tGradientTexts.MD_HogGradX),
    Text("MD_HogGradY", tGradientTexts.MD_HogGradY),
    Int("MD_HogMagnitudeWeightEn", &md.nMD_HogMagnitudeWeightEn, 1, kLimitBoth, 0, 1),
    Int("MD_HogSmoothBinsEn", &md.nMD_HogSmoothBinsEn, 1, kLimitBoth, 0, 1),
    Int("MD_HogNormalizeMode", &md.nMD_HogNormalizeMode, 0, kLimitBoth, 0, 2),
    Int("MD_MetricMode", &md.nMD_MetricMode, 1, kLimitBoth, 0, 15),
    Int("MD_ShiftMetric2_Th", &md.nMD_ShiftMetric2_Th, 6, kLimitBoth, 0, 15),
    Int("MD_ShiftHistMag2", &md.nMD_ShiftHistMag2, 1, kLimitBoth, 0, 7),
    Int("MD_NeighborCorrelation", &md.nMD_NeighborCorrelation, 1, kLimitBoth, 0, 1),
    Int("MD_ActBlk_MinMaxRatio_Scale", &md.nMD_ActBlk_MinMaxRatio_Scale, 16, kLimitBoth, 0, 255),
    Int("MD_ActBlkRepeatFrmCntTh", &md.nMD_ActBlkRepeatFrmCntTh, 3, kLimitBoth, 0, 15),
    Int("MD_ActNeighborBlkCntTh", &md.nMD_ActNeighborBlkCntTh, 2, kLimitBoth, 0, 9),
    Int("MD_HogDist_AvgYDiffCalc_Method", &md.nMD_HogDist_AvgYDiffCalc_Method, 0, kLimitBoth, 0, 2),
    Int("MD_HogDist_AvgYDiffThre_Scale", &md.nMD_HogDist_AvgYDiffThre_Scale, 32, kLimitBoth, 0, 511),
    Int("MD_HogDist_Th_AvgYDiffAdj_Scale", &md.nMD_HogDist_Th_AvgYDiffAdj_Scale, 42, kLimitBoth, 0, 255),
    Int("MD_HogDist_Th_nnAdj_Scale", &md.nMD_HogDist_Th_nnAdj_Scale, 8, kLimitBoth, 0, 31),
    Int("MD_HogDist_Th_highActiveAdj_scale", &md.nMD_HogDist_Th_highActiveAdj_scale, 12, kLimitBoth, 0, 31),
    Int("MD_LowDelayEn", &md.nMD_LowDelayEn, 1, kLimitBoth, 0, 1),
    Int("MD_HogDist_Th_LowDelay_shift", &md.nMD_HogDist_Th_LowDelay_shift, 1, kLimitBoth, 0, 3),
    Int("MD_HogDist_Th_LowDelay_nn_count", &md.nMD_HogDist_Th_LowDelay_nn_count, 1, kLimitBoth, 0, 15),
    Int("MD_HogDist_Th_LowDelay_prev_nn_count", &md.nMD_HogDist_Th_LowDelay_prev_nn_count, 1, kLimitBoth, 0, 7),
    Int("MD_HogDist_WeightMethod", &md.nMD_HogDist_WeightMethod, 0, kLimitBoth, 0, 1),
    Int("MD_HogDist_Scale", &md.nMD_HogDist_Scale, 16, kLimitBoth, 0, 511),
    Int("MD_HogDist_Scale2", &md.nMD_HogDist_Scale2, 16, kLimitBoth, 0, 511),
    Int("MD_HogDist_Scale4", &md.nMD_HogDist_Scale4, 16, kLimitBoth, 0, 511),
    Int("MD_DbgEn", &md.nDbgEn, 0, kLimitNone, 0, 65536),
    Int("MD_PostProcMethod", &md.nMD_PostProcMethod, 1, kLimitBoth, 0, kPostProcMethods - 1),
    Int("MD_HogDist_Th", &md.nMD_HogDist_Th, 10, kLimitBoth, 0, 255),
    Int("MD_BlkCnt_Th", &md.nMD_BlkCnt_Th, 8, kLimitLower, 1),
    Int("MD_Sensitivity_Th", &md.nMD_Sensitivity_Th, 100, kLimitBoth, 0, 100),
    Real("Obj_Density1_Th", &md.dObj_Density1_Th, 0.0005, kLimitBoth, 0.0, 255.0),
    Real("Obj_Density2_Th", &md.dObj_Density2_Th, 0.005, kLimitBoth, 0.0, 255.0),
    Int("MD_HogDist_ShortDiffTimeAvg_Th", &md.nMD_HogDist_ShortDiffTimeAvg_Th, 50, kLimitLower, 0),
    Int("MD_HogDist_LongDiffTimeAvg_Th", &md.nMD_HogDist_LongDiffTimeAvg_Th, 100, kLimitLower, 0),
    Real("HogDist_TimeAvg_Ratio_Th", &md.dHogDist_TimeAvg_Ratio_Th, 2.5, kLimitLower, 0.0),
    Int("MD_Bbox_PP_Enable", &md.nMD_Bbox_PP_Enable, 0, kLimitBoth, 0, 1),
    Int("MD_Bbox_PP_Window", &md.nMD_Bbox_PP_Window, 5, kLimitBoth, 0, 10),
    Real("MD_PP_Area_Converge_Thresh", &md.dMD_PP_Area_Converge_Thresh, 1.3, kLimitBoth, 0.0, 255.0),
    Real("MD_PP_Aspect_Converge_Thresh", &md.dMD_PP_Aspect_Converge_Thresh, 1.5, kLimitBoth, 0.0, 255.0),
    Int("Cls_EnableMDOutput", &md.nCls_EnableMDOutput, 1, kLimitBoth, 0, 2),
    Int("Cls_Method", &md.nCls_Method, 1, kLimitNone, 0, 2),
    Real("Cls_PersonTh", &md.dCls_PersonTh, 0.7, kLimitBoth, 0.0, 1.0),
    Real("Cls_CarTh", &md.dCls_CarTh, 0.7, kLimitBoth, 0.0, 1.0),
    Real("Cls_AnimalTh", &md.dCls_AnimalTh, 0.7, kLimitBoth, 0.0, 1.0),
    Real("Cls_BgTh", &md.dCls_BgTh, 0.7, kLimitBoth, 0.0, 1.0),
    Int("Cls_ModelType", &md.nCls_ModelType, 0, kLimitNone, 0, 32),
    Int("Cls_ModelInputW", &md.nCls_ModelInputW, 128, kLimitLower, 0),
    Int("Cls_ModelInputH", &md.nCls_ModelInputH, 128, kLimitLower, 0),
    Real("Cls_CropRate", &md.dCls_CropRate, 0.85, kLimitBoth, 0.0, 1.0),
    Int("EnableBatch", &md.nEnableBatch, 0, kLimitNone, 0, 1),
    // clang-format on
    Row("END", nullptr, kTypeInteger, 0.0, kLimitNone, 0.0, 0.0),
};
static_assert(std::size(aRows) <= kMaxKeys + 1);

}  // namespace

const std::span<const InputMapEntry> aInputMap(aRows);
const std::span<const InputMapEntry> aInputKeys(aRows, std::size(aRows) - 1);
