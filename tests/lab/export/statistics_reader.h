// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Reads a statistics file back by the rules of the viewer, which checks little and crashes on much.
#pragma once

#include <string_view>
#include <vector>

#include "lab/export/statistics_file.h"

struct Statistics {
    lab::StatisticsHeader header;
    std::vector<lab::StatisticsItem> items;
};

// Throws std::runtime_error with the line that breaks a rule.
Statistics ReadStatistics(std::string_view text);
