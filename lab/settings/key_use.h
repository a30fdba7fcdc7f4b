// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Which settings a run reads. The table of settings knows all keys; many of them change nothing
// on this chip, and others only with some value of another key.
#pragma once

#include <string>

#include "md/sim_params.h"

namespace lab {

// Why a run with these settings does not read the key; empty if it does. The text ends a sentence:
// "the gate is off". The record is that of a configured run.
std::string WhyIdle(const std::string& key, const SimParams& settings);

}  // namespace lab
