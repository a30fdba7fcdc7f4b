// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Ends the work tidily when the user presses Ctrl-C or a system stops the program: the signals
// wait until the work looks for them, which throws, so that temporary files are removed.
#pragma once

#include <sys/types.h>

#include <csignal>

namespace lab {

class InterruptGuard {
  public:
    // From here on SIGINT, SIGTERM, SIGHUP and SIGCHLD wait.
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

    // Throws Error with status 128 + signal if one has come.
    void Check() const;

    // Waits for a child process that leads a group of its own and returns its status as waitpid
    // gives it. When a signal comes, the group is ended first, and Error thrown.
    [[nodiscard]] int Wait(pid_t child) const;

    // In a new child process: signals as they were before the guard.
    void Release() const;

    [[nodiscard]] const sigset_t& Before() const { return before_; }

  private:
    sigset_t waiting_{}, before_{};
};

}  // namespace lab
