// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The subcommand `mdlab report`.
#pragma once

#include "lab/tool/command.h"

namespace lab {

AddCommand AddReport;

}  // namespace lab
