// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A clean start for a run, also after one that ended early in the same process.
#pragma once

// Puts all state of run_state.h's list back to what it is when the process starts. Releases and
// closes nothing: after a run that came to its end there is nothing left to release.
void ResetRunState();
