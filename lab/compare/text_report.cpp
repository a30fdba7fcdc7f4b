// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "lab/compare/report.h"

namespace lab {

namespace {

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Format(const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

// Labels are in a column nine wide.
std::string Line(const std::string& label, const std::string& text) {
    std::string line = label;
    line.resize(std::max<std::size_t>(line.size() + 1, 9), ' ');
    return line + text + "\n";
}

// "y moment of cell 2   golden 3a (58)   other 3b (59)   +1, bits 01"; boxes are pixels.
std::string ValueText(const Difference& d) {
    if (d.stage == kStageBox) {
        return NameOf(d) +
               Format("   golden %d   other %d   %+d", d.golden, d.other, d.other - d.golden);
    }
    return NameOf(d) + Format("   golden %02x (%d)   other %02x (%d)   %+d, bits %02x",
                              static_cast<unsigned>(d.golden), d.golden,
                              static_cast<unsigned>(d.other), d.other, d.other - d.golden,
                              static_cast<unsigned>(d.golden ^ d.other));
}

std::string Place(const Comparison& c, const Difference& d, bool pixels) {
    if (d.stage == kStageBox) return "";
    constexpr int kBlockSize = 16;
    std::string place = Format("   block x %d, y %d", d.x, d.y);
    if (!pixels) return place;
    const int left = d.x * c.stride, top = d.y * c.stride;
    place +=
        Format("   pixels %d..%d, %d..%d", left, left + kBlockSize - 1, top, top + kBlockSize - 1);
    return place + (c.stride_known ? "" : " at stride 8");
}

std::string StageWord(Stage stage) {
    return stage == kStageLength ? "length class" : StageName(stage);
}

void Append(std::string* list, const std::string& item) {
    *list += (list->empty() ? "" : ", ") + item;
}

// What agrees and what differs at the block of the first difference.
std::string ThereText(const Comparison& c) {
    const Difference& lead = c.first.front();
    std::string same, different;
    for (int s = 0; s < kStageCount; ++s) {
        const auto stage = static_cast<Stage>(s);
        const StageThere& there = c.there[static_cast<std::size_t>(s)];
        // A box belongs to no block.
        if (!there.known || (stage == kStageBox) != (lead.stage == kStageBox)) continue;
        const auto wrong = there.different.size();
        if (stage == kStageVector && wrong > 0 && wrong < kVectorSize) {
            Append(&same, Format("%zu of %d vector elements", kVectorSize - wrong, kVectorSize));
        } else if (wrong == 0) {
            Append(&same, StageWord(stage));
        }
        const std::size_t first = stage == lead.stage ? 1 : 0;
        if (wrong == first) continue;
        // Of many values their number is enough.
        const Difference& d = there.different[first];
        const bool many = wrong - first > 3;
        Append(&different, many
                               ? Format("%zu values of %s", wrong - first, StageWord(stage).c_str())
                               : NameOf(d) + Format(" %d -> %d", d.golden, d.other));
        for (std::size_t i = first + 1; i < wrong && !many; ++i) {
            const Difference& next = there.different[i];
            Append(&different, NameOf(next) + Format(" %d -> %d", next.golden, next.other));
        }
    }
    std::string text;
    if (!same.empty()) text += Line("", "same there: " + same);
    if (!different.empty()) text += Line("", "also there: " + different);
    return text;
}

// Which files show the first difference, if others of the frame do not.
std::string SourcesText(const Difference& lead) {
    std::string text = "shown by " + NameSources(lead.shown, lead.frame);
    if (lead.same != 0) {
        text += "; but the same in " + NameSources(lead.same, lead.frame) +
                ": the files of one run disagree";
    }
    return Line("", text);
}

}  // namespace

const char* SettingsOf(Stage stage) {
    constexpr std::array<const char*, kStageCount> kSettings = {
        "InputFilePath, StartFrameIdx, MD_ScaledW, MD_ScaledH",
        "MD_Padding_Method, MD_HogGradX, MD_HogGradY, MD_HogMagnitudeWeightEn, "
        "MD_ShiftMetric2_Th, MD_HogNormalizeMode",
        "MD_ShiftHistMag2, MD_HogNormalizeMode",
        "MD_RefFrmIdx, StartFrameIdx",
        "MD_HogDist_Scale2, MD_HogDist_WeightMethod, MD_HogDistAvailCheck, "
        "MD_HogDist_AvgYDiffThre_Scale",
        "MD_HogDist_Th and its _Adj_ scales, MD_NeighborCorrelation, MD_LowDelayEn, "
        "MD_ActBlkRepeatFrmCntTh, MD_ActNeighborBlkCntTh",
        "MD_PostProcMethod, MD_HogDist_Th, MD_BlkCnt_Th, MD_Bbox_PP_Enable",
    };
    return kSettings[stage];
}

namespace {

// Where to look, by what is known to be equal before the leading stage in that frame.
std::string SuspectText(const Comparison& c) {
    constexpr std::array<const char*, kStageCount> kSuspects = {
        "pixels or their mean: the input, its scaling, the fetch of blocks",
        "gradients, the border of a block, or moments: the mean luma is the same",
        "the vector's length and class: the vector itself is the same",
        "the choice or storage of the reference: the frame's own features are the same",
        "the distance, its weight or scale: the features are the same",
        "thresholds, history or neighbours of the decision: the distances are the same",
        "the box method, its settings or the gate: the active blocks are the same",
    };
    constexpr std::array<int, kStageCount> kNeeds = {
        -1, kStageLuma, kStageVector, kStageVector, kStageVector, kStageDistance, kStageActive};
    if (c.first.front().same != 0) {
        return Line("suspect", "the writing of one of these files, not the block");
    }
    const Stage stage = c.first.front().stage;
    const int needed = kNeeds[stage];
    if (needed >= 0 && !c.there[static_cast<std::size_t>(needed)].known) return "";
    std::string text = kSuspects[stage];
    if (c.frame_counts.front().blocks == c.columns * c.rows) {
        text += "; all blocks of the frame differ, as by a setting";
    }
    text += std::string("\n         settings: ") + SettingsOf(stage);
    return Line("suspect", text);
}

std::string StagesText(const Comparison& c) {
    std::string text;
    for (int s = 0; s < kStageCount; ++s) {
        const auto stage = static_cast<std::size_t>(s);
        const std::string count =
            c.shown[stage] ? std::to_string(c.blocks[stage]) : std::string("-");
        text += (text.empty() ? "" : "   ") + std::string(StageName(static_cast<Stage>(s))) + " " +
                count;
    }
    return Line("stages", text + "   blocks that differ");
}

std::string FramesText(const Comparison& c) {
    constexpr std::size_t kMost = 8;
    std::string text;
    for (std::size_t i = 0; i < c.frame_counts.size() && i < kMost; ++i) {
        const FrameCount& count = c.frame_counts[i];
        text += std::to_string(count.frame) + ": " +
                (count.blocks > 0 ? std::to_string(count.blocks) : "box") + "   ";
    }
    if (c.frame_counts.size() > kMost) {
        text += Format("...   %zu frames in all   ", c.frame_counts.size());
    }
    if (c.frame_counts.size() > 1) {
        text += Format("later ones may follow from frame %lld",
                       static_cast<long long>(c.frame_counts.front().frame));
    }
    text.resize(text.find_last_not_of(' ') + 1);
    return Line("frames", text);
}

std::string FirstText(const Comparison& c) {
    const Difference& lead = c.first.front();
    std::string text =
        Line("first", Format("frame %lld (files %04lld_*)", static_cast<long long>(lead.frame),
                             static_cast<long long>(lead.frame) + 1) +
                          Place(c, lead, true));
    text += Line("stage", std::string(StageName(lead.stage)) + ": " + ValueText(lead));
    text += ThereText(c) + SourcesText(lead) + SuspectText(c) + StagesText(c) + FramesText(c);
    return text;
}

std::string MoreText(const Comparison& c) {
    std::string text;
    for (std::size_t i = 1; i < c.first.size(); ++i) {
        const Difference& d = c.first[i];
        text +=
            Line("more", Format("frame %lld", static_cast<long long>(d.frame)) +
                             Place(c, d, false) + "   " + StageName(d.stage) + ": " + ValueText(d));
    }
    return text;
}

bool IsInput(const VideoDifference& v) {
    return v.name.starts_with("ScaledInput_") || v.name.starts_with("PreInput_");
}

std::string VideoText(const VideoDifference& v) {
    std::string text = v.name;
    if (v.differs) {
        text += Format(
            ": frame %lld of the file, plane %c, pixel %d, %d   golden %02x (%d)   other "
            "%02x (%d)   ",
            static_cast<long long>(v.frame), v.plane, v.x, v.y, static_cast<unsigned>(v.golden),
            v.golden, static_cast<unsigned>(v.other), v.other);
        text += Counted(v.frames, "frame") + (v.frames == 1 ? " differs" : " differ");
    }
    if (v.golden_frames != v.other_frames) {
        text +=
            Format("%s golden has %lld frames, other %lld", v.differs ? ";" : ":",
                   static_cast<long long>(v.golden_frames), static_cast<long long>(v.other_frames));
    } else if (!v.differs) {
        text += ": the last frame ends at another byte";
    }
    return Line(IsInput(v) ? "input" : "video", text);
}

bool Explains(const std::string& label) {
    return label == "settings" || label == "grids";
}

}  // namespace

std::string TextReport(const Comparison& c, bool colour) {
    const bool differs = c.Differs();
    const char* word = differs ? "DIFFER" : c.trouble.empty() ? "SAME" : "TROUBLE";
    std::string head = Line(word, c.other + " against " + c.golden);
    head.pop_back();
    if (c.frames > 0) head += ": " + Counted(c.frames, "frame");
    if (c.columns > 0) head += ", " + Counted(c.columns * c.rows, "block");
    if (colour) {
        const std::string start = differs || !c.trouble.empty() ? "\033[1;31m" : "\033[1;32m";
        head = start + head.substr(0, 9) + "\033[0m" + head.substr(9);
    }
    std::string text = head + "\n";
    // First what explains the rest: other settings, other pixels, another grid.
    for (const auto& [label, line] : c.findings) {
        if (Explains(label)) text += Line(label, line);
    }
    for (const VideoDifference& video : c.videos) {
        if (IsInput(video)) text += VideoText(video);
    }
    if (!c.first.empty()) text += FirstText(c);
    std::string hints;
    for (const std::string& hint : c.hints) Append(&hints, hint);
    if (!hints.empty()) text += "looks like: " + hints + "\n";
    for (const VideoDifference& video : c.videos) {
        if (!IsInput(video)) text += VideoText(video);
    }
    for (const auto& [label, line] : c.findings) {
        if (!Explains(label)) text += Line(label, line);
    }
    text += MoreText(c);
    for (const auto* lines : {&c.notes, &c.trouble}) {
        for (const auto& [label, line] : *lines) text += Line(label, line);
    }
    return text;
}

}  // namespace lab
