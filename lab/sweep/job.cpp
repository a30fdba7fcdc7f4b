// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/job.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "lab/settings/settings.h"
#include "lab/sweep/md_process.h"
#include "lab/sweep/run_store.h"
#include "lab/tool/error.h"
#include "lab/tool/temp_folder.h"
#include "lab/tool/text_file.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace lab {

namespace {

json ClipJson(const ClipJob& job) {
    return {{"md", job.md},
            {"md_digest", job.md_digest},
            {"clip", job.clip},
            {"clip_digest", job.clip_digest},
            {"settings", job.settings},
            {"folder", job.folder}};
}

ClipJob ClipOf(const json& facts) {
    return {facts["md"],          facts["md_digest"], facts["clip"],
            facts["clip_digest"], facts["settings"],  facts["folder"]};
}

ChunkJob ChunkOf(const json& facts) {
    ChunkJob job;
    job.clip = ClipOf(facts["clip"]);
    job.settings = facts["settings"];
    for (const json& run : facts["runs"]) job.runs.push_back({run[0], run[1]});
    job.store = facts["store"];
    job.progress = facts["progress"];
    job.failures = facts["failures"];
    return job;
}

// Appends; what cannot be written there is only a note, and the store decides what is done.
void Note(const std::string& path, const std::string& text) {
    std::FILE* file = std::fopen(path.c_str(), "ab");
    if (file == nullptr) return;
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

// Settings of a run that reads the raw file in place.
std::string PlaceSettings(const WorkingClip& clip) {
    const auto line = [](const char* key, const std::string& value) {
        return Assignment(RowOf(key), value);
    };
    const std::string width = std::to_string(clip.working.width);
    const std::string height = std::to_string(clip.working.height);
    return line("InputFileType", "0") + line("InputFilePath", "in.yuv") +
           line("InputWidth", width) + line("InputHeight", height) + line("MD_ScaledW", width) +
           line("MD_ScaledH", height) + line("MD_Scale_KeepAspectRatio", "0") +
           line("OutputFilePath", "out") + line("EnableBatch", "1") + line("MD_DbgEn", "0");
}

// Frames that a run of the whole clip has, by its settings.
int64_t FramesToCome(const std::string& settings_path, const WorkingClip& clip) {
    const Settings settings = ReadSettings(settings_path);
    const auto number = [&](const char* key) {
        return std::atoll(settings[static_cast<size_t>(RowOf(key))].c_str());
    };
    const int64_t left = std::max<int64_t>(clip.frames - number("StartFrameIdx"), 0);
    const int64_t asked = number("FramesToBeProcessed");
    return asked < 0 ? left : std::min(left, static_cast<int64_t>(asked));
}

// The run as it is stored, or why it is none.
std::string Judge(const MdOutcome& outcome, const ChunkRun& run, int64_t frames,
                  StoredRun* stored) {
    stored->id = run.id;
    if (outcome.signal != 0) return "killed by signal " + std::to_string(outcome.signal);
    if (IsRefusal(outcome)) {
        stored->refused = true;
        stored->status = outcome.status;
        stored->message = outcome.complaint;
        return outcome.complaint.starts_with("open input") ? outcome.complaint : "";
    }
    if (outcome.status != 0) {
        return "ended with status " + std::to_string(outcome.status) + ": " + outcome.complaint;
    }
    if (outcome.warned) return "MD warned that its results may be incomplete";
    if (!outcome.log.Complete() || static_cast<int64_t>(outcome.log.frames.size()) != frames) {
        return "reported " + std::to_string(outcome.log.frames.size()) + " of " +
               std::to_string(frames) + " frames";
    }
    stored->first = frames == 0 ? 0 : outcome.log.frames.front().frame;
    stored->count = static_cast<int32_t>(frames);
    stored->seconds = outcome.seconds;
    return "";
}

struct Texts {
    std::vector<StoredRun> runs;
    std::vector<std::unique_ptr<std::string>> frames;  // what the runs point into
};

void Store(const ChunkJob& job, const Texts& texts) {
    if (!texts.runs.empty()) StoreRuns(job.store, texts.runs);
}

// A chunk of a clip that MD refused to convert: the refusal is the result of every run.
int StoreRefusals(const ChunkJob& job, const WorkingClip& clip) {
    Texts texts;
    for (const ChunkRun& run : job.runs) {
        StoredRun stored;
        stored.id = run.id;
        stored.refused = true;
        stored.status = clip.status;
        stored.message = clip.message;
        texts.runs.push_back(stored);
    }
    Store(job, texts);
    Note(job.progress, std::string(job.runs.size(), '.'));
    return 0;
}

// Size and time of a file: a cheap sign that nobody wrote into it.
std::pair<int64_t, fs::file_time_type> StampOf(const std::string& path) {
    std::error_code fault;
    const auto bytes = static_cast<int64_t>(fs::file_size(path, fault));
    if (fault) throw Error(path + ": has vanished");
    return {bytes, fs::last_write_time(path)};
}

}  // namespace

void WriteClipJob(const std::string& path, const ClipJob& job, const std::string& progress,
                  const std::string& failures) {
    WritePlain(path, json{{"kind", "clip"},
                          {"clip", ClipJson(job)},
                          {"progress", progress},
                          {"failures", failures}}
                         .dump());
}

void WriteChunkJob(const std::string& path, const ChunkJob& job) {
    json runs = json::array();
    for (const ChunkRun& run : job.runs) runs.push_back({run.id, run.settings});
    WritePlain(path, json{{"kind", "chunk"},
                          {"clip", ClipJson(job.clip)},
                          {"settings", job.settings},
                          {"runs", runs},
                          {"store", job.store},
                          {"progress", job.progress},
                          {"failures", job.failures}}
                         .dump());
}

int RunChunk(const ChunkJob& job) {
    WorkingClip clip;
    if (!ReadWorkingClip(job.clip.folder, &clip)) throw Error(job.clip.clip + ": is not converted");
    if (clip.refused) return StoreRefusals(job, clip);
    RefuseChanged(job.clip.md, job.clip.md_digest);
    const bool in_place = clip.path.empty();
    if (in_place) RefuseChanged(job.clip.clip, job.clip.clip_digest);
    const std::string raw = in_place ? job.clip.clip : clip.path;
    const auto stamp = StampOf(raw);

    const TempFolder scratch;
    fs::create_symlink(raw, scratch.Path() + "/in.yuv");
    const std::string settings = scratch.Path() + "/point.cfg";
    Texts texts;
    int failed = 0;
    for (const ChunkRun& run : job.runs) {
        WritePlain(settings, job.settings + run.settings + PlaceSettings(clip));
        const MdOutcome outcome = RunMd(job.clip.md, settings, scratch.Path());
        StoredRun stored;
        std::string reason = Judge(outcome, run, FramesToCome(settings, clip), &stored);
        std::error_code fault;
        if (StampOf(raw) != stamp) throw Error(raw + ": has changed during the sweep");
        if (reason.empty()) {
            if (!stored.refused) {
                texts.frames.push_back(
                    std::make_unique<std::string>(FramesText(outcome.log.frames)));
                stored.frames = *texts.frames.back();
            }
            texts.runs.push_back(stored);
        } else {
            ++failed;
            Note(job.failures, run.id + "\t" + reason + "\n");
        }
        Note(job.progress, ".");
    }
    Store(job, texts);
    return failed;
}

namespace {

int RunJob(const std::string& path, const std::string& mark) {
    const json facts = json::parse(ReadTextFile(path));
    int failed = 0;
    try {
        if (facts["kind"] == "clip") {
            ConvertClip(ClipOf(facts["clip"]));
            Note(facts["progress"], ".");
        } else {
            failed = RunChunk(ChunkOf(facts));
        }
    } catch (const std::exception& error) {
        Note(facts["failures"], std::string("*\t") + error.what() + "\n");
        throw;
    }
    if (failed > 0) throw Error(std::to_string(failed) + " points failed", kDiffer);
    WritePlain(mark, "");
    return kSame;
}

}  // namespace

void AddSweepJob(CLI::App* app, int* status) {
    struct Options {
        std::string file, mark;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = app->add_subcommand("sweep-job", "A job of a sweep, for its engine");
    command->group("");
    command->add_option("FILE", options->file)->required();
    command->add_option("MARK", options->mark)->required();
    command->callback([options, status] { *status = RunJob(options->file, options->mark); });
}

}  // namespace lab
