// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/engine.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <thread>

#include "lab/sweep/engine_files.h"
#include "lab/sweep/md_process.h"
#include "lab/tool/error.h"
#include "lab/tool/terminal.h"
#include "lab/tool/text_file.h"

namespace fs = std::filesystem;

namespace lab {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void OnInterrupt(int) {
    interrupted = 1;
}

std::string SelfPath() {
    return fs::read_symlink("/proc/self/exe").string();
}

void WriteExecutable(const std::string& path, const std::string& text) {
    WritePlain(path, text);
    fs::permissions(path, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec);
}

// The folder of the profile; the one that comes with mdlab is written out first.
std::string ProfileFolder(const std::string& profile, const std::string& folder) {
    if (profile != kOwnProfile || fs::exists(profile + "/config.yaml")) {
        return fs::absolute(profile).string();
    }
    std::string made = folder + "/" + kOwnProfile;
    fs::create_directory(made);
    WritePlain(made + "/config.yaml", kSlurmConfig);
    WriteExecutable(made + "/status.sh", kSlurmStatus);
    return made;
}

std::vector<std::string> CommandLine(const EngineJobs& jobs, const EngineOptions& options) {
    std::vector<std::string> words = {
        "snakemake",    "--snakefile", jobs.folder + "/Snakefile", "--directory",      jobs.folder,
        "--keep-going", "--nolock",    "--drop-metadata",          "--rerun-triggers", "mtime"};
    if (options.profile.empty()) {
        words.insert(words.end(), {"--cores", std::to_string(options.cores)});
    } else {
        words.insert(words.end(), {"--profile", ProfileFolder(options.profile, jobs.folder)});
    }
    return words;
}

// In the child: the engine goes down with this process, as by the interrupt key, so that it also
// cancels what it has on a cluster.
[[noreturn]] void BecomeEngine(const std::vector<std::string>& words, const std::string& log,
                               const std::string& cache) {
    prctl(PR_SET_PDEATHSIG, SIGINT);
    (void)std::signal(SIGINT, SIG_DFL);
    const int file = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (file < 0) _exit(126);
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
    setenv("XDG_CACHE_HOME", cache.c_str(), 1);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(errno == ENOENT ? 127 : 126);
}

int64_t RunsOver(const EngineJobs& jobs) {
    int64_t over = 0;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(jobs.folder + "/progress", none)) {
        over += static_cast<int64_t>(entry.file_size(none));
    }
    return over;
}

int WaitWithProgress(pid_t engine, const EngineJobs& jobs, bool quiet) {
    Progress progress(jobs.what, jobs.total, quiet);
    int status = 0;
    for (int tick = 0; waitpid(engine, &status, WNOHANG) == 0; ++tick) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        if (tick % 10 == 9) progress.Show(RunsOver(jobs));
    }
    return status;
}

}  // namespace

std::string MakeEngineFolder(const std::string& into) {
    const std::string all = into + "/engine";
    std::error_code ignored;
    fs::remove_all(all, ignored);
    // A process of an earlier run may still hold on to its folder; this one is another.
    std::string folder = all + "/XXXXXX";
    fs::create_directories(all);
    if (mkdtemp(folder.data()) == nullptr) {
        throw Error(folder + ": cannot be made: " + std::strerror(errno));
    }
    fs::permissions(folder, fs::perms::group_all | fs::perms::others_read | fs::perms::others_exec,
                    fs::perm_options::add);
    for (const char* part : {"/jobs", "/done", "/progress", "/failed"}) {
        fs::create_directory(folder + part);
    }
    WritePlain(folder + "/Snakefile", kSnakefile);
    return folder;
}

bool RunEngine(const EngineJobs& jobs, const EngineOptions& options) {
    WritePlain(jobs.folder + "/jobs.json",
               nlohmann::json{{"mdlab", SelfPath()}, {"all", jobs.names}}.dump());
    const std::vector<std::string> words = CommandLine(jobs, options);
    const std::string cache = jobs.folder + "/cache";
    struct sigaction act {
    }, before{};
    act.sa_handler = OnInterrupt;
    sigaction(SIGINT, &act, &before);
    const pid_t engine = fork();
    if (engine < 0) throw Error(std::string("no new process: ") + std::strerror(errno));
    if (engine == 0) BecomeEngine(words, options.log, cache);
    const int status = WaitWithProgress(engine, jobs, options.quiet);
    sigaction(SIGINT, &before, nullptr);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) {
        throw Error("snakemake is not there; Debian has it: apt-get install snakemake");
    }
    return interrupted == 0;
}

std::map<std::string, std::string> FailureNotes(const std::string& folder) {
    std::map<std::string, std::string> notes;
    for (const auto& entry : fs::directory_iterator(folder + "/failed")) {
        std::string text = ReadTextFile(entry.path().string());
        for (size_t end = 0; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
            const std::string line = text.substr(0, end);
            const size_t tab = line.find('\t');
            if (tab == std::string::npos) continue;
            std::string id = line.substr(0, tab);
            if (id == "*") id += entry.path().filename().string();
            notes[id] = line.substr(tab + 1);
        }
    }
    return notes;
}

}  // namespace lab
