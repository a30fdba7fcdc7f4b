// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "bench/numbers/run.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace bench {

namespace {

// The last processor that this process may use: interrupts tend to go to the first.
void PinToOne() {
    cpu_set_t allowed;
    if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) return;
    for (int cpu = CPU_SETSIZE - 1; cpu >= 0; --cpu) {
        if (!CPU_ISSET(cpu, &allowed)) continue;
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(cpu, &one);
        sched_setaffinity(0, sizeof one, &one);
        return;
    }
}

[[noreturn]] void Become(const Command& command, int output) {
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (dup2(null, 0) < 0 || dup2(output < 0 ? null : output, 1) < 0 || dup2(null, 2) < 0) {
        _exit(127);
    }
    if (command.cores == Cores::kOne) PinToOne();
    for (const std::string& text : command.environment) putenv(const_cast<char*>(text.c_str()));
    std::vector<char*> words;
    for (const std::string& word : command.words) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    execvp(words[0], words.data());
    _exit(127);
}

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

[[noreturn]] void Fail(const Command& command, int status) {
    std::string text =
        "failed (status " + std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : -1) + "):";
    for (const std::string& part : command.environment) text += " " + part;
    for (const std::string& word : command.words) text += " " + word;
    throw std::runtime_error(text);
}

// Waits for a child of this command.
rusage Wait(const Command& command, pid_t child) {
    int status = 0;
    rusage used{};
    if (wait4(child, &status, 0, &used) != child) throw std::runtime_error("wait4 failed");
    if (!WIFEXITED(status) || WEXITSTATUS(status) != command.status) Fail(command, status);
    return used;
}

pid_t Start(const Command& command, int output) {
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("fork failed");
    if (child == 0) Become(command, output);
    return child;
}

}  // namespace

Used Run(const Command& command) {
    const auto start = std::chrono::steady_clock::now();
    const rusage used = Wait(command, Start(command, -1));
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return {Seconds(used.ru_utime) + Seconds(used.ru_stime), elapsed.count(),
            static_cast<double>(used.ru_maxrss) / 1024};
}

std::string OutputOf(const Command& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
    const pid_t child = Start(command, ends[1]);
    close(ends[1]);
    std::string text;
    std::array<char, 4096> part{};
    for (ssize_t n = 0; (n = read(ends[0], part.data(), part.size())) > 0;) {
        text.append(part.data(), static_cast<size_t>(n));
    }
    close(ends[0]);
    Wait(command, child);
    return text;
}

}  // namespace bench
