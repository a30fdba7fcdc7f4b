// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Turns any input into a raw 4:2:0 file of the working size, and sets that size.
#pragma once

// Two stages: a 4:2:0 file at the input's own size (pPreInputPath), then a file at the working size
// (pScaledInputPath). Sets pToolDir, nMdWidth, nMdHeight and nMD_ScaledH, and may overwrite type
// and size of the input with those found in its name or by the prober. Its files go into
// OutputFilePath. Every failure ends the run with status 1; an outside command has failed if its
// file is missing, whatever its status. Runs once, when the output folders exist.
void MdPrepareInput(const char* szArgv0);
