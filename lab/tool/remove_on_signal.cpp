// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/remove_on_signal.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>

namespace lab {

namespace {

// Of fixed size, because a signal handler may neither allocate nor wait for a lock.
struct Slot {
    std::atomic<bool> taken = false;
    std::atomic<bool> filled = false;
    std::array<char, 4096> path;
};
std::array<Slot, 8> slots;
static_assert(std::atomic<bool>::is_always_lock_free);

void RemoveAndEnd(int signal) {
    for (const Slot& slot : slots) {
        if (slot.filled) unlink(slot.path.data());
    }
    raise(signal);  // the handler is gone by SA_RESETHAND, so this ends the process
}

void Install() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction now {};
        sigaction(signal, nullptr, &now);
        if (now.sa_handler != SIG_DFL) continue;
        now.sa_handler = RemoveAndEnd;
        now.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(signal, &now, nullptr);
    }
}

}  // namespace

RemoveOnSignal::RemoveOnSignal(const std::string& path) {
    if (path.size() >= slots[0].path.size()) return;
    Install();
    for (int i = 0; i < static_cast<int>(slots.size()); ++i) {
        Slot& slot = slots[static_cast<size_t>(i)];
        if (slot.taken.exchange(true)) continue;
        path.copy(slot.path.data(), path.size());
        slot.path[path.size()] = '\0';
        slot.filled = true;
        slot_ = i;
        return;
    }
}

RemoveOnSignal::~RemoveOnSignal() {
    if (slot_ < 0) return;
    Slot& slot = slots[static_cast<size_t>(slot_)];
    slot.filled = false;
    slot.taken = false;
}

}  // namespace lab
