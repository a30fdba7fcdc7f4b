// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/report/record_run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/frame_scan.h"
#include "app/md_sim_run.h"
#include "lab/probe/odd_size.h"
#include "lab/probe/tools.h"
#include "lab/report/run_facts.h"
#include "lab/tool/error.h"
#include "lab/tool/terminal.h"
#include "md/cfg_top/chip_limits.h"
#include "md/cfg_top/configure.h"
#include "md/platform/platform.h"
#include "md/run_state.h"

namespace lab {

namespace {

using nlohmann::json;

// What the process of a run ends with when its recording failed; "failure" then holds the reason.
constexpr int kRecordingFailed = 3;

// The arguments as MD's code takes them.
class ArgumentList {
  public:
    explicit ArgumentList(const std::vector<std::string>& arguments) {
        texts_.push_back(MdProgramName());
        texts_.insert(texts_.end(), arguments.begin(), arguments.end());
        for (std::string& text : texts_) pointers_.push_back(text.data());
        pointers_.push_back(nullptr);
    }
    int Count() { return static_cast<int>(texts_.size()); }
    char** Pointers() { return pointers_.data(); }

  private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

void SendStandardOutputTo(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    if (file < 0) throw Error(path + ": cannot be written: " + std::strerror(errno));
    dup2(file, STDOUT_FILENO);
    close(file);
}

std::string OverridesPath(const std::string& folder) {
    return folder + "/override.cfg";
}

// What the report needs to leave nothing but its page. Read last, so it wins over the user's.
std::string WriteOverrides(const std::string& folder) {
    std::string path = OverridesPath(folder);
    std::ofstream file(path);
    file << "OutputFilePath = \"" << folder << "/out\"\nMD_DbgEn = 0\nEnableBatch = 1\n";
    return path;
}

int64_t FramesAhead() {
    const SimParams& sim = tSimParams;
    const int64_t frame_bytes = int64_t{nMdWidth} * nMdHeight * 3 / 2;
    std::error_code error;
    const auto size = std::filesystem::file_size(sim.pScaledInputPath, error);
    int64_t frames = 0;
    if (!error) frames = static_cast<int64_t>(size) / frame_bytes - sim.nStartFrameIdx;
    const int64_t asked = sim.nFramesToBeProcessed;
    return asked >= 0 && (error || asked < frames) ? asked : std::max<int64_t>(frames, 0);
}

void RefuseOddClip() {
    const SimParams& sim = tSimParams;
    const bool scaled = sim.nInputWidth != nMdWidth || sim.nInputHeight != nMdHeight;
    RefuseOtherLayout(sim.InputFilePath, sim.pPreInputPath, sim.nInputWidth, sim.nInputHeight,
                      scaled);
}

json Run(const RunRequest& request) {
    SendStandardOutputTo(request.log);
    KeepRunningAtFileLimit();
    GuardStandardStreams();
    std::vector<std::string> arguments = request.arguments;
    arguments.insert(arguments.end(), {"-f", WriteOverrides(request.folder)});
    ArgumentList list(arguments);
    FrameScanKeepRecords();
    MdSimStart(list.Count(), list.Pointers());
    RefuseOddClip();
    const auto working = std::filesystem::absolute(tSimParams.pScaledInputPath);
    std::filesystem::create_symlink(working, request.folder + "/working");
    Recorder recorder(request.folder);
    {
        Progress progress("frames", FramesAhead(), request.quiet);
        for (int64_t done = 0; MdSimNext(); progress.Show(++done)) recorder.Frame();
    }
    recorder.Finish();
    json facts = RunFacts(request.arguments, recorder);
    MdSimEnd();
    return facts;
}

[[noreturn]] void RunInChild(const RunRequest& request) {
    int status = 0;
    try {
        const json facts = Run(request);
        std::ofstream file(request.folder + "/facts");
        file << facts.dump(-1, ' ', false, json::error_handler_t::replace);
        if (!file.flush()) throw Error(request.folder + ": cannot be written");
    } catch (const std::exception& error) {
        std::ofstream(request.folder + "/failure") << error.what();
        status = kRecordingFailed;
    }
    std::fflush(stdout);
    // Not exit: what the parent process has set up is not this one's to tear down.
    _exit(status);
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// The log as MD prints it for the user's own arguments.
std::string WithoutOverrides(std::string log, const RunRequest& request) {
    const size_t at = log.find("Parsing Configfile...... " + OverridesPath(request.folder));
    if (at == std::string::npos) return log;
    const size_t end = log.find('\n', at);
    return log.erase(at, end == std::string::npos ? end : end + 1 - at);
}

// Ends an unfinished run for the caller.
[[noreturn]] void Refuse(const RunRequest& request, int status, off_t log_before) {
    if (WIFSIGNALED(status)) {
        throw Error("MD's run was ended by signal " + std::to_string(WTERMSIG(status)));
    }
    const std::string failure = ReadFile(request.folder + "/failure");
    if (WEXITSTATUS(status) == kRecordingFailed) {
        // The reason itself may have found no room.
        throw Error(failure.empty() ? request.folder + ": cannot be written" : failure);
    }
    const std::string log =
        WithoutOverrides(ReadFile(request.log).substr(static_cast<size_t>(log_before)), request);
    std::fwrite(log.data(), 1, log.size(), stdout);
    throw Refusal{WEXITSTATUS(status)};
}

off_t SizeOf(const std::string& path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    return error ? 0 : static_cast<off_t>(size);
}

pid_t Fork(const InterruptGuard& interrupt) {
    std::fflush(stdout);
    std::fflush(stderr);
    const pid_t child = fork();
    if (child < 0) throw Error(std::string("no process for a run: ") + std::strerror(errno));
    if (child == 0) {
        setpgid(0, 0);
        interrupt.Release();
    } else {
        setpgid(child, child);  // on both sides: whichever comes first
    }
    return child;
}

// Configuration as the start of a run does it, no more.
[[noreturn]] void ConfigureInChild(const std::vector<std::string>& arguments, int pipe) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDOUT_FILENO);
    dup2(null, STDERR_FILENO);
    ArgumentList list(arguments);
    CfgArguments in{list.Count(), list.Pointers()};
    CfgResult out{};
    cfgConfigure(&in, &out);
    MdCheckChipLimits();
    cfgCompletePath(out.szCfgDir, tSimParams.InputFilePath);
    const bool whole = write(pipe, &tSimParams, sizeof tSimParams) == sizeof tSimParams;
    _exit(whole ? 0 : kRecordingFailed);
}

}  // namespace

json RecordRun(const RunRequest& request, const InterruptGuard& interrupt) {
    const off_t log_before = SizeOf(request.log);
    const pid_t child = Fork(interrupt);
    if (child == 0) RunInChild(request);
    const int status = interrupt.Wait(child);
    if (status != 0) Refuse(request, status, log_before);
    return json::parse(ReadFile(request.folder + "/facts"));
}

bool SettingsOf(const std::vector<std::string>& arguments, const InterruptGuard& interrupt,
                SimParams* settings) {
    // The record is smaller than what a pipe holds, so the child never waits for a reader.
    static_assert(sizeof(SimParams) <= 16384);
    int ends[2];
    if (pipe(ends) != 0) throw Error(std::string("no pipe: ") + std::strerror(errno));
    const pid_t child = Fork(interrupt);
    if (child == 0) ConfigureInChild(arguments, ends[1]);
    close(ends[1]);
    const File reader(fdopen(ends[0], "rb"));
    const int status = interrupt.Wait(child);
    return status == 0 && std::fread(settings, sizeof *settings, 1, reader.get()) == 1;
}

}  // namespace lab
