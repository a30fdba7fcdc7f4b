// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// mdlab compare GOLDEN OTHER: the first difference between two runs, and how many more there are.
#pragma once

#include "lab/tool/command.h"

namespace lab {

AddCommand AddCompare;

}  // namespace lab
