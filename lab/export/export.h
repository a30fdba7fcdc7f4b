// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// mdlab export: a run's decisions as files of other programs.
#pragma once

#include "lab/tool/command.h"

namespace lab {

AddCommand AddExport;

}  // namespace lab
