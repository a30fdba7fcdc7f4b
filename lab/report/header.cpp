// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/header.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "lab/page/pack.h"

namespace lab {

namespace {

using nlohmann::json;

constexpr std::array<const char*, 4> kMethods = {"weighted centre", "best group", "projections",
                                                 "bisection"};

std::string Count(int64_t n, const std::string& one, const std::string& many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

std::string Frames(int64_t n) {
    return Count(n, "frame", "frames");
}

std::string Bold(const std::string& text, const char* which = nullptr) {
    const std::string open = which == nullptr ? "<b>" : std::string("<b class=\"") + which + "\">";
    return open + text + "</b>";
}

// Figures of one run, or of both with an arrow.
std::string Pair(const std::string& a, const std::string& b) {
    return Bold(a, "a") + " → " + Bold(b, "b");
}

// `attributes`: what makes it a button; empty for a plain cell. Figure and note are html.
std::string Cell(const std::string& label, const std::string& figure, const std::string& note,
                 const std::string& attributes = "", const std::string& note_class = "note",
                 const std::string& cell_class = "cell") {
    const bool button = !attributes.empty();
    return (button ? "<button type=\"button\" class=\"" + cell_class + "\" " + attributes + ">"
                   : "<div class=\"" + cell_class + "\">") +
           "<span class=\"label\">" + label + "</span><span class=\"figure\">" + figure +
           "</span><span class=\"" + note_class + "\">" + note + "</span>" +
           (button ? "</button>\n" : "</div>\n");
}

int FirstFrame(const RecordedRun& run) {
    return run.facts["clip"]["first"];
}

std::string FrameNumber(const RecordedRun& run, int index) {
    return std::to_string(FirstFrame(run) + index);
}

// Time of a frame with a leading mark where it is a mean; empty without a rate.
std::string TimeOf(const HeaderInput& in, int index) {
    if (in.clip.fps <= 0) return "";
    const double seconds = (FirstFrame(in.runs[0]) + index) / in.clip.fps;
    return (in.clip.variable_rate ? "about " : "") + TimeText(seconds);
}

std::string DataFrame(int index) {
    return "data-frame=\"" + std::to_string(index) + "\"";
}

bool GateOn(const RecordedRun& run) {
    return run.facts["run"]["gate"];
}

std::string SizeText(const RecordedRun& run) {
    const json& clip = run.facts["clip"];
    const json& grid = run.facts["run"]["grid"];
    return std::to_string(clip["width"].get<int>()) + "×" +
           std::to_string(clip["height"].get<int>()) + ", " + Frames(run.Frames()) + ", " +
           std::to_string(grid["w"].get<int>()) + "×" + std::to_string(grid["h"].get<int>()) +
           " blocks";
}

std::string ValueText(const RecordedRun& run, const std::string& key) {
    const json& value = run.facts["run"]["settings"][key]["value"];
    const std::string text = value.is_string()
                                 ? value.get<std::string>()
                                 : value.dump(-1, ' ', false, json::error_handler_t::replace);
    return EscapeHtml(text.empty() ? "\"\"" : text);
}

// "MD_HogDist_Th 16 → 10", at most two of them.
std::string ChangesText(const HeaderInput& in) {
    const auto& keys = in.comparison->keys;
    if (keys.empty()) return "equal settings";
    std::string text;
    for (size_t i = 0; i < std::min<size_t>(keys.size(), 2); ++i) {
        if (i > 0) text += ", ";
        text +=
            keys[i] + " " + Pair(ValueText(in.runs[0], keys[i]), ValueText(in.runs[1], keys[i]));
    }
    if (keys.size() > 2) text += ", " + std::to_string(keys.size() - 2) + " more";
    return text;
}

std::string ClipCell(const HeaderInput& in) {
    const std::string below = in.comparison ? ChangesText(in) : SizeText(in.runs[0]);
    return "<div class=\"clip\"><h1>" + EscapeHtml(in.clip.title) + "</h1><p>" + below +
           "</p></div>\n";
}

std::string BoxCells(const HeaderInput& in, const RecordedRun& run) {
    const Summary& sum = run.summary;
    std::string html;
    if (sum.events.empty()) {
        const int n = sum.most_active;
        return n == 0 ? Cell("Most active blocks", Bold("0"), "no block was ever active")
                      : Cell("Most active blocks", Bold(std::to_string(n)),
                             "frame " + FrameNumber(run, sum.most_active_frame),
                             DataFrame(sum.most_active_frame));
    }
    const int first = sum.events.front().range.first;
    html += Cell("First box", "frame " + Bold(FrameNumber(run, first)), TimeOf(in, first),
                 DataFrame(first));
    if (!sum.longest_gap) return html + Cell("Longest gap", Bold("none"), "a box in every frame");
    const IndexRange gap = *sum.longest_gap;
    const std::string range = gap.Length() == 1
                                  ? FrameNumber(run, gap.first)
                                  : FrameNumber(run, gap.first) + "–" + FrameNumber(run, gap.last);
    return html +
           Cell("Longest gap",
                Bold(std::to_string(gap.Length())) + (gap.Length() == 1 ? " frame" : " frames"),
                range, DataFrame(gap.first) + " data-last=\"" + std::to_string(gap.last) + "\"");
}

std::string EventsCell(const Summary& sum) {
    const std::string note =
        sum.events.empty() ? "no box was reported" : "longest " + Frames(sum.LongestEvent());
    return Cell("Events", Bold(std::to_string(sum.events.size())), note, "data-tab=\"events\"");
}

std::string SingleCells(const HeaderInput& in) {
    const RecordedRun& run = in.runs[0];
    const Summary& sum = run.summary;
    const std::string motion = Bold(sum.motion == 0 ? "None" : std::to_string(sum.motion)) +
                               (sum.motion == 0 ? " in " : " of ") + Frames(sum.frames);
    std::string html = Cell("Motion", motion, Share(sum.motion, sum.frames));
    if (GateOn(run)) {
        html +=
            Cell("Reported after the gate",
                 Bold(std::to_string(sum.reported)) + (sum.reported == 1 ? " frame" : " frames"),
                 std::to_string(sum.held) + " held back");
    }
    html += EventsCell(sum) + BoxCells(in, run);
    const int method = run.facts["run"]["method"];
    const json& window = run.facts["run"]["settings"]["MD_Bbox_PP_Window"]["value"];
    html += Cell("Box method",
                 Bold(std::to_string(method)) + " " + kMethods[static_cast<size_t>(method)],
                 GateOn(run) ? "gate on, " + Frames(window.get<int>()) : "gate off", "", "note",
                 "cell method");
    return html + Cell("Settings",
                       Bold(std::to_string(run.facts["run"]["changed"].get<int>())) + " changed",
                       run.facts["run"]["fingerprint"].get<std::string>(), "data-tab=\"settings\"",
                       "note mono");
}

const char* StageText(const FirstDifference& first) {
    const std::string_view stage = first.stage;
    if (stage == "luma") return "in the luma";
    if (stage == "vectors") return "in the vectors";
    if (stage == "distances") return "in the distances";
    if (stage == "decision") return "in the decision";
    return stage == "box" ? "in the box" : "after the gate";
}

std::string ComparisonCells(const HeaderInput& in) {
    const Summary& a = in.runs[0].summary;
    const Summary& b = in.runs[1].summary;
    const bool gate = GateOn(in.runs[0]) || GateOn(in.runs[1]);
    const Comparison& c = *in.comparison;
    std::string html =
        Cell("Motion, frames", Pair(std::to_string(a.motion), std::to_string(b.motion)),
             "of " + std::to_string(a.frames));
    html += Cell("Reported", Pair(std::to_string(a.reported), std::to_string(b.reported)),
                 gate ? "after the gate" : "frames with a box");
    html += Cell("Events", Pair(std::to_string(a.events.size()), std::to_string(b.events.size())),
                 "", "data-tab=\"events\"");
    html += Cell("Frames that differ", Bold(std::to_string(c.frames)), Share(c.frames, a.frames));
    html += c.first
                ? Cell("First difference", "frame " + Bold(FrameNumber(in.runs[0], c.first->frame)),
                       StageText(*c.first), DataFrame(c.first->frame))
                : Cell("First difference", Bold("none"), "the runs agree");
    return html +
           Cell("Settings",
                Bold(std::to_string(c.keys.size())) + (c.keys.size() == 1 ? " differs" : " differ"),
                in.runs[0].facts["run"]["fingerprint"].get<std::string>(), "data-tab=\"settings\"",
                "note mono");
}

std::string HeadNotes(const HeaderInput& in) {
    const RecordedRun& run = in.runs[0];
    std::string html;
    const auto Note = [&](const std::string& text) {
        html += "<p class=\"headnote\">" + text + "</p>\n";
    };
    if (in.clip.ended_early) {
        Note("Run ended after frame " + FrameNumber(run, run.Frames() - 1) + ".");
    }
    for (const RecordedRun& each : in.runs) {
        if (each.facts["run"]["reference"] == 0) {
            Note("MD_RefFrmIdx is 0: every frame is compared with itself, so nothing ever moves.");
            break;
        }
    }
    if (in.clip.variable_rate) {
        Note(
            "The frames of this clip do not come at one rate: times are only about right, and a "
            "frame that the conversion repeats shows no motion.");
    }
    return html;
}

}  // namespace

std::string Share(int64_t part, int64_t whole) {
    const double percent = 100.0 * static_cast<double>(part) / static_cast<double>(whole);
    auto rounded = std::lround(percent);
    const bool fine = part > 0 && part < whole && (percent > 99 || percent < 1);
    if (!fine) return std::to_string(rounded) + " %";
    const double tenths = std::clamp(std::round(percent * 10) / 10, 0.1, 99.9);
    char text[16];
    std::snprintf(text, sizeof text, "%.1f %%", tenths);
    return text;
}

std::string TimeText(double seconds) {
    const auto tenths = static_cast<int64_t>(std::floor(seconds * 10 + 1e-6));
    const int64_t minutes = tenths / 600;
    char text[48];
    if (minutes >= 60) {
        std::snprintf(text, sizeof text, "%lld:%02lld:%04.1f", static_cast<long long>(minutes / 60),
                      static_cast<long long>(minutes % 60), static_cast<double>(tenths % 600) / 10);
    } else {
        std::snprintf(text, sizeof text, "%lld:%04.1f", static_cast<long long>(minutes),
                      static_cast<double>(tenths % 600) / 10);
    }
    return text;
}

std::string Verdict(const HeaderInput& in) {
    const RecordedRun& run = in.runs[0];
    const Summary& sum = run.summary;
    std::string text = in.clip.title + ": ";
    text += sum.motion == 0
                ? "no motion in " + Frames(sum.frames)
                : "motion in " + std::to_string(sum.motion) + " of " + Frames(sum.frames);
    if (sum.events.empty()) return text + ", no box reported.";
    return text + ", a box reported in " + std::to_string(sum.reported) + ", in " +
           Count(static_cast<int64_t>(sum.events.size()), "event", "events") + "; first in frame " +
           FrameNumber(run, sum.events.front().range.first) + ".";
}

std::string HeaderCells(const HeaderInput& in) {
    std::string html = ClipCell(in);
    html += in.comparison ? ComparisonCells(in) : SingleCells(in);
    if (in.shortened) {
        html += Cell("Shortened", "Parts left out", "click for what", "data-dialog=\"short\"",
                     "note", "cell short");
    }
    return html + HeadNotes(in);
}

}  // namespace lab
