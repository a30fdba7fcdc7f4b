// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The page: what was measured, as tables in Markdown.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bench/numbers/section.h"

namespace bench {

// What the page says first, as names and values.
using Facts = std::vector<std::pair<std::string, std::string>>;

// The whole page. A cell shows the median of the rounds, and in brackets the lowest and the highest
// of them; a goal is held against the median.
std::string Page(const Facts& facts, const std::vector<Section>& sections);

}  // namespace bench
