// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/interrupt.h"

#include <sys/wait.h>

#include <cerrno>
#include <ctime>

#include "lab/tool/error.h"

namespace lab {

namespace {

[[noreturn]] void Interrupted(int signal) {
    throw Error("interrupted, nothing was written", 128 + signal);
}

}  // namespace

InterruptGuard::InterruptGuard() {
    sigemptyset(&waiting_);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) sigaddset(&waiting_, signal);
    sigprocmask(SIG_BLOCK, &waiting_, &before_);
}

InterruptGuard::~InterruptGuard() {
    Release();
}

void InterruptGuard::Release() const {
    sigprocmask(SIG_SETMASK, &before_, nullptr);
}

void InterruptGuard::Check() const {
    const timespec now{};
    for (int signal = 0; (signal = sigtimedwait(&waiting_, nullptr, &now)) > 0;) {
        if (signal != SIGCHLD) Interrupted(signal);
    }
}

int InterruptGuard::Wait(pid_t child) const {
    for (;;) {
        int status = 0;
        if (waitpid(child, &status, WNOHANG) == child) return status;
        const int signal = sigwaitinfo(&waiting_, nullptr);
        if (signal < 0 && errno != EINTR) throw Error("waiting for a child process failed");
        if (signal == SIGCHLD || signal < 0) continue;
        kill(-child, SIGTERM);
        waitpid(child, &status, 0);
        Interrupted(signal);
    }
}

}  // namespace lab
