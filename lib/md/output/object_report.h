// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The object report, one small JSON text for each frame, and the count log, one header line for
// each run. Both are in the feature folder.
#pragma once

#include "md/output/text_out.h"

// Writes the report of the current frame; dumps.cpp opens its file.
void ObjectReport(TextOut* pText);

// Appends this run's header to HOGCount.txt. Once a run, before the first frame. A file that cannot
// be opened ends the run with status -1.
void CountLogStart();
