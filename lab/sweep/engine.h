// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Snakemake, which runs the jobs of a sweep: on all cores, or through a profile on a cluster.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace lab {

// The profile that comes with mdlab.
constexpr char kOwnProfile[] = "slurm";

struct EngineJobs {
    std::string folder;              // of this run of the engine; holds jobs/ with a file a job
    std::vector<std::string> names;  // all jobs; none waits for another
    std::string what;                // units of progress in the plural, "runs"
    int64_t total = 0;               // of them in all jobs
};

struct EngineOptions {
    std::string profile;  // empty: this machine; kOwnProfile; a folder
    int cores = 1;        // of this machine
    std::string log;      // file for the engine's own words
    bool quiet = false;
};

// A new folder under `into` with the folders and files that jobs and engine need. Folders of
// earlier runs of the engine are removed.
std::string MakeEngineFolder(const std::string& into);

// Runs the jobs and shows progress. Jobs that fail do not stop the others. Returns false if the
// user interrupted it; whether jobs failed is for the store to say. Throws Error if Snakemake
// cannot be started.
bool RunEngine(const EngineJobs& jobs, const EngineOptions& options);

// What jobs noted about runs that failed, by the id of the run; "*" and the job's name for a job as
// a whole: "*chunk-3".
std::map<std::string, std::string> FailureNotes(const std::string& folder);

}  // namespace lab
