// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The slow twin: a second derivation of the block pipeline, the box methods, the gate and the
// text of every dump. It is written to be read, shares no code with the program beyond the record
// of settings, and was derived without a look at the program's stages, so that a slip in one of the
// two shows as a difference between them.
//
// A rule that is changed in the program is changed in the twin too: from the rule's own words,
// without a look at the program's lines. Its short names: `t.p` the settings, `t.W` and `t.H` the
// frame, `t.S` the step between blocks.
#pragma once

#include <string>

#include "md/sim_params.h"
#include "tests/support/files.h"

// One run. The working size is nMD_ScaledW by nMD_ScaledH, the block size 16; `sClip` holds the
// bytes of the raw 4:2:0 file. Settings must be ones that the program accepts. Only the dumps of
// kDbgFeatures, kDbgDistances and kDbgObjects and the lines of kDbgDetail are derived. Returns the
// files of the HOG_feature folder and, as "stdout", standard output from the first frame on.
Files RunTwin(const SimParams& tParams, const std::string& sClip);
