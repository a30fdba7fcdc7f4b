// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The text files of a run: dumps of feature records (nDbgEn bit 5) and distance maps (bit 6), and
// the object report (bit 9). All are in the feature folder. dumps.cpp has their table: a row for
// each file is the one place where a dump is registered. docs/formats.md shows each format.
#pragma once

#include <vector>

#include "md/sim_params.h"

// Opens the files that gather all frames, where their bit is set; they are closed at the process's
// end too, so that a run that ends early keeps the records of its whole frames. A file that cannot
// be opened ends the run with status -1.
void DumpsOpen();

// Writes the current frame: its own files, and its records in the files that gather all frames. A
// file that cannot be opened ends the run with status -1.
void DumpsWriteFrame();

// Does nothing to files that are closed.
void DumpsClose();

// Whether a file that is on reads the feature records, which the scan keeps only when it must.
bool DumpsReadRecords();

// Forgets a run that ended early; closes nothing.
void DumpsReset();

// A row of the table, for the manual.
struct DumpName {
    DebugBit nBit;
    const char* szName;  // of an each-frame file: what follows the frame's number
    bool bEachFrame;
};
std::vector<DumpName> DumpNames();
