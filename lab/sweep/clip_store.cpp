// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/clip_store.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "lab/probe/odd_size.h"
#include "lab/settings/settings.h"
#include "lab/sweep/md_process.h"
#include "lab/sweep/part_folder.h"
#include "lab/tool/digest.h"
#include "lab/tool/error.h"
#include "lab/tool/temp_folder.h"
#include "lab/tool/text_file.h"

namespace fs = std::filesystem;

namespace lab {

namespace {

constexpr const char* kFacts = "/clip.json";

int64_t FrameBytes(const FrameSize& size) {
    return FrameBytesOfMd(size.width, size.height);
}

// A file of whole frames. Throws Error.
int64_t FramesIn(const std::string& path, int64_t frame_bytes) {
    const auto bytes = static_cast<int64_t>(fs::file_size(path));
    if (frame_bytes <= 0 || bytes % frame_bytes != 0) {
        throw Error(path + ": not a whole number of frames");
    }
    return bytes / frame_bytes;
}

// The only raw file in the folder whose name begins with `start`; empty if there is none.
std::string RawFile(const std::string& folder, const std::string& start) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(start) && name.ends_with("_P420.yuv")) return entry.path().string();
    }
    return "";
}

FrameSize SizeInName(const std::string& path) {
    FrameSize size;
    const std::string name = fs::path(path).filename().string();
    std::sscanf(name.c_str(), "%*[^_]_%dx%d", &size.width, &size.height);
    return size;
}

// What MD left in the folder: a scaled file, a converted one, or none where the clip serves.
WorkingClip Inspect(const std::string& folder, const std::string& clip) {
    const std::string pre = RawFile(folder, "PreInput_");
    const std::string scaled = RawFile(folder, "ScaledInput_");
    WorkingClip result;
    result.path = scaled.empty() ? pre : scaled;
    if (result.path.empty()) {
        result.bytes = static_cast<int64_t>(fs::file_size(clip));
        return result;
    }
    result.working = SizeInName(result.path);
    result.input = pre.empty() ? result.working : SizeInName(pre);
    result.frames = FramesIn(result.path, FrameBytes(result.working));
    result.bytes = static_cast<int64_t>(fs::file_size(result.path));
    if (pre.empty() || scaled.empty()) return result;
    RefuseOtherLayout(clip, pre, result.input.width, result.input.height, true);
    if (FramesIn(pre, FrameBytesOfTool(result.input.width, result.input.height)) != result.frames) {
        throw Error(clip + ": the scaled file has another number of frames than the converted one");
    }
    return result;
}

// Sizes that the files do not show: those of a raw clip, from the settings that MD ran with.
void FillSizes(const MdOutcome& outcome, const FrameSize& asked, const std::string& clip,
               WorkingClip* result) {
    if (result->working.width == 0) {
        result->working = asked;
        result->frames = result->bytes / FrameBytes(asked);
    }
    if (outcome.log.scaling) result->input = outcome.log.scaling->input;
    if (result->input.width == 0) result->input = result->working;
    if (result->frames == 0) throw Error(clip + ": no whole frame in it");
}

void RemoveBut(const std::string& folder, const std::string& kept) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().string() != kept) fs::remove_all(entry.path());
    }
}

void WriteFacts(const std::string& folder, const WorkingClip& clip) {
    const nlohmann::json facts = {
        {"file", clip.path.empty() ? "" : fs::path(clip.path).filename().string()},
        {"input", {clip.input.width, clip.input.height}},
        {"working", {clip.working.width, clip.working.height}},
        {"frames", clip.frames},
        {"bytes", clip.bytes},
        {"refused", clip.refused},
        {"status", clip.status},
        {"message", clip.message},
    };
    WritePlain(folder + kFacts, facts.dump(1) + "\n");
}

// Renames the finished folder into place. Another sweep may have been faster: its folder is as
// good. A folder that is not whole makes room.
void PutInPlace(const std::string& made, const std::string& folder) {
    WorkingClip there;
    if (fs::exists(folder) && !ReadWorkingClip(folder, &there)) {
        fs::rename(folder, made + ".old");
        fs::remove_all(made + ".old");
    }
    std::error_code fault;
    fs::rename(made, folder, fault);
    if (!fault) return;
    fs::remove_all(made);
    if (!ReadWorkingClip(folder, &there)) throw Error(folder + ": " + fault.message());
}

}  // namespace

bool ReadWorkingClip(const std::string& folder, WorkingClip* clip) {
    if (!fs::exists(folder + kFacts)) return false;
    const auto facts = nlohmann::json::parse(ReadTextFile(folder + kFacts), nullptr, false);
    if (!facts.is_object()) return false;
    WorkingClip read;
    const std::string file = facts["file"];
    read.path = file.empty() ? "" : folder + "/" + file;
    read.input = {facts["input"][0], facts["input"][1]};
    read.working = {facts["working"][0], facts["working"][1]};
    read.frames = facts["frames"];
    read.bytes = facts["bytes"];
    read.refused = facts["refused"];
    read.status = facts["status"];
    read.message = facts["message"];
    std::error_code fault;
    if (!file.empty() && static_cast<int64_t>(fs::file_size(read.path, fault)) != read.bytes) {
        return false;
    }
    *clip = read;
    return true;
}

void RefuseChanged(const std::string& path, const std::string& digest) {
    if (!fs::exists(path)) throw Error(path + ": has vanished");
    if (DigestOfFile(path) != digest) throw Error(path + ": has changed since the sweep began");
}

void ConvertClip(const ClipJob& job) {
    WorkingClip there;
    if (ReadWorkingClip(job.folder, &there)) return;
    RefuseChanged(job.clip, job.clip_digest);
    RefuseChanged(job.md, job.md_digest);
    const std::string made = PartFolder(job.folder);
    fs::create_directories(made);
    struct Cleanup {
        const std::string& path;
        ~Cleanup() {
            std::error_code ignored;
            fs::remove_all(path, ignored);
        }
    } cleanup{made};
    const TempFolder scratch;
    const std::string settings = scratch.Path() + "/clip.cfg";
    WritePlain(settings, job.settings + Assignment(RowOf("OutputFilePath"), made));
    const MdOutcome outcome = RunMd(job.md, settings, scratch.Path());
    WorkingClip result;
    if (outcome.signal != 0) {
        throw Error(job.clip + ": MD was killed by signal " + std::to_string(outcome.signal));
    }
    // A refusal with a warning may come from a fault that passes: it is not kept.
    const bool odd = outcome.complaint.find("is odd") != std::string::npos;
    if (!outcome.warned && (IsRefusal(outcome) || odd)) {
        result.refused = true;
        result.status = outcome.status;
        result.message = outcome.complaint;
    } else if (outcome.status != 0 || outcome.warned) {
        throw Error(job.clip + ": the conversion failed" +
                    (outcome.complaint.empty() ? "" : ": " + outcome.complaint));
    } else {
        result = Inspect(made, job.clip);
        const Settings read = ReadSettings(settings);
        const auto number = [&](const char* key) {
            return std::atoi(read[static_cast<size_t>(RowOf(key))].c_str());
        };
        const int32_t height = outcome.log.height.value_or(number("MD_ScaledH"));
        FillSizes(outcome, {number("MD_ScaledW"), height}, job.clip, &result);
        if (RawFile(made, "PreInput_").empty()) {
            RefuseOtherLayout(job.clip, job.clip, result.input.width, result.input.height,
                              !result.path.empty());
        }
    }
    RefuseChanged(job.clip, job.clip_digest);
    RemoveBut(made, result.path);
    WriteFacts(made, result);
    PutInPlace(made, job.folder);
}

}  // namespace lab
