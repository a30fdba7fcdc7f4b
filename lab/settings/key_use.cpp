// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/settings/key_use.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lab {

namespace {

constexpr std::array<std::string_view, 25> kReadByNothing = {"x_ds_mode",
                                                             "y_ds_mode",
                                                             "x_ds_avg",
                                                             "x_ds_pos",
                                                             "y_ds_pos",
                                                             "MD_NoRandomBlock",
                                                             "MD_HogSmoothBinsEn",
                                                             "MD_HogDist_Scale",
                                                             "MD_HogDist_Scale4",
                                                             "MD_Sensitivity_Th",
                                                             "Obj_Density1_Th",
                                                             "Obj_Density2_Th",
                                                             "MD_HogDist_ShortDiffTimeAvg_Th",
                                                             "MD_HogDist_LongDiffTimeAvg_Th",
                                                             "HogDist_TimeAvg_Ratio_Th",
                                                             "Cls_EnableMDOutput",
                                                             "Cls_Method",
                                                             "Cls_PersonTh",
                                                             "Cls_CarTh",
                                                             "Cls_AnimalTh",
                                                             "Cls_BgTh",
                                                             "Cls_ModelType",
                                                             "Cls_ModelInputW",
                                                             "Cls_ModelInputH",
                                                             "Cls_CropRate"};

// A key that is idle while the condition holds. Of several rows the first that holds is given.
struct Row {
    std::string_view key;
    bool (*idle)(const SimParams&);
    const char* why;
};

bool IsVideo(const SimParams& s) {
    return s.nInputFileType == kAnyVideo;
}
bool KeepsAspect(const SimParams& s) {
    return s.tMd.nMD_Scale_KeepAspectRatio != 0;
}
bool NotNormalised(const SimParams& s) {
    return s.tMd.nMD_HogNormalizeMode == 0;
}
bool NoCorrelation(const SimParams& s) {
    return s.tMd.nMD_NeighborCorrelation == 0;
}
bool NoLowDelay(const SimParams& s) {
    return s.tMd.nMD_LowDelayEn == 0;
}
bool NoGate(const SimParams& s) {
    return s.tMd.nMD_Bbox_PP_Enable == 0;
}
// Both name the methods that do not read the key: a method added later may read it.
bool NoBlockCount(const SimParams& s) {
    const int32_t method = s.tMd.nMD_PostProcMethod;
    return method == kGridCluster || method == kProjectionBox || method == kBisection;
}
bool NoThreshold(const SimParams& s) {
    const int32_t method = s.tMd.nMD_PostProcMethod;
    return NoCorrelation(s) && (method == kGridCluster || method == kProjectionBox);
}
bool NoLumaThreshold(const SimParams& s) {
    return NoCorrelation(s) && s.tMd.nMD_HogDistAvailCheck != kAvailCheckLuma;
}

constexpr const char* kAlone = "neighbours and past do not count";
constexpr const char* kNoLowDelay = "low delay is off";
constexpr const char* kNoGate = "the gate is off";

constexpr std::array kRows = {
    Row{"MD_HogRefMode", [](const SimParams&) { return true; }, "it changes lines of the log only"},
    Row{"InputWidth", IsVideo, "the video has its size"},
    Row{"InputHeight", IsVideo, "the video has its size"},
    Row{"MD_ScaledH", KeepsAspect, "height follows from the width"},
    Row{"MD_ShiftHistMag2", NotNormalised, "vectors are not normalised"},
    Row{"MD_HogDist_WeightMethod", NotNormalised, "vectors are not normalised"},
    Row{"MD_HogDist_Th", NoThreshold, kAlone},
    Row{"MD_HogDist_Th_AvgYDiffAdj_Scale", NoCorrelation, kAlone},
    Row{"MD_HogDist_AvgYDiffCalc_Method", NoLumaThreshold, kAlone},
    Row{"MD_HogDist_AvgYDiffThre_Scale", NoLumaThreshold, kAlone},
    Row{"MD_HogDist_Th_nnAdj_Scale", NoCorrelation, kAlone},
    Row{"MD_HogDist_Th_highActiveAdj_scale", NoCorrelation, kAlone},
    Row{"MD_ActBlkRepeatFrmCntTh", NoCorrelation, kAlone},
    Row{"MD_ActBlk_MinMaxRatio_Scale", NoCorrelation, kAlone},
    Row{"MD_ActNeighborBlkCntTh", NoCorrelation, kAlone},
    Row{"MD_LowDelayEn", NoCorrelation, kAlone},
    Row{"MD_HogDist_Th_LowDelay_shift", NoCorrelation, kAlone},
    Row{"MD_HogDist_Th_LowDelay_nn_count", NoCorrelation, kAlone},
    Row{"MD_HogDist_Th_LowDelay_prev_nn_count", NoCorrelation, kAlone},
    Row{"MD_HogDist_Th_LowDelay_shift", NoLowDelay, kNoLowDelay},
    Row{"MD_HogDist_Th_LowDelay_nn_count", NoLowDelay, kNoLowDelay},
    Row{"MD_HogDist_Th_LowDelay_prev_nn_count", NoLowDelay, kNoLowDelay},
    Row{"MD_BlkCnt_Th", NoBlockCount, "only method 0 reads it"},
    Row{"MD_Bbox_PP_Window", NoGate, kNoGate},
    Row{"MD_PP_Area_Converge_Thresh", NoGate, kNoGate},
    Row{"MD_PP_Aspect_Converge_Thresh", NoGate, kNoGate},
};

}  // namespace

std::string WhyIdle(const std::string& key, const SimParams& settings) {
    if (std::find(kReadByNothing.begin(), kReadByNothing.end(), key) != kReadByNothing.end()) {
        return "it changes nothing";
    }
    for (const Row& row : kRows) {
        if (row.key == key && row.idle(settings)) return row.why;
    }
    return "";
}

}  // namespace lab
