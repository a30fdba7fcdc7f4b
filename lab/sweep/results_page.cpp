// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "lab/page/pack.h"
#include "lab/page/template.h"
#include "lab/sweep/results.h"
#include "lab/tool/result_file.h"
#include "lab/tool/text_file.h"

namespace lab {

namespace {

std::string Count(size_t n, const std::string& what) {
    return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

// The best value of a score over all clips; empty where no point has it.
std::string Best(const SweepResults& sweep, const char* name) {
    std::optional<double> best;
    for (const ScoreRow& row : ScoreTable()) {
        if (std::strcmp(row.name, name) != 0) continue;
        for (const PointResult& point : sweep.results) {
            if (point.status != RunStatus::kDone) continue;
            const std::optional<double> value = row.value(point.total);
            if (value && (!best || *value > *best)) best = value;
        }
    }
    return ScoreText(best);
}

size_t CountPoints(const SweepResults& sweep, RunStatus status) {
    return static_cast<size_t>(
        std::count_if(sweep.results.begin(), sweep.results.end(),
                      [&](const PointResult& point) { return point.status == status; }));
}

size_t CountMeeting(const SweepResults& sweep) {
    return static_cast<size_t>(
        std::count_if(sweep.results.begin(), sweep.results.end(), [](const PointResult& point) {
            return point.status == RunStatus::kDone && point.missed.empty();
        }));
}

std::string Verdict(const SweepResults& sweep) {
    std::string text = Count(sweep.results.size(), "point") + " on " +
                       Count(sweep.plan.clips.size(), "clip") + ".";
    const std::string f1 = Best(sweep, "f1");
    if (!f1.empty()) text += " The best F1 is " + f1 + ".";
    if (sweep.plan.limits.empty()) return text;
    return text + " What the plan expects is met by " + Count(CountMeeting(sweep), "point") + ".";
}

// All texts are html by now.
std::string Cell(const std::string& label, const std::string& figure, const std::string& note,
                 const std::string& mood = "") {
    return "<div class=\"cell" + mood + "\"><span class=\"label\">" + label +
           "</span><span class=\"figure\">" + figure + "</span><span class=\"note\">" + note +
           "</span></div>\n";
}

std::string Bold(const std::string& text) {
    return "<b>" + text + "</b>";
}

std::string Header(const SweepResults& sweep, const std::string& name) {
    const size_t points = sweep.results.size();
    std::string html = "<div class=\"clip\"><h1>" + EscapeHtml(name) + "</h1><p>" +
                       Count(points, "point") + " on " + Count(sweep.plan.clips.size(), "clip") +
                       "</p></div>\n";
    const std::string f1 = Best(sweep, "f1");
    if (!f1.empty()) html += Cell("Best F1", Bold(f1), "recall up to " + Best(sweep, "recall"));
    if (!sweep.plan.limits.empty()) {
        const size_t met = CountMeeting(sweep);
        html +=
            Cell("Expected", met == 0 ? Bold("met by none") : "met by " + Bold(std::to_string(met)),
                 Count(sweep.plan.limits.size(), "limit"), met == 0 ? " bad" : " good");
    }
    const size_t refused = CountPoints(sweep, RunStatus::kRefused);
    const size_t failed = CountPoints(sweep, RunStatus::kFailed);
    if (refused + failed > 0) {
        html += Cell("Without scores", Bold(std::to_string(refused + failed)),
                     std::to_string(refused) + " refused, " + std::to_string(failed) + " failed",
                     failed > 0 ? " bad" : "");
    }
    return html;
}

}  // namespace

void WriteSweepPage(const SweepResults& sweep, std::string_view page, const std::string& json_path,
                    const std::string& path) {
    const PageTemplate cut = CutTemplate(page);
    const std::string name = std::filesystem::path(sweep.plan.path).filename();
    const std::string verdict = EscapeHtml(name + ": " + Verdict(sweep));
    ResultFile file(path);
    file.Write(cut.before_title + verdict + cut.before_verdict + verdict + cut.before_header);
    file.Write(Header(sweep, name) + cut.before_data);
    file.Write("<script type=\"text/plain\" id=\"md-results\">");
    file.Write(Base64(Deflate(ReadTextFile(json_path))));
    file.Write("</script>\n" + cut.after_data);
    file.Commit();
}

}  // namespace lab
