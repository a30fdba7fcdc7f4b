// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A fuzz target runs its inputs in one process. Under the trap, code that ends the process by
// exit() comes back here instead, and what it had allocated and opened is released. The linker's
// --wrap puts the trap in place of the calls; see CMakeLists.txt.
#pragma once

#include <cstdint>
#include <functional>

constexpr int kCameBack = 1000;  // the function returned; no status of a run is that high

// Runs it; the status with which it ended, kCameBack if it did not.
int RunTrapped(const std::function<void()>& fnRun);

// Under the trap, the allocation of that number comes up empty (0 is the first, -1 none does), and
// so does every one beyond 64 MiB.
extern int64_t nFailingAllocation;

// Ends the fuzz run with the text when `bHolds` is false.
void Require(bool bHolds, const char* szWhat);

// The statuses with which a run may end early.
void RequireKnownStatus(int nStatus);
