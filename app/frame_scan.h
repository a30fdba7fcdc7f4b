// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The block scan of a run: chooses the block walk or the row walk, owns the buffers of the one
// chosen, and keeps the 200-byte feature records up to date where something reads them.
#pragma once

// Allocates the block tables of MdResult (status 1 when there is no memory). The grid, the Gaussian
// window and all settings must be set. Only the block walk prints detail lines, so a run with them
// takes it.
void FrameScanInit();

// Before FrameScanInit: keep the records of every frame, for a caller that looks at the state of
// the run after each frame.
void FrameScanKeepRecords();

void FrameScanRelease();

// Forgets a run that ended early; releases nothing.
void FrameScanReset();

// Scans the frame in pCurYuv: both maps, and the records of the current slot where dumps or a box
// method read them.
void FrameScanRun();
