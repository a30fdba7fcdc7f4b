// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/sweep.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <thread>

#include "lab/probe/clip_probe.h"
#include "lab/probe/tools.h"
#include "lab/sweep/engine.h"
#include "lab/sweep/file_digests.h"
#include "lab/sweep/job.h"
#include "lab/sweep/run_store.h"
#include "lab/tool/digest.h"
#include "lab/tool/error.h"
#include "md/input/name_marks.h"
#include "md/platform/platform.h"

namespace fs = std::filesystem;

namespace lab {

namespace {

constexpr double kChunkSeconds = 20;

std::string ValueOf(const Settings& settings, const char* key) {
    return settings[static_cast<size_t>(RowOf(key))];
}

// Rows that decide how a clip becomes a raw file; the others are the point's.
bool IsOfConversion(int row) {
    static const std::vector<int> rows = {RowOf("MD_ScaledW"), RowOf("MD_ScaledH"),
                                          RowOf("MD_Scale_KeepAspectRatio")};
    return std::find(rows.begin(), rows.end(), row) != rows.end();
}

bool IsOfPoint(int row) {
    return !SetBySweep(row) && !IsOfConversion(row);
}

// Assignments of the rows that are the point's and differ from `base`.
std::string Differences(const Settings& settings, const Settings& base) {
    std::string text;
    for (int row = 0; row < KeyCount(); ++row) {
        const auto at = static_cast<size_t>(row);
        if (IsOfPoint(row) && settings[at] != base[at]) text += Assignment(row, settings[at]);
    }
    return text;
}

// A clip at one working size.
struct Conversion {
    size_t clip = 0;
    ClipJob job;
    std::string id;
    bool whole = false;
    WorkingClip made;
};

struct Run {
    size_t point = 0, clip = 0, conversion = 0;
    std::string id;
};

class Sweep {
  public:
    explicit Sweep(const SweepOptions& options) : options_(options) {
        if (options_.cores <= 0) {
            options_.cores = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
        }
        sweep_.plan = ReadPlan(options_.plan);
        sweep_.points = PointsOf(sweep_.plan);
        if (options_.cache.empty()) options_.cache = options_.into + "/cache";
        options_.cache = fs::absolute(options_.cache).lexically_normal().string();
    }

    SweepResults Go() {
        FindProgram();
        RefuseMissingProfile();
        RefuseRotatedClips();
        // MD writes below it: its settings have to be able to say so.
        NormalValue(aInputKeys[static_cast<size_t>(RowOf("OutputFilePath"))], options_.cache);
        ListRuns();
        if (options_.only_plan) {
            Describe();
            return std::move(sweep_);
        }
        fs::create_directories(options_.into);
        fs::create_directories(options_.cache);
        const bool converted = Convert();
        LoadStore();
        const bool done = converted && RunMissing();
        sweep_.interrupted = !done;
        Collect();
        return std::move(sweep_);
    }

  private:
    void RefuseMissingProfile() const {
        const std::string& profile = options_.profile;
        if (profile.empty() || profile == kOwnProfile || fs::exists(profile + "/config.yaml")) {
            return;
        }
        throw Error("--profile " + profile + ": no config.yaml there; it takes a folder, or " +
                    kOwnProfile);
    }

    void RefuseRotatedClips() const {
        for (const PlanClip& clip : sweep_.plan.clips) {
            if (TypeOf(clip) == "1") RefuseRotated(clip.file, ProbeClip(clip.file));
        }
    }

    // 0 to 3, as InputFileType.
    std::string TypeOf(const PlanClip& clip) const {
        return clip.type.value_or(ValueOf(sweep_.plan.settings, "InputFileType"));
    }

    void FindProgram() {
        const fs::path self = fs::read_symlink("/proc/self/exe");
        sweep_.md = options_.md.empty() ? (self.parent_path() / "MD").string()
                                        : fs::absolute(options_.md).string();
        if (access(sweep_.md.c_str(), X_OK) != 0) {
            throw Error(sweep_.md + ": no MD to run there; say where it is with --md");
        }
        sweep_.md_digest = DigestOfFile(sweep_.md);
        // The converter makes the bytes that MD reads, so its version is part of what they follow
        // from.
        const std::string tool = fs::path(sweep_.md).parent_path() / "ffmpeg";
        if (fs::exists(tool)) converter_ = OutputOf(CommandWord(tool.c_str()) + " -version");
    }

    // What MD makes of the clip's name and of the settings for raw files.
    std::string InputText(const PlanClip& clip) const {
        const Settings& base = sweep_.plan.settings;
        std::string text = Assignment(RowOf("InputFileType"), TypeOf(clip));
        text += Assignment(RowOf("InputWidth"), clip.width.value_or(ValueOf(base, "InputWidth")));
        text +=
            Assignment(RowOf("InputHeight"), clip.height.value_or(ValueOf(base, "InputHeight")));
        return text;
    }
    static std::string MarksOf(const std::string& file) {
        std::string marks = std::to_string(InputTypeFromName(file.c_str()));
        ForEachNameSize(file.c_str(), [&](int32_t width, int32_t height) {
            marks += " " + std::to_string(width) + "x" + std::to_string(height);
        });
        return marks;
    }

    Conversion MakeConversion(size_t clip, const Settings& settings) const {
        const PlanClip& planned = sweep_.plan.clips[clip];
        std::string text = InputText(planned);
        for (int row = 0; row < KeyCount(); ++row) {
            if (IsOfConversion(row)) text += Assignment(row, settings[static_cast<size_t>(row)]);
        }
        Conversion conversion;
        conversion.clip = clip;
        conversion.id = DigestOf(digests_[clip] + "\n" + MarksOf(planned.file) + "\n" + text +
                                 sweep_.md_digest + converter_);
        conversion.job = {sweep_.md,    sweep_.md_digest,
                          planned.file, digests_[clip],
                          "",           options_.cache + "/clips/" + conversion.id};
        // The chip's own conditions, so that it comes as far as the conversion; no frame is run.
        conversion.job.settings =
            text + Assignment(RowOf("InputFilePath"), planned.file) +
            Assignment(RowOf("MD_HogMethod"), "1") + Assignment(RowOf("MD_MetricMode"), "2") +
            Assignment(RowOf("FramesToBeProcessed"), "0") + Assignment(RowOf("EnableBatch"), "1");
        conversion.whole = ReadWorkingClip(conversion.job.folder, &conversion.made);
        return conversion;
    }

    void ListRuns() {
        FileDigests digests(options_.cache + "/digests", !options_.only_plan);
        for (const PlanClip& clip : sweep_.plan.clips) {
            NormalValue(aInputKeys[static_cast<size_t>(RowOf("InputFilePath"))], clip.file);
            digests_.push_back(digests.Of(clip.file));
        }
        std::map<std::string, size_t> known;
        const Settings defaults = DefaultSettings();
        for (size_t p = 0; p < sweep_.points.points.size(); ++p) {
            const Point& point = sweep_.points.points[p];
            const std::string settings = Differences(point.settings, defaults);
            std::string size;
            for (int row = 0; row < KeyCount(); ++row) {
                if (IsOfConversion(row)) size += point.settings[static_cast<size_t>(row)] + " ";
            }
            for (size_t c = 0; c < sweep_.plan.clips.size(); ++c) {
                const std::string key = size + std::to_string(c);
                auto at = known.find(key);
                if (at == known.end()) {
                    conversions_.push_back(MakeConversion(c, point.settings));
                    at = known.emplace(key, conversions_.size() - 1).first;
                }
                const Conversion& conversion = conversions_[at->second];
                runs_.push_back({p, c, at->second, DigestOf(conversion.id + settings)});
            }
        }
        sweep_.runs = static_cast<int64_t>(runs_.size());
    }

    std::string StoreFolder(const Conversion& conversion) const {
        return options_.cache + "/runs/" + conversion.id;
    }

    void LoadStore() {
        store_ = RunIndex();
        for (const Conversion& conversion : conversions_) store_.AddFolder(StoreFolder(conversion));
    }

    [[nodiscard]] std::vector<const Run*> Missing() const {
        std::vector<const Run*> missing;
        for (const Run& run : runs_) {
            if (store_.Find(run.id) == nullptr) missing.push_back(&run);
        }
        return missing;
    }

    void Describe() {
        LoadStore();
        const Plan& plan = sweep_.plan;
        const Points& all = sweep_.points;
        std::printf("settings  %s\n", plan.settings_path.c_str());
        for (const PlanClip& clip : plan.clips) {
            std::printf("clip      %s: %s%s\n", clip.name.c_str(), clip.file.c_str(),
                        clip.labels ? "" : ", without labels");
        }
        for (const PlanKey& key : plan.keys) {
            std::string values;
            for (const std::string& value : key.values) values += " " + value;
            std::printf("key       %s:%s\n", aInputKeys[static_cast<size_t>(key.row)].TokenName,
                        values.c_str());
        }
        for (const std::string& idle : all.idle) std::printf("not read  %s\n", idle.c_str());
        for (const PlanLimit& limit : plan.limits) {
            std::printf("expect    %s%s\n", LimitText(limit).c_str(),
                        limit.clip < 0
                            ? ""
                            : (" in " + plan.clips[static_cast<size_t>(limit.clip)].name).c_str());
        }
        std::printf("points    %zu", all.points.size());
        if (all.chosen != all.product) {
            std::printf(", from %llu drawn of %llu", static_cast<unsigned long long>(all.chosen),
                        static_cast<unsigned long long>(all.product));
        } else if (all.points.size() != all.product) {
            std::printf(", from %llu that differ in keys they do not read",
                        static_cast<unsigned long long>(all.product));
        }
        const size_t missing = Missing().size();
        std::printf("\nruns      %zu, %zu of them in the cache\n", runs_.size(),
                    runs_.size() - missing);
    }

    EngineOptions Engine() const {
        return {options_.profile, options_.cores, options_.into + "/engine.log", options_.quiet};
    }

    EngineJobs NewJobs(const char* what) const {
        EngineJobs jobs;
        jobs.folder = MakeEngineFolder(fs::absolute(options_.into).string());
        jobs.what = what;
        return jobs;
    }

    // False if the user interrupted it. A clip that cannot be converted fails its points later.
    bool Convert() {
        if (std::all_of(conversions_.begin(), conversions_.end(),
                        [](const Conversion& conversion) { return conversion.whole; })) {
            return true;
        }
        EngineJobs jobs = NewJobs("clips");
        for (const Conversion& conversion : conversions_) {
            if (conversion.whole) continue;
            const std::string name = "clip-" + conversion.id;
            WriteClipJob(jobs.folder + "/jobs/" + name + ".json", conversion.job,
                         jobs.folder + "/progress/" + name, jobs.folder + "/failed/" + name);
            jobs.names.push_back(name);
        }
        jobs.total = static_cast<int64_t>(jobs.names.size());
        fs::create_directories(options_.cache + "/clips");
        const bool finished = RunEngine(jobs, Engine());
        const auto notes = FailureNotes(jobs.folder);
        for (Conversion& conversion : conversions_) {
            conversion.whole = ReadWorkingClip(conversion.job.folder, &conversion.made);
            const auto note = notes.find("*clip-" + conversion.id);
            if (!conversion.whole) {
                clip_faults_[conversion.id] =
                    note == notes.end() ? "its conversion did not finish; engine.log says more"
                                        : note->second;
            }
        }
        return finished;
    }

    // A guess: start-up, reading and printing a frame, and its blocks.
    double SecondsOf(const Run& run) const {
        const WorkingClip& clip = conversions_[run.conversion].made;
        const Settings& settings = sweep_.points.points[run.point].settings;
        const double stride = std::atof(ValueOf(settings, "MD_HogBlockStride").c_str());
        const double blocks = clip.working.width / stride * clip.working.height / stride;
        return 0.004 + static_cast<double>(clip.frames) * (6e-6 + blocks * 6e-8);
    }

    // Chunks that keep all cores busy to the end, of 20 s at most.
    double ChunkSeconds(const std::vector<const Run*>& missing) const {
        if (!options_.profile.empty()) return kChunkSeconds;
        double all = 0;
        for (const Run* run : missing) all += SecondsOf(*run);
        return std::clamp(all / (options_.cores * 4), 0.5, kChunkSeconds);
    }

    void WriteChunk(const std::vector<const Run*>& runs, EngineJobs* jobs) const {
        const Conversion& conversion = conversions_[runs.front()->conversion];
        const Settings& first = sweep_.points.points[runs.front()->point].settings;
        const std::string name = "chunk-" + std::to_string(jobs->names.size() + 1);
        ChunkJob chunk;
        chunk.clip = conversion.job;
        chunk.settings = Differences(first, DefaultSettings());
        for (const Run* run : runs) {
            chunk.runs.push_back(
                {run->id, Differences(sweep_.points.points[run->point].settings, first)});
        }
        chunk.store = StoreFolder(conversion);
        chunk.progress = jobs->folder + "/progress/" + name;
        chunk.failures = jobs->folder + "/failed/" + name;
        WriteChunkJob(jobs->folder + "/jobs/" + name + ".json", chunk);
        jobs->names.push_back(name);
        jobs->total += static_cast<int64_t>(runs.size());
    }

    bool RunMissing() {
        std::vector<const Run*> missing = Missing();
        sweep_.from_cache = sweep_.runs - static_cast<int64_t>(missing.size());
        std::erase_if(missing,
                      [&](const Run* run) { return !conversions_[run->conversion].whole; });
        if (missing.empty()) return true;
        std::stable_sort(missing.begin(), missing.end(),
                         [](const Run* a, const Run* b) { return a->conversion < b->conversion; });
        EngineJobs jobs = NewJobs("runs");
        const double limit = ChunkSeconds(missing);
        std::vector<const Run*> chunk;
        double seconds = 0;
        std::map<std::string, std::string> job_of;
        for (const Run* run : missing) {
            const bool other = !chunk.empty() && chunk.front()->conversion != run->conversion;
            if (other || seconds >= limit) {
                WriteChunk(chunk, &jobs);
                chunk.clear();
                seconds = 0;
            }
            chunk.push_back(run);
            seconds += SecondsOf(*run);
            job_of[run->id] = "*chunk-" + std::to_string(jobs.names.size() + 1);
        }
        WriteChunk(chunk, &jobs);
        const bool finished = RunEngine(jobs, Engine());
        NoteFaults(FailureNotes(jobs.folder), job_of);
        LoadStore();
        return finished;
    }

    void NoteFaults(const std::map<std::string, std::string>& notes,
                    const std::map<std::string, std::string>& job_of) {
        for (const auto& [id, job] : job_of) {
            const auto own = notes.find(id);
            const auto common = notes.find(job);
            run_faults_[id] = own != notes.end() ? own->second
                              : common != notes.end()
                                  ? common->second
                                  : "its job did not finish; engine.log says more";
        }
    }

    RunResult ResultOf(const Run& run) const {
        const Conversion& conversion = conversions_[run.conversion];
        RunResult result;
        result.working = conversion.made.working;
        const StoredRun* stored = store_.Find(run.id);
        if (stored == nullptr) {
            const auto clip = clip_faults_.find(conversion.id);
            const auto own = run_faults_.find(run.id);
            result.message = clip != clip_faults_.end() ? clip->second
                             : own != run_faults_.end() ? own->second
                                                        : "was not run";
            return result;
        }
        result.status = stored->refused ? RunStatus::kRefused : RunStatus::kDone;
        result.message = stored->message;
        if (stored->refused) return result;
        const auto& labels = sweep_.plan.clips[run.clip].labels;
        result.judgement = Judge(FramesOf(*stored), labels ? &*labels : nullptr,
                                 {conversion.made.input, conversion.made.working});
        return result;
    }

    void Collect() {
        sweep_.results.resize(sweep_.points.points.size());
        sweep_.clip_sizes.resize(sweep_.plan.clips.size());
        for (const Run& run : runs_) {
            PointResult& point = sweep_.results[run.point];
            point.runs.push_back(ResultOf(run));
            const RunResult& result = point.runs.back();
            point.status = std::max(point.status, result.status);
            if (result.status == RunStatus::kDone) point.total += result.judgement.counts;
            const WorkingClip& made = conversions_[run.conversion].made;
            if (made.input.width > 0) sweep_.clip_sizes[run.clip] = made.input;
        }
        JudgePoints(&sweep_);
    }

    SweepOptions options_;
    SweepResults sweep_;
    std::string converter_;
    std::vector<std::string> digests_;  // of the clips
    std::vector<Conversion> conversions_;
    std::vector<Run> runs_;
    RunIndex store_;
    std::map<std::string, std::string> clip_faults_, run_faults_;
};

}  // namespace

const char* StatusName(RunStatus status) {
    switch (status) {
        case RunStatus::kDone:
            return "done";
        case RunStatus::kRefused:
            return "refused";
        case RunStatus::kFailed:
            break;
    }
    return "failed";
}

std::string OptionLine(const Plan& plan, const Point& point) {
    std::string line;
    for (size_t k = 0; k < plan.keys.size(); ++k) {
        if (point.values[k].empty()) continue;
        if (!line.empty()) line += ' ';
        line.append("-p ").append(aInputKeys[static_cast<size_t>(plan.keys[k].row)].TokenName);
        line.append("=").append(point.values[k]);
    }
    return line;
}

std::string PointId(const Point& point) {
    std::string text;
    for (int row = 0; row < KeyCount(); ++row) {
        if (!SetBySweep(row)) text += Assignment(row, point.settings[static_cast<size_t>(row)]);
    }
    return DigestOf(text).substr(0, 12);
}

SweepResults RunSweep(const SweepOptions& options) {
    return Sweep(options).Go();
}

}  // namespace lab
