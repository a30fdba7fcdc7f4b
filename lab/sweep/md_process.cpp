// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/md_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>

#include "lab/tool/error.h"
#include "lab/tool/text_file.h"
#include "md/exit_status.h"

namespace lab {

namespace {

// Starts the program with its standard output on the pipe's end and its errors in a file.
pid_t Start(const std::string& program, const std::string& settings, const std::string& errors,
            int write_end) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, write_end, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0666);
    std::string name = program, option = "-d", file = settings;
    char* const arguments[] = {name.data(), option.data(), file.data(), nullptr};
    pid_t child = 0;
    const int fault = posix_spawn(&child, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (fault != 0) throw Error(program + ": cannot be started: " + std::strerror(fault));
    return child;
}

void ReadAll(int read_end, LogReader* log) {
    char part[65536];
    for (;;) {
        const ssize_t n = read(read_end, part, sizeof part);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        log->Add(std::string_view(part, static_cast<size_t>(n)));
    }
    log->Finish();
}

// What standard error says: the first line that is no warning.
void ReadErrors(const std::string& path, MdOutcome* outcome) {
    LogReader errors;
    const std::string text = ReadTextFile(path);
    outcome->warned = text.find("[Warning]") != std::string::npos;
    errors.Add(text);
    errors.Finish();
    outcome->complaint = errors.complaint.empty() ? outcome->log.complaint : errors.complaint;
}

}  // namespace

MdOutcome RunMd(const std::string& program, const std::string& settings,
                const std::string& scratch) {
    const std::string errors = scratch + "/stderr";
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw Error(std::string("no pipe: ") + std::strerror(errno));
    MdOutcome outcome;
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    try {
        child = Start(program, settings, errors, ends[1]);
    } catch (...) {
        close(ends[0]);
        close(ends[1]);
        throw;
    }
    close(ends[1]);
    ReadAll(ends[0], &outcome.log);
    close(ends[0]);
    int status = 0;
    while (waitpid(child, &status, 0) == -1 && errno == EINTR) continue;
    outcome.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    ReadErrors(errors, &outcome);
    return outcome;
}

bool IsRefusal(const MdOutcome& outcome) {
    if (outcome.signal != 0) return false;
    for (const int status : {kExitRefused, kExitParse, kExitLimit}) {
        if (outcome.status == (status & 255)) return true;
    }
    return false;
}

void WritePlain(const std::string& path, const std::string& text) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    bool whole = file != nullptr;
    if (whole) whole = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    if (file != nullptr) whole = std::fclose(file) == 0 && whole;
    if (!whole) throw Error(path + ": cannot be written: " + std::strerror(errno));
}

}  // namespace lab
