// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/run_missing.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "lab/settings/settings.h"
#include "lab/sweep/engine.h"
#include "lab/sweep/job.h"
#include "lab/sweep/part_folder.h"

namespace fs = std::filesystem;

namespace lab {

namespace {

constexpr double kChunkSeconds = 20;

EngineOptions Engine(const SweepOptions& options) {
    return {options.profile, options.cores, options.into + "/engine.log", options.quiet};
}

EngineJobs NewJobs(const SweepOptions& options, const char* what) {
    EngineJobs jobs;
    jobs.folder = MakeEngineFolder(fs::absolute(options.into).string());
    jobs.what = what;
    return jobs;
}

// A guess: start-up, reading and printing a frame, and its blocks.
double SecondsOf(const WorkingClip& clip, const Settings& settings) {
    const double stride = std::atof(ValueOf(settings, "MD_HogBlockStride").c_str());
    const double blocks = clip.working.width / stride * clip.working.height / stride;
    return 0.004 + static_cast<double>(clip.frames) * (6e-6 + blocks * 6e-8);
}

// The job files of one call of the engine, cut into chunks.
class Chunks {
  public:
    Chunks(const RunList& list, const std::vector<Point>& points, EngineJobs* jobs)
        : list_(list), points_(points), jobs_(*jobs) {}

    [[nodiscard]] double SecondsOf(const PlannedRun& run) const {
        return ::lab::SecondsOf(list_.conversions[run.conversion].made,
                                points_[run.point].settings);
    }

    // Runs in the order of their conversions. Gives the job of each run, by id.
    std::map<std::string, std::string> Write(const std::vector<const PlannedRun*>& runs,
                                             double limit) {
        std::map<std::string, std::string> job_of;
        std::vector<const PlannedRun*> chunk;
        double seconds = 0;
        for (const PlannedRun* run : runs) {
            const bool other = !chunk.empty() && chunk.front()->conversion != run->conversion;
            if (other || seconds >= limit) {
                WriteOne(chunk);
                chunk.clear();
                seconds = 0;
            }
            chunk.push_back(run);
            seconds += SecondsOf(*run);
            job_of[run->id].assign(1, '*').append(NextName());
        }
        WriteOne(chunk);
        return job_of;
    }

  private:
    [[nodiscard]] std::string NextName() const {
        return "chunk-" + std::to_string(jobs_.names.size() + 1);
    }

    void WriteOne(const std::vector<const PlannedRun*>& runs) {
        const Conversion& conversion = list_.conversions[runs.front()->conversion];
        const Settings& first = points_[runs.front()->point].settings;
        const std::string name = NextName();
        ChunkJob chunk;
        chunk.clip = conversion.job;
        chunk.settings = PointAssignments(first, DefaultSettings());
        for (const PlannedRun* run : runs) {
            chunk.runs.push_back({run->id, PointAssignments(points_[run->point].settings, first)});
        }
        chunk.store = conversion.runs;
        chunk.progress = jobs_.folder + "/progress/" + name;
        chunk.failures = jobs_.folder + "/failed/" + name;
        WriteChunkJob(jobs_.folder + "/jobs/" + name + ".json", chunk);
        jobs_.names.push_back(name);
        jobs_.total += static_cast<int64_t>(runs.size());
    }

    const RunList& list_;
    const std::vector<Point>& points_;
    EngineJobs& jobs_;
};

// Chunks that keep all cores busy to the end, of 20 s at most.
double ChunkSeconds(const SweepOptions& options, const std::vector<const PlannedRun*>& runs,
                    const Chunks& chunks) {
    if (!options.profile.empty()) return kChunkSeconds;
    double all = 0;
    for (const PlannedRun* run : runs) all += chunks.SecondsOf(*run);
    return std::clamp(all / (options.cores * 4), 0.5, kChunkSeconds);
}

}  // namespace

bool ConvertClips(const SweepOptions& options, RunList* list, Faults* faults) {
    std::vector<Conversion>& all = list->conversions;
    const std::string clips = options.cache + "/clips";
    RemoveDeadParts(clips);
    if (std::all_of(all.begin(), all.end(), [](const Conversion& one) { return one.whole; })) {
        return true;
    }
    EngineJobs jobs = NewJobs(options, "clips");
    for (const Conversion& conversion : all) {
        if (conversion.whole) continue;
        const std::string name = "clip-" + conversion.id;
        WriteClipJob(jobs.folder + "/jobs/" + name + ".json", conversion.job,
                     jobs.folder + "/progress/" + name, jobs.folder + "/failed/" + name);
        jobs.names.push_back(name);
    }
    jobs.total = static_cast<int64_t>(jobs.names.size());
    fs::create_directories(clips);
    const bool finished = RunEngine(jobs, Engine(options));
    const auto notes = FailureNotes(jobs.folder);
    for (Conversion& conversion : all) {
        conversion.whole = ReadWorkingClip(conversion.job.folder, &conversion.made);
        if (conversion.whole) continue;
        const auto note = notes.find("*clip-" + conversion.id);
        (*faults)[conversion.id] = note == notes.end()
                                       ? "its conversion did not finish; engine.log says more"
                                       : note->second;
    }
    return finished;
}

bool RunMissing(const SweepOptions& options, const RunList& list, const std::vector<Point>& points,
                std::vector<const PlannedRun*> missing, Faults* faults) {
    std::erase_if(missing,
                  [&](const PlannedRun* run) { return !list.conversions[run->conversion].whole; });
    if (missing.empty()) return true;
    std::stable_sort(missing.begin(), missing.end(), [](const PlannedRun* a, const PlannedRun* b) {
        return a->conversion < b->conversion;
    });
    EngineJobs jobs = NewJobs(options, "runs");
    Chunks chunks(list, points, &jobs);
    const auto job_of = chunks.Write(missing, ChunkSeconds(options, missing, chunks));
    const bool finished = RunEngine(jobs, Engine(options));
    const auto notes = FailureNotes(jobs.folder);
    for (const auto& [id, job] : job_of) {
        const auto own = notes.find(id);
        const auto common = notes.find(job);
        (*faults)[id] = own != notes.end()      ? own->second
                        : common != notes.end() ? common->second
                                                : "its job did not finish; engine.log says more";
    }
    return finished;
}

}  // namespace lab
