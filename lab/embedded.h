// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Files that are part of the program, so that mdlab is one file. They are put in when it is built.
#pragma once

#include <string_view>

namespace lab {

// cfg/default.cfg.
std::string_view DefaultCfg();

// The template of the report page (lab/report/FORMAT.md); empty in a build without node.
std::string_view ReportPage();

// The template of the sweep page, likewise.
std::string_view SweepPage();

}  // namespace lab
