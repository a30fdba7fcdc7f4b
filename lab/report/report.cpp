// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/report.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "lab/probe/clip_probe.h"
#include "lab/report/content.h"
#include "lab/report/page_file.h"
#include "lab/report/record_run.h"
#include "lab/report/spool.h"
#include "lab/tool/error.h"
#include "lab/tool/interrupt.h"
#include "lab/tool/temp_folder.h"

namespace lab {

namespace {

constexpr double kMegabyte = 1 << 20;

bool IsRaw(const std::string& path) {
    return path.ends_with(".yuv");
}

// What is worth knowing before MD prepares its input; refuses a clip that it would scramble.
ClipFacts Probe(const ReportRequest& request, const InterruptGuard& interrupt) {
    SimParams settings{};
    if (!SettingsOf(request.arguments, interrupt, &settings)) return {};
    if (settings.nInputFileType != kAnyVideo || IsRaw(settings.InputFilePath)) return {};
    ClipFacts facts = ProbeClip(settings.InputFilePath);
    RefuseRotated(settings.InputFilePath, facts);
    return facts;
}

RecordedRun Record(const ReportRequest& request, const std::vector<std::string>& arguments,
                   const std::string& folder, const InterruptGuard& interrupt) {
    std::filesystem::create_directory(folder);
    const RunRequest run{arguments, folder, request.log.empty() ? folder + "/log" : request.log,
                         request.quiet};
    return ReadRun(folder, RecordRun(run, interrupt));
}

// Fewer frames than asked for, or a last one that is not whole.
bool EndedEarly(const RecordedRun& run) {
    const int requested = run.facts["clip"]["requested"];
    if (requested >= 0) return run.Frames() < requested;
    const int64_t frame = run.facts["source"]["frame_bytes"];
    const int64_t start = run.facts["source"]["offset"];
    std::error_code error;
    const auto size = std::filesystem::file_size(run.folder + "/working", error);
    return !error && static_cast<int64_t>(size) > start + frame * run.Frames();
}

std::optional<IndexRange> DetailOf(const ReportRequest& request, const RecordedRun& run) {
    if (!request.detail) return std::nullopt;
    const int first = run.facts["clip"]["first"];
    const IndexRange asked{request.detail->first - first, request.detail->last - first};
    if (asked.first < 0 || asked.last >= run.Frames() || asked.Length() < 1) {
        throw Error("--detail: the run has frames " + std::to_string(first) + " to " +
                    std::to_string(first + run.Frames() - 1));
    }
    return asked;
}

// The first shape that fits; the last one if none does.
void WriteFitting(const ReportRequest& request, const PageTemplate& page, Content* content,
                  const InterruptGuard& interrupt, ResultFile* file) {
    const std::vector<Shape> shapes = Shapes();
    for (const Shape& shape : shapes) {
        interrupt.Check();
        const std::vector<DataBlock> blocks = content->Blocks(shape);
        const PageTexts texts = content->Texts(shape);
        const int64_t size = PageSize(page, texts, blocks);
        const bool last = &shape == &shapes.back();
        if (request.budget > 0 && size > request.budget && !last) continue;
        if (request.budget > 0 && size > request.budget) {
            std::fprintf(stderr,
                         "mdlab: the page has %.1f MB, more than the budget: no more can "
                         "be left out\n",
                         static_cast<double>(size) / kMegabyte);
        }
        WritePage(page, texts, blocks, interrupt, file);
        file->Commit();
        return;
    }
}

}  // namespace

std::vector<std::string> SecondArguments(const std::vector<std::string>& arguments,
                                         const std::vector<std::string>& against) {
    std::vector<std::string> files, values;
    for (const std::string& item : against) {
        std::error_code error;
        const bool value =
            item.find('=') != std::string::npos && !std::filesystem::exists(item, error);
        auto& list = value ? values : files;
        list.insert(list.end(), {value ? "-p" : "-f", item});
    }
    std::vector<std::string> second = arguments;
    const auto line = std::find_if(second.begin(), second.end(),
                                   [](const std::string& a) { return a.starts_with("-p"); });
    second.insert(line, files.begin(), files.end());
    second.insert(second.end(), values.begin(), values.end());
    return second;
}

int MakeReport(const ReportRequest& request, std::string_view page) {
    const PageTemplate cut = CutTemplate(page);
    const InterruptGuard interrupt;
    const TempFolder temporary;
    ResultFile file(request.out);  // before a long run for nothing
    try {
        const ClipFacts facts = Probe(request, interrupt);
        const auto second = SecondArguments(request.arguments, request.against);
        SimParams ignored{};
        if (!SettingsOf(second, interrupt, &ignored)) {
            // The second run says why, before the first one takes its time.
            Record(request, second, temporary.Path() + "/refused", interrupt);
        }
        std::vector<RecordedRun> runs;
        runs.push_back(Record(request, request.arguments, temporary.Path() + "/a", interrupt));
        if (!request.against.empty()) {
            runs.push_back(Record(request, second, temporary.Path() + "/b", interrupt));
        }
        const ClipTexts clip{request.title.value_or(runs[0].facts["clip"]["name"]), facts.fps,
                             facts.variable_rate, EndedEarly(runs[0])};
        const auto detail = DetailOf(request, runs[0]);
        Content content(std::move(runs), clip, detail, request.budget, request.quiet, interrupt);
        WriteFitting(request, cut, &content, interrupt, &file);
    } catch (const Refusal& refusal) {
        return refusal.status;
    }
    return kSame;
}

}  // namespace lab
