// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/sweep.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "lab/probe/clip_probe.h"
#include "lab/probe/tools.h"
#include "lab/sweep/engine.h"
#include "lab/sweep/run_list.h"
#include "lab/sweep/run_missing.h"
#include "lab/tool/digest.h"
#include "lab/tool/error.h"
#include "md/platform/platform.h"

namespace fs = std::filesystem;

namespace lab {

namespace {

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
        const MdProgram md = FindProgram();
        RefuseMissingProfile();
        RefuseRotatedClips();
        // MD writes below it: its settings have to be able to say so.
        NormalValue(aInputKeys[static_cast<size_t>(RowOf("OutputFilePath"))], options_.cache);
        list_ =
            ListRuns(sweep_.plan, sweep_.points.points, md, options_.cache, !options_.only_plan);
        sweep_.runs = static_cast<int64_t>(list_.runs.size());
        if (options_.only_plan) {
            Describe();
            return std::move(sweep_);
        }
        fs::create_directories(options_.into);
        fs::create_directories(options_.cache);
        sweep_.interrupted = !RunAll();
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
            if (TypeOf(clip, sweep_.plan.settings) == "1")
                RefuseRotated(clip.file, ProbeClip(clip.file));
        }
    }

    MdProgram FindProgram() {
        const fs::path self = fs::read_symlink("/proc/self/exe");
        sweep_.md = options_.md.empty() ? (self.parent_path() / "MD").string()
                                        : fs::absolute(options_.md).string();
        if (access(sweep_.md.c_str(), X_OK) != 0) {
            throw Error(sweep_.md + ": no MD to run there; say where it is with --md");
        }
        sweep_.md_digest = DigestOfFile(sweep_.md);
        // The converter makes the bytes that MD reads, so its version is part of what they follow
        // from.
        std::string converter;
        const std::string tool = fs::path(sweep_.md).parent_path() / "ffmpeg";
        if (fs::exists(tool)) converter = OutputOf(CommandWord(tool.c_str()) + " -version");
        return {sweep_.md, sweep_.md_digest, converter};
    }

    void Describe() const {
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
        const size_t missing = MissingRuns(list_, LoadStore(list_)).size();
        std::printf("\nruns      %zu, %zu of them in the cache\n", list_.runs.size(),
                    list_.runs.size() - missing);
    }

    // False if the user interrupted it. Collects what there is either way.
    bool RunAll() {
        bool done = ConvertClips(options_, &list_, &clip_faults_);
        RunIndex store = LoadStore(list_);
        if (done) {
            const auto missing = MissingRuns(list_, store);
            sweep_.from_cache = sweep_.runs - static_cast<int64_t>(missing.size());
            done = RunMissing(options_, list_, sweep_.points.points, missing, &run_faults_);
            if (!missing.empty()) store = LoadStore(list_);
        }
        Collect(store);
        return done;
    }

    RunResult ResultOf(const PlannedRun& run, const RunIndex& store) const {
        const Conversion& conversion = list_.conversions[run.conversion];
        RunResult result;
        result.working = conversion.made.working;
        const StoredRun* stored = store.Find(run.id);
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

    void Collect(const RunIndex& store) {
        sweep_.results.resize(sweep_.points.points.size());
        sweep_.clip_sizes.resize(sweep_.plan.clips.size());
        for (const PlannedRun& run : list_.runs) {
            PointResult& point = sweep_.results[run.point];
            point.runs.push_back(ResultOf(run, store));
            const RunResult& result = point.runs.back();
            point.status = std::max(point.status, result.status);
            if (result.status == RunStatus::kDone) point.total += result.judgement.counts;
            const WorkingClip& made = list_.conversions[run.conversion].made;
            if (made.input.width > 0) sweep_.clip_sizes[run.clip] = made.input;
        }
        JudgePoints(&sweep_);
    }

    SweepOptions options_;
    SweepResults sweep_;
    RunList list_;
    Faults clip_faults_, run_faults_;
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
