// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/run_list.h"

#include <algorithm>
#include <map>

#include "lab/settings/settings.h"
#include "lab/sweep/file_digests.h"
#include "lab/tool/digest.h"
#include "md/input/name_marks.h"

namespace lab {

namespace {

// Rows that decide how a clip becomes a raw file; the others are the point's.
bool IsOfConversion(int row) {
    static const std::vector<int> rows = {RowOf("MD_ScaledW"), RowOf("MD_ScaledH"),
                                          RowOf("MD_Scale_KeepAspectRatio")};
    return std::find(rows.begin(), rows.end(), row) != rows.end();
}

bool IsOfPoint(int row) {
    return !SetBySweep(row) && !IsOfConversion(row);
}

// What the plan and the settings say of a clip's type and size.
std::string InputText(const PlanClip& clip, const Settings& base) {
    return Assignment(RowOf("InputFileType"), TypeOf(clip, base)) +
           Assignment(RowOf("InputWidth"), clip.width.value_or(ValueOf(base, "InputWidth"))) +
           Assignment(RowOf("InputHeight"), clip.height.value_or(ValueOf(base, "InputHeight")));
}

// What MD reads from the clip's name.
std::string MarksOf(const std::string& file) {
    std::string marks = std::to_string(InputTypeFromName(file.c_str()));
    ForEachNameSize(file.c_str(), [&](int32_t width, int32_t height) {
        marks.append(" ").append(std::to_string(width));
        marks.append("x").append(std::to_string(height));
    });
    return marks;
}

Conversion MakeConversion(const PlanClip& planned, const std::string& digest, std::string text,
                          const MdProgram& md, const std::string& cache) {
    Conversion conversion;
    conversion.id =
        DigestOf(digest + "\n" + MarksOf(planned.file) + "\n" + text + md.digest + md.converter);
    conversion.runs = cache + "/runs/" + conversion.id;
    conversion.job = {md.path, md.digest, planned.file,
                      digest,  "",        cache + "/clips/" + conversion.id};
    // The chip's own conditions, so that it comes as far as the conversion; no frame is run.
    conversion.job.settings =
        text + Assignment(RowOf("InputFilePath"), planned.file) +
        Assignment(RowOf("MD_HogMethod"), "1") + Assignment(RowOf("MD_MetricMode"), "2") +
        Assignment(RowOf("FramesToBeProcessed"), "0") + Assignment(RowOf("EnableBatch"), "1");
    conversion.whole = ReadWorkingClip(conversion.job.folder, &conversion.made);
    return conversion;
}

std::vector<std::string> ClipDigests(const Plan& plan, const std::string& cache, bool keep) {
    FileDigests digests(cache + "/digests", keep);
    std::vector<std::string> list;
    for (const PlanClip& clip : plan.clips) {
        NormalValue(aInputKeys[static_cast<size_t>(RowOf("InputFilePath"))], clip.file);
        list.push_back(digests.Of(clip.file));
    }
    return list;
}

}  // namespace

std::string ValueOf(const Settings& settings, const char* key) {
    return settings[static_cast<size_t>(RowOf(key))];
}

std::string TypeOf(const PlanClip& clip, const Settings& base) {
    return clip.type.value_or(ValueOf(base, "InputFileType"));
}

std::string PointAssignments(const Settings& settings, const Settings& base) {
    std::string text;
    for (int row = 0; row < KeyCount(); ++row) {
        const auto at = static_cast<size_t>(row);
        if (IsOfPoint(row) && settings[at] != base[at]) text += Assignment(row, settings[at]);
    }
    return text;
}

RunList ListRuns(const Plan& plan, const std::vector<Point>& points, const MdProgram& md,
                 const std::string& cache, bool keep_digests) {
    RunList list;
    const std::vector<std::string> digests = ClipDigests(plan, cache, keep_digests);
    std::map<std::pair<size_t, std::string>, size_t> known;  // by clip and working size
    const Settings defaults = DefaultSettings();
    for (size_t p = 0; p < points.size(); ++p) {
        const Settings& settings = points[p].settings;
        const std::string own = PointAssignments(settings, defaults);
        std::string size;
        for (int row = 0; row < KeyCount(); ++row) {
            if (IsOfConversion(row)) size += Assignment(row, settings[static_cast<size_t>(row)]);
        }
        for (size_t c = 0; c < plan.clips.size(); ++c) {
            auto at = known.find({c, size});
            if (at == known.end()) {
                list.conversions.push_back(
                    MakeConversion(plan.clips[c], digests[c],
                                   InputText(plan.clips[c], plan.settings) + size, md, cache));
                list.conversions.back().clip = c;
                at = known.insert({{c, size}, list.conversions.size() - 1}).first;
            }
            const std::string& conversion = list.conversions[at->second].id;
            list.runs.push_back({p, c, at->second, DigestOf(conversion + own)});
        }
    }
    return list;
}

RunIndex LoadStore(const RunList& list) {
    RunIndex store;
    for (const Conversion& conversion : list.conversions) store.AddFolder(conversion.runs);
    return store;
}

std::vector<const PlannedRun*> MissingRuns(const RunList& list, const RunIndex& store) {
    std::vector<const PlannedRun*> missing;
    for (const PlannedRun& run : list.runs) {
        if (store.Find(run.id) == nullptr) missing.push_back(&run);
    }
    return missing;
}

}  // namespace lab
